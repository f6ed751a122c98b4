#pragma once
#include "interaction/magnifier/AxMagnifier.h"
#include "interaction/objects/CAxHandleAdapter.h"

#include <osg/Vec2d>

#include <memory>
#include <optional>

class AxRubberFrame;

/**
 * Draws the rectangle that the magnifier shows: from corner to corner by a drag; a click is a rectangle of a
 * usual size around it. Letting go of the button, or of the tool in the middle of the drag, opens the
 * magnifier in the place of one that is open, Escape does not. It leaves no block record, no undo step and
 * nothing on the map behind, and is gone when it has ended.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxOsgDrawMagnifyRectange : public CAxHandleAdapter
{
    Q_OBJECT
public:
    /// The magnifier may go first.
    CAxOsgDrawMagnifyRectange(CAxEarthViewer* viewer, QObject* parent, AxMagnifier& magnifier);
    ~CAxOsgDrawMagnifyRectange() override;

    AxShapeKind ShapeKind() const override { return {AxShapeKind::Edges::Closed, 4, false}; }
    /// 1 once there is a rectangle.
    int CheckGeometry() override;
    void SetAdapterVisible(bool visible, QString taskID) override;
    void ClearPoints() override;
    void EndHandle() override;
    bool CancelHandle() override;

public slots:
    void slotMousePressed(float windowX, float windowY) override;
    void slotDragging(float windowX, float windowY) override;
    void slotMouseRelease(float windowX, float windowY) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;

private:
    std::optional<osg::Vec2d> inPicture(float windowX, float windowY) const;
    void drawTo(float windowX, float windowY);
    void finish();
    void leave();

    const QPointer<AxMagnifier> magnifier;
    std::optional<osg::Vec2d> from; ///< corners, -1 to 1, y upwards
    osg::Vec2d to;
    std::unique_ptr<AxRubberFrame> frame;
};
