#include "host/tasks/ProfilePlot.h"

#include <QEvent>
#include <QLocale>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
constexpr double metresPerKilometre = 1000.0;
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
// Free above and below the heights, of their range and in metres.
constexpr double freeShare = 0.08;
constexpr double leastFree = 5.0;
// Zooming in ends here.
constexpr double leastKilometres = 0.01;
constexpr double leastMetres = 2.0;
// Lines through more places are drawn thin and without smooth edges, which is many times faster.
constexpr std::size_t mostFinePlaces = 30000;
// As small as its content allows.
constexpr double leastStretch = 0.001;

using Points = QVector<QCPGraphData>;

void SetPoints(QCPGraph* graph, const Points& points)
{
    graph->data()->set(points, true);
}

double Kilometres(const ProfilePlace& place)
{
    return place.along / metresPerKilometre;
}

// What the pilot looks at stays; a new line that reaches further is shown whole where the former one was.
void Keep(QCPAxis* axis, const QCPRange& allBefore, const QCPRange& all, double least)
{
    const QCPRange now = axis->range();
    if (now == allBefore)
        return axis->setRange(all);
    const double size = std::clamp(now.size(), std::min(least, all.size()), all.size());
    const QCPRange wide(now.center() - size / 2.0, now.center() + size / 2.0);
    const QCPRange kept = wide.bounded(all.lower, all.upper);
    if (kept != now)
        axis->setRange(kept);
}
} // namespace

ProfilePlot::ProfilePlot(QWidget* parent)
    : QCustomPlot(parent), base(addGraph()), ground(addGraph()), unknown(addGraph()), clear(addGraph()),
      route(addGraph()), warnings(addGraph()), cursor(new QCPItemTracer(this)),
      cursorLine(new QCPItemStraightLine(this))
{
    setObjectName(QStringLiteral("HeightProfile"));
    setLocale(QLocale());
    setMouseTracking(true);
    setToolTip(
        tr("The wheel zooms the distance, with Ctrl the height. Dragging moves, a double click shows all.\n"
           "Heights are counted as those of the map."));
    xAxis->setLabel(tr("Distance along the route (km)"));
    yAxis->setLabel(tr("Height (m)"));
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);

    ground->setName(tr("Ground"));
    ground->setChannelFillGraph(base);
    unknown->setName(tr("Ground not known"));
    unknown->setChannelFillGraph(base);
    clear->setName(tr("Ground and clearance"));
    route->setName(tr("Route"));
    warnings->setName(tr("Warning"));
    warnings->setLineStyle(QCPGraph::lsNone);

    // A row of its own, where it hides no height.
    legend->setVisible(true);
    legend->setBorderPen(Qt::NoPen);
    legend->setFillOrder(QCPLegend::foColumnsFirst);
    legend->setMargins(QMargins(4, 0, 4, 0));
    auto* above = new QCPLayoutGrid;
    plotLayout()->insertRow(0);
    plotLayout()->addElement(0, 0, above);
    plotLayout()->setRowStretchFactor(0, leastStretch);
    above->addElement(0, 0, legend);
    above->addElement(0, 1, new QCPLayoutElement(this));
    above->setColumnStretchFactor(0, leastStretch);

    // Drawn anew by itself when it moves.
    layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmBuffered);
    cursor->setStyle(QCPItemTracer::tsCircle);
    cursor->setLayer(QStringLiteral("overlay"));
    cursorLine->setLayer(QStringLiteral("overlay"));

    connect(xAxis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this,
            [this] { Keep(xAxis, allKeys, allKeys, leastKilometres); });
    connect(yAxis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this,
            [this] { Keep(yAxis, allValues, allValues, leastMetres); });
    UseColors();
    Show({}, 0.0, false);
}

QSize ProfilePlot::sizeHint() const
{
    return {600, 180};
}

QSize ProfilePlot::minimumSizeHint() const
{
    return {240, 150};
}

void ProfilePlot::Show(ProfileLine shown, double clearance, bool keepsView)
{
    line = std::move(shown);
    cursor->setVisible(false);
    cursorLine->setVisible(false);
    double lowest = std::numeric_limits<double>::max();
    double highest = std::numeric_limits<double>::lowest();
    for (const ProfilePlace& place : line.places) {
        // A comparison with an unknown ground does not hold.
        lowest = place.ground < lowest ? place.ground : lowest;
        highest = place.ground + clearance > highest ? place.ground + clearance : highest;
        lowest = std::min(lowest, place.altitude);
        highest = std::max(highest, place.altitude);
    }
    const bool isEmpty = !(lowest <= highest);
    const double free = isEmpty ? 0.0 : std::max(leastFree, freeShare * (highest - lowest));
    const QCPRange keysBefore = allKeys, valuesBefore = allValues;
    allKeys = isEmpty ? QCPRange(0.0, 1.0)
                      : QCPRange(0.0, std::max(leastKilometres, Kilometres(line.places.back())));
    allValues = isEmpty ? QCPRange(0.0, 100.0) : QCPRange(lowest - free, highest + free);
    FillGraphs(clearance);
    UseColors();
    if (keepsView) {
        Keep(xAxis, keysBefore, allKeys, leastKilometres);
        Keep(yAxis, valuesBefore, allValues, leastMetres);
    } else {
        ShowAll();
    }
    replot(rpQueuedReplot);
}

void ProfilePlot::FillGraphs(double clearance)
{
    Points grounds;
    Points clears;
    Points routes;
    Points unknowns;
    const auto count = static_cast<int>(line.places.size());
    grounds.reserve(count);
    clears.reserve(clearance > 0.0 ? count : 0);
    routes.reserve(count);
    for (int i = 0; i < count; ++i) {
        const ProfilePlace& place = line.places[static_cast<std::size_t>(i)];
        const double key = Kilometres(place);
        grounds += QCPGraphData(key, place.ground);
        if (!std::isnan(place.altitude))
            routes += QCPGraphData(key, place.altitude);
        if (clearance > 0.0)
            clears += QCPGraphData(key, place.ground + clearance);
        if (!std::isnan(place.ground))
            continue;
        // From the last place whose ground is known to the next one.
        const auto before = static_cast<std::size_t>(std::max(0, i - 1));
        const auto after = static_cast<std::size_t>(std::min(count - 1, i + 1));
        const double from = Kilometres(line.places[before]);
        if (unknowns.isEmpty() || unknowns.last().key < from) {
            if (!unknowns.isEmpty())
                unknowns += QCPGraphData(unknowns.last().key, notANumber);
            unknowns += QCPGraphData(from, allValues.upper);
        }
        unknowns += QCPGraphData(Kilometres(line.places[after]), allValues.upper);
    }
    Points marks;
    for (const ProfileWarning& warning : line.warnings)
        marks += QCPGraphData(Kilometres(line.places[warning.place]), line.places[warning.place].altitude);

    SetPoints(base, {{allKeys.lower, allValues.lower}, {allKeys.upper, allValues.lower}});
    SetPoints(ground, grounds);
    SetPoints(clear, clears);
    SetPoints(route, routes);
    SetPoints(unknown, unknowns);
    warnings->data()->set(marks, false);

    legend->clearItems();
    for (QCPGraph* graph : {route, ground, clear, unknown, warnings})
        if (!graph->data()->isEmpty())
            graph->addToLegend();
}

void ProfilePlot::SetCursor(std::optional<std::size_t> place)
{
    if (!place && !cursor->visible())
        return;
    cursor->setVisible(place.has_value());
    cursorLine->setVisible(place.has_value());
    if (place) {
        const ProfilePlace& at = line.places[*place];
        cursor->position->setCoords(Kilometres(at), std::isnan(at.altitude) ? at.ground : at.altitude);
        cursorLine->point1->setCoords(Kilometres(at), allValues.lower);
        cursorLine->point2->setCoords(Kilometres(at), allValues.upper);
    }
    layer(QStringLiteral("overlay"))->replot();
}

void ProfilePlot::ShowAll()
{
    xAxis->setRange(allKeys);
    yAxis->setRange(allValues);
}

bool ProfilePlot::IsLong() const
{
    return line.places.size() > mostFinePlaces;
}

double ProfilePlot::LineWidth(double usual) const
{
    return IsLong() ? 1.0 : usual;
}

void ProfilePlot::UseColors()
{
    const QColor paper = palette().color(QPalette::Base);
    const QColor ink = palette().color(QPalette::Text);
    const bool isDark = paper.lightness() < 128;
    QColor faint = ink;
    faint.setAlpha(60);
    setBackground(paper);
    for (QCPAxis* axis : {xAxis, yAxis}) {
        for (const auto set : {&QCPAxis::setBasePen, &QCPAxis::setTickPen, &QCPAxis::setSubTickPen})
            (axis->*set)(QPen(ink));
        axis->setTickLabelColor(ink);
        axis->setLabelColor(ink);
        axis->setTickLabelFont(font());
        axis->setLabelFont(font());
        axis->grid()->setPen(QPen(faint, 0.0, Qt::DotLine));
        axis->grid()->setZeroLinePen(Qt::NoPen);
    }
    legend->setBrush(Qt::NoBrush);
    legend->setTextColor(ink);
    legend->setFont(font());

    base->setPen(Qt::NoPen);
    ground->setPen(QPen(isDark ? QColor(0xc8, 0xa8, 0x78) : QColor(0x7a, 0x5c, 0x30)));
    ground->setBrush(isDark ? QColor(0x5c, 0x4b, 0x33) : QColor(0xdc, 0xca, 0xa8));
    unknown->setPen(Qt::NoPen);
    unknown->setBrush(QBrush(ink, Qt::BDiagPattern));
    clear->setPen(
        QPen(isDark ? QColor(0xe6, 0x9f, 0x00) : QColor(0xc0, 0x50, 0x00), LineWidth(1.5), Qt::DotLine));
    route->setPen(QPen(isDark ? QColor(0x56, 0xb4, 0xe9) : QColor(0x00, 0x5a, 0xa0), LineWidth(2.0)));
    for (QCPGraph* graph : {ground, clear, route})
        graph->setAntialiased(!IsLong());
    const QColor alarm = isDark ? QColor(0xff, 0x6a, 0x5a) : QColor(0xc0, 0x10, 0x10);
    warnings->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssTriangle, QPen(alarm, 1.5), alarm, 9.0));
    cursor->setPen(QPen(ink, 1.5));
    cursor->setBrush(paper);
    cursor->setSize(9.0);
    cursorLine->setPen(QPen(ink, 0.0, Qt::DashLine));
}

void ProfilePlot::mouseMoveEvent(QMouseEvent* event)
{
    QCustomPlot::mouseMoveEvent(event);
    if (event->buttons() != Qt::NoButton)
        return;
    if (!line.places.empty() && axisRect()->rect().contains(event->pos()))
        emit Pointed(
            static_cast<int>(line.NearestAlong(xAxis->pixelToCoord(event->pos().x()) * metresPerKilometre)));
    else
        emit Left();
}

void ProfilePlot::mouseDoubleClickEvent(QMouseEvent* event)
{
    QCustomPlot::mouseDoubleClickEvent(event);
    ShowAll();
    replot(rpQueuedReplot);
}

void ProfilePlot::wheelEvent(QWheelEvent* event)
{
    axisRect()->setRangeZoom(event->modifiers().testFlag(Qt::ControlModifier) ? Qt::Vertical
                                                                              : Qt::Horizontal);
    QCustomPlot::wheelEvent(event);
}

void ProfilePlot::leaveEvent(QEvent* event)
{
    QCustomPlot::leaveEvent(event);
    emit Left();
}

void ProfilePlot::changeEvent(QEvent* event)
{
    QCustomPlot::changeEvent(event);
    if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange)
        return;
    UseColors();
    replot(rpQueuedReplot);
}
