#pragma once
#include "interaction/CAxHandleAdapter.h"

/**
 * A rectangle on the globe, its sides along meridians and parallels: the first
 * click sets a corner, the second one, or a double click, the opposite corner.
 * Its four corners, in the order of the ring, are its vertices. A dragged corner
 * takes its two neighbours along, so that a rectangle stays one.
 *
 * Ownership and thread as of CAxHandleAdapter.
 */
class AXEARTHVIEWER_EXPORT CAxOsgDrawRectange : public CAxHandleAdapter
{
    Q_OBJECT
public:
    CAxOsgDrawRectange(CAxEarthViewer* viewer, QObject* parent);
    ~CAxOsgDrawRectange() override;

    void SetAdapterVisible(bool visible, QString taskID) override;
    int CheckGeometry() override;
    void ImportGeometry(const std::vector<osg::Vec3d>& points, bool enableEditor) override;
    void HandleEnd() override;
    void ClearPoints() override;
    void ResponseHandlePointMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void ResponseHandleMoved(osg::Vec3d worldCoordPos, osg::Vec3d lngLatPos) override;

public slots:
    void slotMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
    void slotPicked(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos) override;
};
