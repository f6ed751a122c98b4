#pragma once
#include "interaction/objects/AxBlockAdapter.h"

#include <osg/Vec2f>

#include <QStringList>

#include <optional>
#include <vector>

/**
 * A rectangle on the globe. Its four corners, in the order of the ring, are its vertices; none can be deleted
 * or added.
 *
 * The first two clicks make its first side, the third one its width. Dragging from a corner to the opposite
 * one makes an upright rectangle, whose corners lie on two meridians and two parallels, and so does a double
 * click on the opposite corner. A dragged corner takes its two neighbours along; the handle in the middle of
 * a side moves the side, the one outside turns the rectangle. Moved as a whole it keeps its size and heading.
 * A double click opens its measures. A record whose corners make no right angles is drawn as it is and
 * becomes the rectangle that comes nearest with its first change.
 *
 * A kind that is only ever upright (see the protected constructor) is drawn by two clicks on opposite
 * corners, and only its corners can be dragged.
 *
 * While drawing, the first corner, then the first side, are its vertices; "Stipple" shows what the next click
 * makes, with the lengths of its sides beside the cursor. CheckGeometry() answers -2, after a box that tells
 * why, for other than four corners, no length or width, a ring that crosses itself, and a rectangle over a
 * no-fly zone.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxOsgDrawRectange : public AxBlockAdapter
{
    Q_OBJECT
public:
    CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent);
    ~CAxOsgDrawRectange() override;

    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    void ResumeDrawing(std::vector<osg::Vec3d> vertices) override;
    std::vector<AxFurtherHandle> FurtherHandles() override;
    /// The dialog of the block, also from its handles: name, area, length, width and angle. A block with
    /// routes has none.
    void ResponseDoubleClickOnBlock() override;
    void ResponseDoubleClickOnPoint(int index, osg::Vec3d point) override;
    void ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

public slots:
    void slotMousePressed(float windowX, float windowY) override;
    void slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotMouseRelease(float windowX, float windowY) override;
    void slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    /// While drawing it makes the corner that its first click has set the opposite one. On top of the first
    /// corner it gives the drawing up as one without extent.
    void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDragging(float windowX, float windowY) override;
    void slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPointMoved(double lng, double lat, double alt, int index) override;
    void slotHandleMoved(double dLng, double dLat, double dAlt) override;

protected:
    /// For kinds of block that are upright rectangles.
    CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent, CAxBlock::EBlockType type);
    AxVerdict JudgeShape() override;
    QString ShapeFault() override;
    /// Four corners, but no length or no width.
    bool IsFlat() const;

private:
    struct Place
    {
        osg::Vec3d lngLat;
        osg::Vec3d world;
    };
    struct Press
    {
        Place place;
        osg::Vec2f window;
    };
    bool isTremble(float windowX, float windowY) const;
    std::optional<double> pixelsBetween(const osg::Vec3d& a, const osg::Vec3d& b) const;
    bool isOn(const osg::Vec3d& corner, const osg::Vec3d& lngLatPos);
    /// The corners when the mouse ends the drawing at a place. A side that it cannot tell from none, or that
    /// a trembling hand makes, is none.
    std::vector<osg::Vec3d> upTo(const osg::Vec3d& lngLatPos);
    std::vector<osg::Vec3d> onSideUpTo(const osg::Vec3d& lngLatPos);
    void setCorner(const osg::Vec3d& lngLatPos);
    void finishAt(const Place& place);
    void finishWith(std::vector<osg::Vec3d> ring);
    void showFirstSide(const osg::Vec3d& lngLatPos);
    void showRing(const std::vector<osg::Vec3d>& ring, const osg::Vec3d& lngLatPos, const QString& hint);
    std::vector<osg::Vec3d> ringBefore() const;
    std::vector<osg::Vec3d> draggedTo(std::size_t handle, const osg::Vec3d& place) const;
    void takeRing(const std::vector<osg::Vec3d>& ring);

    const bool turns;           ///< not only ever upright
    std::optional<Press> press; ///< while the left button is held
    Place underMouse;           ///< of the latest drag or release
    bool cornerIsNew = false;   ///< a click has set the latest one, and no press has come since
    bool endedByClick = false;  ///< and no press has come since
    /// Of an upright kind: whether the side from the first vertex to the second is the one along a parallel.
    bool firstSideOnParallel = true;
    std::vector<osg::Vec3d> beforeDrag; ///< the corners when a drag of a handle or of the whole began
};
