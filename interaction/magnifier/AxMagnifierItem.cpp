#include "interaction/magnifier/AxMagnifierItem.h"
#include "interaction/magnifier/AxMagnifier.h"

#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {
constexpr double crossSide = 22.0;
constexpr double badgePad = 5.0;
const QColor badgeColor(0, 0, 0, 170);

// White inside of black is seen on snow and on water.
void PaintFrame(QPainter& painter, const QRectF& frame)
{
    constexpr double outer = 3.0;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::black, outer));
    painter.drawRect(frame);
    painter.setPen(QPen(Qt::white, 1.0));
    painter.drawRect(frame);
}
} // namespace

AxMagnifierItem::AxMagnifierItem(const AxMagnifier& owner) : magnifier(owner)
{
    // Below the bar, the compass and the read-out.
    constexpr double belowOthers = -1.0;
    setZValue(belowOthers);
    setAcceptedMouseButtons(Qt::NoButton);
    setVisible(false);
}

QRectF AxMagnifierItem::CrossIn(const QRectF& lens)
{
    return {lens.right() - crossSide, lens.top(), crossSide, crossSide};
}

void AxMagnifierItem::SetRoom(const QRectF& map)
{
    if (map == room)
        return;
    prepareGeometryChange();
    room = map;
}

QPainterPath AxMagnifierItem::shape() const
{
    QPainterPath path;
    path.addRect(magnifier.Frame());
    return path;
}

void AxMagnifierItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    const QRectF lens = magnifier.Frame();
    const auto part = magnifier.Part();
    painter->setRenderHint(QPainter::Antialiasing, false);
    if (part) {
        const auto x = [this](double place) { return 0.5 * (1.0 + place) * room.width(); };
        const auto y = [this](double place) { return 0.5 * (1.0 - place) * room.height(); };
        PaintFrame(*painter, QRectF(QPointF(x(part->left()), y(part->bottom())),
                                    QPointF(x(part->right()), y(part->top()))));
    } else {
        painter->fillRect(lens, QColor(40, 40, 40));
        painter->setPen(Qt::white);
        painter->drawText(lens.adjusted(crossSide, crossSide, -crossSide, -crossSide),
                          Qt::AlignCenter | Qt::TextWordWrap,
                          AxMagnifier::tr("The place of the magnifier is not in the picture"));
    }
    PaintFrame(*painter, lens);
    paintBadge(*painter, lens);
}

void AxMagnifierItem::paintBadge(QPainter& painter, const QRectF& lens) const
{
    const QRectF cross = CrossIn(lens);
    painter.fillRect(cross, badgeColor);
    painter.setPen(QPen(Qt::white, 2.0));
    const QRectF strokes = cross.adjusted(7.0, 7.0, -7.0, -7.0);
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.drawLine(strokes.topLeft(), strokes.bottomRight());
    painter.drawLine(strokes.topRight(), strokes.bottomLeft());

    const double factor = magnifier.Factor();
    const QString text = QStringLiteral("%1×").arg(
        QLocale().toString(factor, 'f', std::abs(factor - std::round(factor)) < 0.05 ? 0 : 1));
    const QFontMetrics metrics = painter.fontMetrics();
    const QRectF badge(lens.topLeft(), QSizeF(metrics.horizontalAdvance(text) + 2.0 * badgePad, crossSide));
    painter.fillRect(badge, badgeColor);
    painter.setPen(Qt::white);
    painter.drawText(badge, Qt::AlignCenter, text);
}
