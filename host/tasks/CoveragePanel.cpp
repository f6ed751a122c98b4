#include "host/tasks/CoveragePanel.h"
#include "analysis/AxMapHeights.h"
#include "interaction/CAxEarthManipulator.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxData/CAxBlockManager.h>

#include <osgEarth/MapNode>
#include <osgEarth/Viewpoint>

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {
enum Measure
{
    PhotosMeasure,
    SampleMeasure
};
const QString photosLink = QStringLiteral("photos");
const QString sampleLink = QStringLiteral("sample");

constexpr QSize swatchSize(28, 14); // pixels
constexpr int lookMs = 100;

// Of a flight to a place.
constexpr double leastFlightRange = 500.0;
constexpr double cellsInView = 60.0;
constexpr double flattestPitch = -45.0;
constexpr double flightSeconds = 1.5;

QPixmap Swatch(const QColor& color, const QColor& stripes)
{
    QPixmap picture(swatchSize);
    picture.fill(color);
    QPainter painter(&picture);
    painter.setPen(QColor(0x60, 0x60, 0x60));
    if (stripes.isValid())
        painter.setBrush(QBrush(stripes, Qt::BDiagPattern));
    painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
    return picture;
}

bool IsTilted(const AxPlanRequest& request)
{
    const auto& views = request.camera.views;
    return request.kind == AxPlanRequest::Kind::Orbit ||
           std::any_of(views.begin(), views.end(), [](const AxPlanView& view) { return view.tilt > 0.0; });
}
} // namespace

CoveragePanel::CoveragePanel(CAxEarthViewer* earthViewer, QWidget* parent)
    : QWidget(parent), viewer(earthViewer), overlay(earthViewer), isOn(new QCheckBox(tr("Show coverage"))),
      measure(new QComboBox), progress(new QProgressBar), cancel(new QPushButton(tr("Cancel"))),
      legend(new QWidget), worst(new QLabel), told(new QLabel)
{
    Build();
    connect(isOn, &QCheckBox::toggled, this, &CoveragePanel::Count);
    connect(measure, qOverload<int>(&QComboBox::currentIndexChanged), this, &CoveragePanel::ShowReport);
    connect(cancel, &QPushButton::clicked, isOn, [this] { isOn->setChecked(false); });
    connect(&clock, &QTimer::timeout, this, [this] { progress->setValue(*percent); });
    connect(worst, &QLabel::linkActivated, this, [this](const QString& link) {
        if (report)
            Fly((link == photosLink ? report->leastPhotos : report->coarsestSample)->place);
    });
    connect(viewer, &CAxEarthViewer::signalLoadEarth, this, &CoveragePanel::Count);
    connect(viewer, &CAxEarthViewer::signalBlockState, this, &CoveragePanel::OnBlockState);
    connect(viewer, &QObject::destroyed, this, &CoveragePanel::Forget);
    connect(&CAxBlockManager::instance(), &CAxBlockManager::blockDeleted, this,
            &CoveragePanel::OnBlockDeleted);
    Forget();
}

CoveragePanel::~CoveragePanel() = default;

void CoveragePanel::Build()
{
    isOn->setObjectName(QStringLiteral("ShowCoverage"));
    measure->setObjectName(QStringLiteral("CoverageMeasure"));
    measure->addItem(tr("Photos of each place"));
    measure->addItem(tr("Ground sample distance"));
    cancel->setObjectName(QStringLiteral("CancelCoverage"));
    progress->setRange(0, 100);
    worst->setObjectName(QStringLiteral("WorstCoverage"));
    worst->setTextFormat(Qt::RichText);
    worst->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    told->setObjectName(QStringLiteral("CoverageTold"));
    told->setTextFormat(Qt::PlainText);
    for (QLabel* label : {worst, told}) {
        label->setWordWrap(true);
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Minimum);
    }
    auto* rows = new QGridLayout(legend);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setVerticalSpacing(2);
    rows->setColumnStretch(1, 1);

    auto* waiting = new QHBoxLayout;
    waiting->addWidget(progress, 1);
    waiting->addWidget(cancel);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(isOn);
    column->addWidget(measure);
    column->addLayout(waiting);
    column->addWidget(legend);
    column->addWidget(worst);
    column->addWidget(told);
    column->addStretch(1);
}

void CoveragePanel::ShowPlan(const std::shared_ptr<const ShownPlan>& plan)
{
    shown = plan;
    Count();
}

void CoveragePanel::Forget()
{
    work.CallOff();
    clock.stop();
    report.reset();
    overlay.Clear();
    for (QWidget* part : {static_cast<QWidget*>(progress), static_cast<QWidget*>(cancel), legend,
                          static_cast<QWidget*>(worst)})
        part->hide();
    told->clear();
}

void CoveragePanel::Count()
{
    Forget();
    if (!isOn->isChecked())
        return;
    if (!shown || !shown->plan.IsPlanned())
        told->setText(tr("No route is shown."));
    else if (!viewer || !viewer->getMapNode())
        told->setText(tr("The map is not open."));
    else {
        percent = std::make_shared<std::atomic<int>>(0);
        progress->setValue(0);
        progress->show();
        cancel->show();
        clock.start(lookMs);
        const osg::ref_ptr<const osgEarth::Map> map = viewer->getMapNode()->getMap();
        work.Start(
            [plan = shown, map, done = percent](const std::atomic<bool>& isOff) {
                return CoverageReportOf(*plan, AxMapHeights(map), *done, isOff);
            },
            [this](CoverageReport&& counted) { OnCounted(std::move(counted)); });
    }
}

void CoveragePanel::OnCounted(CoverageReport&& counted)
{
    clock.stop();
    progress->hide();
    cancel->hide();
    if (counted.cells == 0) {
        told->setText(tr("Nothing can be counted: the area is too small, or a strip encloses a gap."));
        return;
    }
    report = std::move(counted);
    OnBlockState(shown->blockID);
    ShowReport();
}

void CoveragePanel::ShowReport()
{
    if (!report)
        return;
    const CoveragePainting& painting =
        measure->currentIndex() == PhotosMeasure ? report->photos : report->sample;
    overlay.Paint(report->ground, painting.picture);
    ShowLegend(painting);
    worst->setText(WorstText());
    worst->show();
    const QLocale locale;
    QString text = tr("Cells of %1 m.").arg(locale.toString(report->cell, 'f', 1));
    if (report->unknown > 0)
        text +=
            QLatin1Char('\n') + tr("The ground's height is not known in %1 of %2 cells.")
                                    .arg(locale.toString(report->unknown), locale.toString(report->cells));
    if (IsTilted(shown->request))
        text +=
            QLatin1Char('\n') + tr("Ground counts as shown even where a hill hides it from a tilted lens.");
    told->setText(text);
}

void CoveragePanel::ShowLegend(const CoveragePainting& painting)
{
    qDeleteAll(legend->findChildren<QLabel*>());
    auto* rows = static_cast<QGridLayout*>(legend->layout());
    const QLocale locale;
    int row = 0;
    const auto add = [&](const QPixmap& swatch, const QString& text, double share) {
        auto* picture = new QLabel;
        picture->setPixmap(swatch);
        rows->addWidget(picture, row, 0);
        rows->addWidget(new QLabel(text), row, 1);
        rows->addWidget(new QLabel(tr("%1 %").arg(locale.toString(100.0 * share, 'f', 1))), row, 2,
                        Qt::AlignRight);
        ++row;
    };
    for (std::size_t step = 0; step < painting.scale.steps.size(); ++step)
        add(Swatch(painting.scale.steps[step].color, {}), StepText(painting.scale, static_cast<int>(step)),
            painting.shares[step]);
    if (report->unknown > 0)
        add(Swatch(coverageUnknownLight, coverageUnknownDark), tr("ground not known"),
            static_cast<double>(report->unknown) / report->cells);
    legend->show();
}

QString CoveragePanel::StepText(const CoverageScale& scale, int step) const
{
    const CoverageStep& one = scale.steps[static_cast<std::size_t>(step)];
    const QLocale locale;
    if (step == 0)
        return tr("no photo");
    if (measure->currentIndex() == SampleMeasure) {
        const int decimals =
            std::max(0, static_cast<int>(std::ceil(-std::log10(100.0 * (one.to - one.from)) - 1e-6)));
        const auto centimetres = [&](double metres) {
            return locale.toString(100.0 * metres, 'f', decimals);
        };
        return tr("%1 to %2 cm a pixel").arg(centimetres(one.from), centimetres(one.to));
    }
    const int from = static_cast<int>(one.from);
    if (!std::isfinite(one.to))
        return tr("%1 and more").arg(locale.toString(from));
    const int last = static_cast<int>(one.to) - 1;
    return last == from ? locale.toString(from)
                        : tr("%1 to %2").arg(locale.toString(from), locale.toString(last));
}

QString CoveragePanel::WorstText() const
{
    const QLocale locale;
    const auto placeOf = [&](const QString& link, const QPointF& place) {
        // Not every dark style has a colour for links that can be read on it.
        return QStringLiteral("<a href=\"%1\" style=\"color: %2\">%3</a>")
            .arg(link, palette().color(QPalette::WindowText).name(),
                 tr("longitude %1\302\260, latitude %2\302\260")
                     .arg(locale.toString(place.x(), 'f', 5), locale.toString(place.y(), 'f', 5)));
    };
    QStringList lines;
    if (report->leastPhotos)
        lines += tr("Fewest photos: %1, at %2")
                     .arg(locale.toString(static_cast<int>(report->leastPhotos->value)),
                          placeOf(photosLink, report->leastPhotos->place));
    if (report->coarsestSample)
        lines += tr("Coarsest: %1 cm a pixel, at %2")
                     .arg(locale.toString(100.0 * report->coarsestSample->value, 'f', 2),
                          placeOf(sampleLink, report->coarsestSample->place));
    return lines.join(QStringLiteral("<br>"));
}

void CoveragePanel::OnBlockDeleted(const QString& id)
{
    if (shown && shown->blockID == id)
        ShowPlan(nullptr);
}

void CoveragePanel::OnBlockState(const QString& id)
{
    if (!viewer || !shown || shown->blockID != id)
        return;
    const CAxHandleAdapter* block = viewer->FindExistNode(id);
    overlay.SetVisible(!block || block->IsVisible());
}

void CoveragePanel::Fly(const QPointF& place)
{
    if (!viewer)
        return;
    CAxEarthManipulator* camera = viewer->getManipulator();
    QList<osg::Vec3d> ground{osg::Vec3d(place.x(), place.y(), 0.0)};
    camera->GetElevations(ground, false);
    const osgEarth::Viewpoint now = camera->getViewpoint();
    camera->setViewpoint(osgEarth::Viewpoint("coverage", place.x(), place.y(), ground.constFirst().z(),
                                             now.getHeading(), qMin(now.getPitch(), flattestPitch),
                                             qMax(leastFlightRange, cellsInView * report->cell)),
                         flightSeconds);
}
