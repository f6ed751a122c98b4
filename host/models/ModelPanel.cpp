#include "host/models/ModelPanel.h"
#include "host/models/ModelPlaceBox.h"
#include "host/models/ModelsKept.h"
#include "host/tasks/LimitedNumber.h"
#include "interaction/AxModelLayers.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <osgEarth/Viewpoint>
#include <osgViewer/Viewer>

#include <QAction>
#include <QApplication>
#include <QBoxLayout>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeWidget>

#include <algorithm>
#include <cmath>

namespace {
constexpr int layerRole = Qt::UserRole;
constexpr int missingRole = Qt::UserRole + 1;
// Such a file is held in memory as a whole, some times over.
constexpr qint64 muchForOneFile = qint64(500) << 20;
} // namespace

ModelPanel::ModelPanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), kept(new ModelsKept(earthViewer, this)), list(new QTreeWidget),
      fly(new QPushButton(tr("Fly there"))), find(new QPushButton(tr("Find file…"))),
      remove(new QPushButton(tr("Remove"))), orbit(new QPushButton(tr("Orbit"))), lift(new LimitedNumber),
      ground(new QPushButton(tr("Onto the ground"))), note(new QLabel)
{
    list->setObjectName(QStringLiteral("Models"));
    list->setHeaderLabels({tr("Model"), tr("State")});
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    list->header()->setStretchLastSection(false);
    list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    auto* file = new QPushButton(tr("Load model…"));
    auto* tree = new QPushButton(tr("Load export…"));
    tree->setToolTip(tr("The folder with metadata.xml of a photogrammetry export"));
    fly->setObjectName(QStringLiteral("ModelFly"));
    remove->setObjectName(QStringLiteral("ModelRemove"));
    ground->setObjectName(QStringLiteral("ModelOntoGround"));
    ground->setToolTip(tr("Raises or lowers the model until its lowest point is at the height of the ground "
                          "below its middle."));
    lift->setObjectName(QStringLiteral("ModelLift"));
    orbit->setObjectName(QStringLiteral("ModelOrbit"));
    orbit->setCheckable(true);
    orbit->setToolTip(
        tr("While it is pressed, drags move the view along with what is under the mouse, and with "
           "the right button turn it freely, also to look up at the model."));
    lift->setRange(-axMostModelLift, axMostModelLift);
    lift->setDecimals(2);
    lift->setSuffix(tr(" m"));
    note->setObjectName(QStringLiteral("ModelNote"));
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    // A long reason would push what is below it out of the panel; its tip tells the whole of it.
    constexpr int noteLines = 4;
    note->setMaximumHeight(noteLines * note->fontMetrics().lineSpacing());
    note->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    constexpr int leastListLines = 4;
    list->setMinimumHeight(leastListLines * list->fontMetrics().lineSpacing());
    auto* label = new QLabel(tr("&Raised by"));
    label->setBuddy(lift);

    auto* loading = new QHBoxLayout;
    loading->addWidget(file);
    loading->addWidget(tree);
    auto* lifting = new QHBoxLayout;
    lifting->addWidget(label);
    lifting->addWidget(lift, 1);
    lifting->addWidget(ground);
    auto* doing = new QHBoxLayout;
    doing->addWidget(fly);
    doing->addWidget(find);
    doing->addWidget(orbit);
    doing->addWidget(remove);
    auto* column = new QVBoxLayout(this);
    column->addWidget(list, 1);
    column->addLayout(doing);
    column->addWidget(note);
    column->addLayout(lifting);
    column->addLayout(loading);

    auto* gone = new QAction(list);
    gone->setShortcut(QKeySequence::Delete);
    gone->setShortcutContext(Qt::WidgetShortcut);
    list->addAction(gone);
    connect(gone, &QAction::triggered, this, &ModelPanel::Remove);
    connect(file, &QPushButton::clicked, this, &ModelPanel::ChooseFiles);
    connect(tree, &QPushButton::clicked, this, &ModelPanel::ChooseFolder);
    connect(fly, &QPushButton::clicked, this, &ModelPanel::Fly);
    connect(find, &QPushButton::clicked, this, &ModelPanel::FindMissing);
    connect(ground, &QPushButton::clicked, this, &ModelPanel::PutOnGround);
    connect(remove, &QPushButton::clicked, this, &ModelPanel::Remove);
    connect(orbit, &QPushButton::toggled, this, &ModelPanel::SetOrbit);
    connect(viewer, &CAxEarthViewer::signalRequestElevationReturn, this, &ModelPanel::OnGround);
    connect(list, &QTreeWidget::itemChanged, this, &ModelPanel::OnItemChanged);
    connect(list, &QTreeWidget::currentItemChanged, this, &ModelPanel::OnChosen);
    connect(list, &QTreeWidget::itemActivated, this, &ModelPanel::Fly);
    connect(lift, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this](double metres) {
        if (Layers() && !isFilling)
            Layers()->SetLift(Chosen(), metres);
    });
    // What has changed meanwhile was not shown while it was typed into.
    connect(lift, &QDoubleSpinBox::editingFinished, this, &ModelPanel::OnChosen);

    const AxModelLayers* layers = viewer->GetModelLayers();
    connect(layers, &AxModelLayers::added, this, &ModelPanel::Fill);
    connect(layers, &AxModelLayers::changed, this, &ModelPanel::Fill);
    connect(layers, &AxModelLayers::removed, this, &ModelPanel::Fill);
    connect(layers, &AxModelLayers::loaded, this, [this](const QString& id) {
        Fill();
        const auto layer = Layers()->Find(id);
        if (layer)
            emit Told(layer->note.isEmpty() ? tr("%1 is on the map.").arg(layer->name)
                                            : tr("%1 is on the map. %2").arg(layer->name, layer->note));
        if (id == asked && IsUndisturbed())
            FlyTo(id);
    });
    connect(layers, &AxModelLayers::failed, this, [this](const QString& id, const QString& why) {
        emit Told(why);
        const QVector<ModelsKept::Missing> missing = kept->GetMissing();
        const auto refused = std::find_if(missing.begin(), missing.end(), [&](const auto& one) {
            return one.isRefused && one.reason == why;
        });
        if (Chosen() == id && refused != missing.end())
            ChooseMissing(refused->id);
        // A box lets events run, and there are others to be told.
        if (id == asked && IsUndisturbed())
            QMetaObject::invokeMethod(
                this, [this, why] { QMessageBox::warning(this, tr("Models"), why); }, Qt::QueuedConnection);
    });
    connect(kept, &ModelsKept::missingChanged, this, &ModelPanel::Fill);
    connect(kept, &ModelsKept::Told, this, &ModelPanel::Told);
    Fill();
}

ModelPanel::~ModelPanel() = default;

void ModelPanel::FillMenu(QMenu* menu)
{
    menu->addAction(tr("Load &model…"), this, &ModelPanel::ChooseFiles);
    menu->addAction(tr("Load &export of photogrammetry…"), this, &ModelPanel::ChooseFolder);
}

bool ModelPanel::IsModelFile(const QString& file)
{
    const QFileInfo info(file);
    const QString suffix = info.suffix().toLower();
    if (info.isDir())
        return QFileInfo(file + QStringLiteral("/metadata.xml")).isFile();
    return info.fileName().compare(QLatin1String("metadata.xml"), Qt::CaseInsensitive) == 0 ||
           AxModelSuffixes().contains(suffix);
}

// What is chosen

QString ModelPanel::Chosen() const
{
    const QTreeWidgetItem* item = list->currentItem();
    return item ? item->data(0, layerRole).toString() : QString();
}

int ModelPanel::ChosenMissing() const
{
    const QTreeWidgetItem* item = list->currentItem();
    return item ? item->data(0, missingRole).toInt() : 0;
}

void ModelPanel::ChooseMissing(int id)
{
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (list->topLevelItem(i)->data(0, missingRole).toInt() == id)
            list->setCurrentItem(list->topLevelItem(i));
}

void ModelPanel::Fill()
{
    if (!Layers() || isFilling)
        return;
    isFilling = true;
    // With its row the choice would go on to another one.
    const QString chosen = Chosen();
    const int chosenMissing = ChosenMissing();
    QTreeWidgetItem* current = nullptr;
    const QList<AxModelLayer> layers = Layers()->All();
    const QVector<ModelsKept::Missing> missing = kept->GetMissing();
    const int count = layers.size() + missing.size();
    while (list->topLevelItemCount() > count)
        delete list->takeTopLevelItem(list->topLevelItemCount() - 1);
    while (list->topLevelItemCount() < count)
        new QTreeWidgetItem(list);
    for (int i = 0; i < count; ++i) {
        QTreeWidgetItem* item = list->topLevelItem(i);
        const bool isLayer = i < layers.size();
        item->setData(0, layerRole, isLayer ? layers[i].id : QString());
        item->setData(0, missingRole, isLayer ? 0 : missing[i - layers.size()].id);
        if (!isLayer) {
            const ModelsKept::Missing& one = missing[i - layers.size()];
            item->setText(0, one.name);
            item->setText(1, one.isRefused ? tr("refused") : tr("missing"));
            item->setToolTip(0, one.reason);
            item->setData(0, Qt::CheckStateRole, {});
            if (one.id == chosenMissing)
                current = item;
            continue;
        }
        const AxModelLayer& layer = layers[i];
        item->setText(0, layer.name);
        item->setText(1, layer.isLoading ? tr("loading, %1 %").arg(layer.percent)
                                         : (layer.note.isEmpty() ? tr("whole") : tr("with faults")));
        item->setToolTip(0, layer.note.isEmpty() ? layer.path : layer.path + QLatin1Char('\n') + layer.note);
        item->setCheckState(0, layer.options.isVisible ? Qt::Checked : Qt::Unchecked);
        if (layer.id == chosen)
            current = item;
    }
    list->setCurrentItem(current);
    isFilling = false;
    const auto orbited = Layers()->Find(orbitedLayer);
    if (orbit->isChecked() && !(orbited && orbited->options.isVisible))
        orbit->setChecked(false);
    OnChosen();
}

void ModelPanel::OnChosen()
{
    if (!Layers() || isFilling)
        return;
    const auto layer = Layers()->Find(Chosen());
    const bool hasPlace = layer && layer->extent;
    isFilling = true;
    lift->setEnabled(layer.has_value());
    // A model that is loaded fills the list anew with each piece, while somebody types.
    if (!lift->hasFocus() || liftOf != Chosen())
        lift->setValue(layer ? layer->options.lift : 0.0);
    liftOf = Chosen();
    isFilling = false;
    orbit->setEnabled(orbit->isChecked() || (hasPlace && layer->options.isVisible));
    orbit->setVisible(ChosenMissing() == 0);
    fly->setEnabled(hasPlace || ChosenMissing() != 0);
    fly->setText(ChosenMissing() != 0 ? tr("Load again") : tr("Fly there"));
    find->setVisible(ChosenMissing() != 0);
    ground->setEnabled(hasPlace);
    remove->setEnabled(layer || ChosenMissing() != 0);
    remove->setText(layer && layer->isLoading ? tr("Cancel") : tr("Remove"));
    QString text = layer ? layer->note : QString();
    for (const ModelsKept::Missing& one : kept->GetMissing())
        if (one.id == ChosenMissing())
            text = one.reason;
    note->setText(text);
    note->setToolTip(text);
}

void ModelPanel::OnItemChanged(QTreeWidgetItem* item, int column)
{
    if (isFilling || column != 0)
        return;
    const QString id = item->data(0, layerRole).toString();
    const bool isVisible = item->checkState(0) == Qt::Checked;
    // The list may be filled anew by it, and this item is gone then.
    QMetaObject::invokeMethod(
        this,
        [this, id, isVisible] {
            if (Layers())
                Layers()->SetVisible(id, isVisible);
        },
        Qt::QueuedConnection);
}

// Loading

void ModelPanel::ChooseFiles()
{
    QStringList patterns{QStringLiteral("metadata.xml")};
    for (const QString& suffix : AxModelSuffixes())
        patterns += QStringLiteral("*.") + suffix;
    const QStringList files =
        QFileDialog::getOpenFileNames(this, tr("Load models"), folder,
                                      tr("Models (%1);;All files (*)").arg(patterns.join(QLatin1Char(' '))));
    for (const QString& file : files)
        if (!Load(file))
            return;
}

void ModelPanel::ChooseFolder()
{
    const QString path =
        QFileDialog::getExistingDirectory(this, tr("Load the folder with metadata.xml"), folder);
    if (!path.isEmpty())
        Load(path);
}

bool ModelPanel::Load(const QString& path)
{
    if (!Layers())
        return false;
    emit Wanted();
    folder = QFileInfo(path).absolutePath();
    const AxModelSource source = AxExamineModel(path);
    AxModelOptions options;
    if (!source.fault.isEmpty()) {
        QMessageBox::warning(this, tr("Models"), source.fault);
        return false;
    }
    if (source.bytes > muchForOneFile &&
        QMessageBox::question(this, tr("Models"),
                              tr("\"%1\" has %2 MB, and is loaded as a whole. Load it all the same?")
                                  .arg(source.name)
                                  .arg(source.bytes >> 20),
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::No) != QMessageBox::Yes)
        return false;
    if (!AxModelPlacement::Of(source.coordinateSystem, source.origin)) {
        ModelPlaceBox box(viewer, source, this);
        if (box.exec() != QDialog::Accepted || !Layers())
            return false;
        options = box.Options();
    }
    QString why;
    const QString id = Layers()->Add(path, options, &why);
    if (id.isEmpty()) {
        QMessageBox::warning(this, tr("Models"), why);
        return false;
    }
    asked = id;
    askedFrom = viewer->getManipulator()->getMatrix();
    askedRange = viewer->getManipulator()->getDistance();
    Fill();
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (list->topLevelItem(i)->data(0, layerRole).toString() == id)
            list->setCurrentItem(list->topLevelItem(i));
    return true;
}

// What is done with the chosen one

AxModelLayers* ModelPanel::Layers() const
{
    return viewer ? viewer->GetModelLayers() : nullptr;
}

void ModelPanel::Fly()
{
    if (const int missing = ChosenMissing())
        kept->TryAgain(missing);
    else
        FlyTo(Chosen());
}

bool ModelPanel::IsUndisturbed() const
{
    constexpr double still = 0.005; // of the range
    constexpr double sameWay = 0.9999;
    if (!viewer || viewer->GetToolType() != ToolNavigate || QApplication::activeModalWidget() ||
        QApplication::mouseButtons() != Qt::NoButton)
        return false;
    const CAxHandleAdapter* current = viewer->GetCurHandleAdapter();
    const osg::Matrixd now = viewer->getManipulator()->getMatrix();
    const double range = viewer->getManipulator()->getDistance();
    // Upwards the camera goes with the ground as finer tiles come.
    osg::Vec3d up = now.getTrans();
    up.normalize();
    const osg::Vec3d moved = now.getTrans() - askedFrom.getTrans();
    const osg::Vec3d ahead(0.0, 0.0, -1.0);
    return (!current || current->GetHandleOperation() == OperationIdle) &&
           (moved - up * (moved * up)).length() < still * range &&
           std::abs(range - askedRange) < still * range &&
           osg::Matrixd::transform3x3(ahead, now) * osg::Matrixd::transform3x3(ahead, askedFrom) > sameWay;
}

void ModelPanel::FlyTo(const QString& id)
{
    constexpr double flightSeconds = 2.0;
    constexpr double metresPerDegree = 111000.0;
    constexpr double nearest = 100.0;
    constexpr double oblique = -45.0;
    const auto layer = Layers() ? Layers()->Find(id) : std::nullopt;
    if (!layer || !layer->extent)
        return;
    const QPointF middle = layer->extent->center();
    const osg::Vec3d size(layer->extent->width() * std::cos(osg::DegreesToRadians(middle.y())) *
                              metresPerDegree,
                          layer->extent->height() * metresPerDegree, layer->highest - layer->lowest);
    viewer->getManipulator()->setViewpoint(
        osgEarth::Viewpoint("", std::remainder(middle.x(), 360.0), middle.y(),
                            0.5 * (layer->lowest + layer->highest), 0.0, oblique,
                            std::max(nearest, WholeFrom(0.5 * size.length()))),
        flightSeconds);
}

double ModelPanel::WholeFrom(double radius) const
{
    constexpr double room = 1.05;
    // Both are one over the tangent of half an angle: a map between panels may be narrower than it is high.
    const osg::Matrixd& projection = viewer->getOSGViewer()->getCamera()->getProjectionMatrix();
    const double cotangent = std::max(projection(0, 0), projection(1, 1));
    return room * radius * std::hypot(1.0, cotangent);
}

void ModelPanel::PutOnGround()
{
    const auto layer = Layers() ? Layers()->Find(Chosen()) : std::nullopt;
    if (!layer || !layer->extent)
        return;
    const QPointF middle = layer->extent->center();
    onGround = {layer->id, QPointF(std::remainder(middle.x(), 360.0), middle.y())};
    // The ground as it is loaded may be a hundred metres off where nobody has looked.
    viewer->slotRequestElevation(onGround.second.x(), onGround.second.y());
}

void ModelPanel::OnGround(double longitude, double latitude, double below, bool isKnown)
{
    const auto layer = Layers() ? Layers()->Find(onGround.first) : std::nullopt;
    if (onGround.second != QPointF(longitude, latitude))
        return;
    onGround = {};
    if (!layer)
        return;
    if (!isKnown)
        emit Told(tr("The height of the ground there is not known."));
    else if (!Layers()->SetLift(layer->id, layer->options.lift + below - layer->lowest))
        emit Told(tr("%1 is more than %2 m off the ground.").arg(layer->name).arg(axMostModelLift));
}

void ModelPanel::SetOrbit(bool on)
{
    if (!viewer)
        return;
    orbitedLayer = on ? Chosen() : QString();
    viewer->getManipulator()->setOperateMode(on ? CAxEarthManipulator::OperateModel
                                                : CAxEarthManipulator::OperateGlobe);
}

void ModelPanel::FindMissing()
{
    const int missing = ChosenMissing();
    const QString path = QFileDialog::getOpenFileName(this, tr("Where is the model now?"), folder);
    if (missing != 0 && !path.isEmpty())
        kept->TryAgain(missing, path);
}

void ModelPanel::Remove()
{
    if (const int missing = ChosenMissing())
        kept->Forget(missing);
    else if (Layers())
        Layers()->Remove(Chosen());
}
