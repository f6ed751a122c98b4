#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec2d>
#include <osg/Vec3d>

#include <QObject>
#include <QPointer>
#include <QRectF>

#include <optional>

class AxMagnifierItem;
class AxViewerParts;
class QGraphicsItem;
class QGraphicsView;

/**
 * The magnifier: a lens over the map that shows a part of it larger, live, as the camera would see it with a
 * longer focal length. It stays on the place of the ground that it was set on while the map moves below it,
 * and shows nothing, and says so, while that place is not in the picture. The wheel over the lens changes how
 * much it magnifies, a drag moves it, its cross and Escape close it. The mouse over it reaches nothing below.
 *
 * It is no map object: not saved, not undone, in no list. There is one at most.
 *
 * Owned by the viewer, CAxEarthViewer::GetMagnifier(), with which it goes. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxMagnifier : public QObject
{
    Q_OBJECT
public:
    /// The parts outlive it.
    explicit AxMagnifier(AxViewerParts& viewer);
    ~AxMagnifier() override;

    /// Opens the lens for the part of the picture between two corners, from -1 to 1, x to the right, y
    /// upwards; in the place of another one. False before the map is loaded and for what is no place.
    bool Look(const osg::Vec2d& corner, const osg::Vec2d& opposite);
    /// False when there was none.
    bool Close();
    bool IsOpen() const { return isOpen; }

    double Factor() const { return factor; } ///< how many times larger
    /// Brought between 1.5 and 32; nothing for NaN.
    void SetFactor(double times);
    /// Of the map's widget, in its pixels.
    QSizeF MapSize() const;
    /// Where the lens is: pixels of the map's widget, y downwards. It follows the size of that, and takes an
    /// eighth of it at most.
    QRectF Frame() const;
    /// What it shows, from -1 to 1, y upwards (top() is the lower edge); nothing while the place is not in
    /// the picture, and while there is no lens.
    std::optional<QRectF> Part() const;

    /// What is drawn over the map by Qt. It belongs to this object once it is in no graphics scene any more.
    QGraphicsItem* Item() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// It was opened, closed, moved or set to another factor.
    void changed();

private:
    std::optional<osg::Vec2d> middle() const;
    bool isUnder(const QPointF& place) const;
    bool press(const QPointF& place);
    void letGo();
    void tell();

    const QPointer<AxViewerParts> parts;
    const QPointer<QGraphicsView> map;
    AxMagnifierItem* item;
    bool isOpen = false;
    std::optional<osg::Vec3d>
        ground;          ///< geocentric metres, or of a model; without, the place in the window counts
    osg::Vec2d inWindow; ///< -1 to 1, y upwards
    QSizeF wanted;       ///< what a smaller map has room for is less
    double factor = 1.0;
    QPointF corner;              ///< the upper left one, pixels, y downwards
    std::optional<QPointF> grip; ///< from the corner to the mouse while it is moved
    bool isTaken = false;        ///< the press that is held
};
