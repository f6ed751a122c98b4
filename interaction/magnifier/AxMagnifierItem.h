#pragma once
#include <QGraphicsItem>

class AxMagnifier;

/// The border of a magnifier with its cross and its factor, and the frame around what it shows. GUI thread.
class AxMagnifierItem : public QGraphicsItem
{
public:
    explicit AxMagnifierItem(const AxMagnifier& magnifier);

    /// Where the cross is in a lens.
    static QRectF CrossIn(const QRectF& lens);
    /// To be called when what the map shows has another size.
    void SetRoom(const QRectF& map);

    QRectF boundingRect() const override { return room; }
    QPainterPath shape() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    void paintBadge(QPainter& painter, const QRectF& lens) const;

    const AxMagnifier& magnifier;
    QRectF room;
};
