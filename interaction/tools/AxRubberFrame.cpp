#include "interaction/tools/AxRubberFrame.h"

#include <QGraphicsItem>
#include <QPainter>

class AxRubberFrame::Item : public QGraphicsItem
{
public:
    Item()
    {
        constexpr double overOthers = 2.0;
        setZValue(overOthers);
        setAcceptedMouseButtons(Qt::NoButton);
    }
    void SetRect(const QRectF& wanted)
    {
        prepareGeometryChange();
        rect = wanted;
    }
    QRectF boundingRect() const override
    {
        constexpr double penRoom = 2.0;
        return rect.adjusted(-penRoom, -penRoom, penRoom, penRoom);
    }
    // Nothing of it is under the mouse.
    QPainterPath shape() const override { return {}; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*) override
    {
        // White inside of black is seen on snow and on water.
        constexpr double outer = 3.0;
        painter->setPen(QPen(Qt::black, outer));
        painter->setBrush(QColor(255, 196, 0, 40));
        painter->drawRect(rect);
        painter->setPen(QPen(Qt::white, 1.0));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(rect);
    }

private:
    QRectF rect;
};

AxRubberFrame::AxRubberFrame(QGraphicsView* map) : view(map), scene(map->scene()), item(new Item)
{
    if (scene)
        scene->addItem(item);
}

AxRubberFrame::~AxRubberFrame()
{
    if (scene)
        delete item;
}

void AxRubberFrame::Show(const osg::Vec2d& from, const osg::Vec2d& to)
{
    if (!scene || !view)
        return;
    const QSize size = view->viewport()->size();
    const auto inScene = [&](const osg::Vec2d& place) {
        return view->mapToScene(QPoint(qRound(0.5 * (1.0 + place.x()) * (size.width() - 1)),
                                       qRound(0.5 * (1.0 - place.y()) * (size.height() - 1))));
    };
    item->SetRect(QRectF(inScene(from), inScene(to)).normalized());
}
