#include "host/aircraft/TimeBar.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
constexpr int margin = 6; // pixels, so that the handle fits at both ends
constexpr quint64 step = 1000;
constexpr quint64 page = 10000;
constexpr int gapGrey = 150;
} // namespace

TimeBar::TimeBar(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setObjectName(QStringLiteral("TimeBar"));
    setAccessibleName(tr("Time of the flight"));
}

void TimeBar::SetFlight(std::shared_ptr<const AxFlightRecord> record)
{
    flight = std::move(record);
    time = flight ? flight->Begin() : 0;
    beforeDrag.reset();
    setEnabled(flight && !flight->IsEmpty());
    update();
}

void TimeBar::SetTime(quint64 now)
{
    time = now;
    update();
}

double TimeBar::PlaceOf(quint64 when) const
{
    const double wide = std::max(1, width() - 2 * margin);
    if (!flight || flight->End() <= flight->Begin())
        return margin;
    const double share =
        static_cast<double>(std::clamp(when, flight->Begin(), flight->End()) - flight->Begin()) /
        static_cast<double>(flight->End() - flight->Begin());
    return margin + share * wide;
}

quint64 TimeBar::TimeAt(double place) const
{
    if (!flight)
        return 0;
    const double wide = std::max(1, width() - 2 * margin);
    const double share = std::clamp((place - margin) / wide, 0.0, 1.0);
    return flight->Begin() +
           static_cast<quint64>(std::llround(share * static_cast<double>(flight->End() - flight->Begin())));
}

QSize TimeBar::sizeHint() const
{
    return {10 * fontMetrics().height(), 2 * fontMetrics().height()};
}

void TimeBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRectF groove(margin, 0.25 * height(), width() - 2 * margin, 0.5 * height());
    painter.fillRect(groove, palette().color(QPalette::Base));
    if (flight && isEnabled()) {
        const double now = PlaceOf(time);
        painter.fillRect(QRectF(groove.topLeft(), QPointF(now, groove.bottom())),
                         palette().color(QPalette::Highlight));
        for (const AxFlightGap& gap : flight->Gaps()) {
            const QRectF area(QPointF(PlaceOf(gap.begin), groove.top()),
                              QPointF(std::max(PlaceOf(gap.end), PlaceOf(gap.begin) + 1.0), groove.bottom()));
            painter.fillRect(area, palette().color(QPalette::Window));
            painter.fillRect(area, QBrush(QColor(gapGrey, gapGrey, gapGrey), Qt::BDiagPattern));
        }
        painter.setPen(QColor(0, gapGrey, 0));
        double ticked = -1.0;
        for (const AxPhotoRecord& photo : flight->Photos()) {
            const double place = PlaceOf(photo.time);
            if (place - ticked < 1.0)
                continue; // thousands of them would be one line
            ticked = place;
            painter.drawLine(QPointF(place, groove.bottom()), QPointF(place, height() - 1.0));
        }
        painter.setPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Dark));
        painter.setBrush(palette().color(QPalette::Button));
        painter.drawRect(QRectF(now - 3.0, 1.0, 6.0, height() - 3.0));
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(palette().color(QPalette::Dark));
    painter.drawRect(groove);
}

void TimeBar::want(double place)
{
    time = TimeAt(place);
    update();
    emit Wanted(time);
}

void TimeBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !flight)
        return QWidget::mousePressEvent(event);
    beforeDrag = time;
    want(event->localPos().x());
}

void TimeBar::mouseMoveEvent(QMouseEvent* event)
{
    if (beforeDrag)
        want(event->localPos().x());
}

void TimeBar::mouseReleaseEvent(QMouseEvent*)
{
    beforeDrag.reset();
}

void TimeBar::keyPressEvent(QKeyEvent* event)
{
    if (!flight)
        return QWidget::keyPressEvent(event);
    const auto back = [this](quint64 by) {
        return time - std::min(by, time - std::min(time, flight->Begin()));
    };
    quint64 wanted = time;
    switch (event->key()) {
    case Qt::Key_Left:
        wanted = back(step);
        break;
    case Qt::Key_Right:
        wanted = std::min(time + step, flight->End());
        break;
    case Qt::Key_PageDown:
        wanted = back(page);
        break;
    case Qt::Key_PageUp:
        wanted = std::min(time + page, flight->End());
        break;
    case Qt::Key_Home:
        wanted = flight->Begin();
        break;
    case Qt::Key_End:
        wanted = flight->End();
        break;
    case Qt::Key_Escape:
        if (!beforeDrag)
            return QWidget::keyPressEvent(event);
        wanted = *std::exchange(beforeDrag, std::nullopt);
        break;
    default:
        return QWidget::keyPressEvent(event);
    }
    SetTime(wanted);
    emit Wanted(wanted);
}
