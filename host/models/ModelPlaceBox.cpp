#include "host/models/ModelPlaceBox.h"
#include "host/tasks/LimitedNumber.h"
#include "interaction/CAxEarthManipulator.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

#include <osgEarth/Viewpoint>

#include <QComboBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <cmath>

namespace {
LimitedNumber* CoordinateField(const char* name, double value)
{
    constexpr double most = 1e9;
    auto* field = new LimitedNumber;
    field->setObjectName(QLatin1String(name));
    field->setRange(-most, most);
    field->setDecimals(3);
    field->setValue(value);
    return field;
}
} // namespace

ModelPlaceBox::ModelPlaceBox(CAxEarthViewer* earthViewer, const AxModelSource& of, QWidget* parent)
    : CAxBaseDialog(parent), viewer(earthViewer), source(of),
      atPlace(new QRadioButton(tr("Its &zero stands at"))),
      inSystem(new QRadioButton(tr("Its coordinates are those of a &system"))), place(new QLineEdit),
      height(CoordinateField("ModelHeight", 0.0)), system(new QLineEdit), heights(new QComboBox),
      up(new QComboBox), understood(new QLabel)
{
    SetWindowTitle(tr("Where does the model stand?"));
    auto* head =
        new QLabel(source.coordinateSystem.isEmpty()
                       ? tr("%1 does not tell where it stands.").arg(QFileInfo(source.path).fileName())
                       : tr("%1 says that it stands in %2.")
                             .arg(source.systemSource, source.coordinateSystem.simplified().left(60)));
    head->setTextFormat(Qt::PlainText);
    head->setWordWrap(true);
    ContentLayout()->addWidget(head);

    place->setObjectName(QStringLiteral("ModelPlace"));
    place->setPlaceholderText(tr("latitude, longitude, or as the read-out has them"));
    auto* middle = new QPushButton(tr("&Middle of the view"));
    middle->setObjectName(QStringLiteral("ModelMiddle"));
    middle->setAutoDefault(false);
    auto* placeRow = new QHBoxLayout;
    placeRow->addWidget(place, 1);
    placeRow->addWidget(middle);
    auto* placeForm = new QFormLayout;
    placeForm->setContentsMargins(20, 0, 0, 0);
    placeForm->addRow(tr("Place"), placeRow);
    placeForm->addRow(tr("Height there, m"), height);

    system->setObjectName(QStringLiteral("ModelSystem"));
    system->setPlaceholderText(tr("for example EPSG:32650"));
    system->setText(source.coordinateSystem);
    auto* originRow = new QHBoxLayout;
    const char* const names[] = {"ModelOriginX", "ModelOriginY", "ModelOriginZ"};
    const QString tips[] = {tr("Added to x, the easting or longitude"),
                            tr("Added to y, the northing or latitude"), tr("Added to z, the height")};
    for (int i = 0; i < 3; ++i) {
        const auto at = static_cast<std::size_t>(i);
        origin[at] = CoordinateField(names[at], source.origin[i]);
        origin[at]->setToolTip(tips[at]);
        origin[at]->setAccessibleName(tips[at]);
        originRow->addWidget(origin[at]);
    }
    auto* systemForm = new QFormLayout;
    systemForm->setContentsMargins(20, 0, 0, 0);
    systemForm->addRow(tr("System"), system);
    systemForm->addRow(tr("Origin x, y, z"), originRow);

    heights->setObjectName(QStringLiteral("ModelHeights"));
    heights->addItem(tr("as the system says, else the ellipsoid"),
                     static_cast<int>(AxModelHeights::OfSystem));
    heights->addItem(tr("the sea"), static_cast<int>(AxModelHeights::SeaLevel));
    heights->addItem(tr("the ellipsoid"), static_cast<int>(AxModelHeights::Ellipsoid));
    up->setObjectName(QStringLiteral("ModelUp"));
    up->addItem(tr("z, as in surveys"), false);
    up->addItem(tr("y, as in glTF"), true);
    up->setCurrentIndex(source.isYUp ? 1 : 0);
    systemForm->addRow(tr("Heights from"), heights);
    auto* upForm = new QFormLayout;
    upForm->addRow(tr("Axis that points up"), up);

    understood->setObjectName(QStringLiteral("ModelUnderstood"));
    understood->setWordWrap(true);
    understood->setTextFormat(Qt::PlainText);
    understood->setMinimumHeight(2 * understood->fontMetrics().lineSpacing());
    ContentLayout()->addWidget(atPlace);
    ContentLayout()->addLayout(placeForm);
    ContentLayout()->addWidget(inSystem);
    ContentLayout()->addLayout(systemForm);
    ContentLayout()->addLayout(upForm);
    ContentLayout()->addWidget(understood);

    (source.coordinateSystem.isEmpty() ? atPlace : inSystem)->setChecked(true);
    connect(middle, &QPushButton::clicked, this, &ModelPlaceBox::TakeMiddleOfView);
    connect(viewer, &CAxEarthViewer::signalRequestElevationReturn, this, &ModelPlaceBox::OnGround);
    connect(atPlace, &QRadioButton::toggled, this, &ModelPlaceBox::Judge);
    connect(place, &QLineEdit::textEdited, this, [this] { atPlace->setChecked(true); });
    connect(system, &QLineEdit::textEdited, this, [this] { inSystem->setChecked(true); });
    connect(place, &QLineEdit::textChanged, this, &ModelPlaceBox::Judge);
    connect(system, &QLineEdit::textChanged, this, &ModelPlaceBox::Judge);
    for (LimitedNumber* field : origin)
        connect(field, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, &ModelPlaceBox::Judge);
    Judge();
}

void ModelPlaceBox::TakeMiddleOfView()
{
    const osgEarth::Viewpoint view =
        viewer ? viewer->getManipulator()->getViewpoint() : osgEarth::Viewpoint();
    if (!view.isValid() || !view.focalPoint().isSet())
        return;
    const double longitude = view.focalPoint()->x();
    const double latitude = view.focalPoint()->y();
    const double ground = viewer->GetElevation(longitude, latitude);
    atPlace->setChecked(true);
    place->setText(viewer->GetCoordinateSystem().Line(latitude, longitude));
    height->setValue(std::isfinite(ground) ? ground : 0.0);
    askedMiddle = {longitude, latitude};
    askedPlace = place->text();
    coarse = height->value();
    viewer->slotRequestElevation(longitude, latitude);
}

void ModelPlaceBox::OnGround(double longitude, double latitude, double ground, bool isKnown)
{
    // Neither of another question, nor over what was typed meanwhile.
    if (isKnown && askedMiddle == QPointF(longitude, latitude) && place->text() == askedPlace &&
        height->value() == coarse && !height->hasFocus())
        height->setValue(ground);
}

AxModelOptions ModelPlaceBox::Options() const
{
    AxModelOptions options;
    options.isYUp = up->currentData().toBool();
    if (!atPlace->isChecked()) {
        options.coordinateSystem = system->text().trimmed();
        options.origin = osg::Vec3d(origin[0]->value(), origin[1]->value(), origin[2]->value());
        options.heights = static_cast<AxModelHeights>(heights->currentData().toInt());
        return options;
    }
    const AxCoordinateText::Typed typed =
        viewer ? viewer->GetCoordinateSystem().Read(place->text()) : AxCoordinateText::Typed();
    if (typed.place)
        options.coordinateSystem = QStringLiteral("ENU:%1,%2")
                                       .arg(QString::number(typed.place->Lat(), 'f', 9),
                                            QString::number(typed.place->Lng(), 'f', 9));
    options.origin = osg::Vec3d(0.0, 0.0, height->value());
    // The height was read on this map.
    options.heights = viewer && viewer->AreMapHeightsAboveEllipsoid() ? AxModelHeights::Ellipsoid
                                                                      : AxModelHeights::SeaLevel;
    return options;
}

void ModelPlaceBox::Judge()
{
    const AxModelOptions options = Options();
    QString why;
    const bool isGood = AxModelPlacement::Of(options.coordinateSystem, *options.origin, &why).has_value();
    if (atPlace->isChecked() && !isGood)
        why = place->text().trimmed().isEmpty() ? tr("Type a place, or take the middle of the view.")
                                                : tr("\"%1\" is no place.").arg(place->text().trimmed());
    else if (!isGood && options.coordinateSystem.isEmpty())
        why = tr("Type a coordinate system.");
    else if (isGood)
        why = atPlace->isChecked() ? tr("Metres to the east, north and up of there.")
                                   : tr("The origin lies within the system.");
    understood->setText(why);
    OKButton()->setEnabled(isGood);
}
