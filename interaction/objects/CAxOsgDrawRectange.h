#pragma once
#include "interaction/objects/AxBlockAdapter.h"

#include <osg/Vec2f>

#include <optional>

/**
 * A rectangle on the globe whose corners lie on two meridians and two parallels.
 * The first click sets a corner, the second one the opposite corner and ends the
 * drawing, and so does dragging from the one to the other. Its four corners, in
 * the order of the ring, are its vertices; the first and the third are opposite.
 * A dragged corner takes its two neighbours along, so that a rectangle stays one,
 * and none can be deleted or added.
 *
 * While drawing, only the first corner is a vertex; "Stipple" shows the rectangle
 * up to the cursor, with the lengths of its sides. CheckGeometry() answers -2, after
 * a box that tells why, for other than four corners, no height or width, and a
 * rectangle over a no-fly zone.
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

public slots:
    void slotMousePressed(float windowX, float windowY) override;
    void slotMousePressed(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotMouseRelease(float windowX, float windowY) override;
    void slotMouseRelease(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    /// While drawing it comes on top of the first corner's click, and gives the
    /// drawing up as one without extent, unless it is elsewhere.
    void slotDoubleClicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotDragging(float windowX, float windowY) override;
    void slotDragging(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPointMoved(double lng, double lat, double alt, int index) override;

protected:
    /// For kinds of block that are rectangles.
    CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent, CAxBlock::EBlockType type);
    AxVerdict JudgeShape() override;
    QString ShapeFault() override;
    /// Four corners, but the first and the third on one meridian or one parallel.
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
    bool isOnFirstCorner(const osg::Vec3d& lngLatPos);
    /// The corners when the mouse ends the drawing at a place. A side that it cannot tell from none, or that
    /// a trembling hand makes, is none.
    std::vector<osg::Vec3d> upTo(const osg::Vec3d& lngLatPos);
    void setFirstCorner(const osg::Vec3d& lngLatPos);
    void finishAt(const Place& place);

    std::optional<Press> press; ///< while the left button is held
    Place underMouse;           ///< of the latest drag or release
    bool cornerIsNew = false;   ///< a click has set it, and no press has come since
    bool endedByClick = false;  ///< and no press has come since
    /// Whether the side from the first vertex to the second is the one along a parallel.
    bool firstSideOnParallel = true;
};
