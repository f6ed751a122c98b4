#pragma once
#include <osg/Vec2d>

#include <QGraphicsScene>
#include <QGraphicsView>
#include <QPointer>

/// A frame that is drawn over the map from one place of the picture to another. It is no overlay that takes
/// the mouse or the keys. Belongs to who draws it, leaves the map when it is destroyed, and may outlive it.
/// GUI thread.
class AxRubberFrame
{
public:
    explicit AxRubberFrame(QGraphicsView* map);
    ~AxRubberFrame();
    AxRubberFrame(const AxRubberFrame&) = delete;
    AxRubberFrame& operator=(const AxRubberFrame&) = delete;

    /// Opposite corners; -1 to 1, x to the right, y upwards.
    void Show(const osg::Vec2d& from, const osg::Vec2d& to);

private:
    class Item;

    const QPointer<QGraphicsView> view;
    const QPointer<QGraphicsScene> scene; ///< has taken the item along when it is gone
    Item* const item;
};
