#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>
#include <osgEarth/Terrain>

#include <QObject>

class CAxDragger;

/**
 * Keeps one handle on the ground as finer tiles of the terrain arrive. It
 * does not own the handle: whoever takes it off the terrain calls Detach(), as
 * the terrain may be about to call it.
 *
 * Reference-counted, held by the terrain. Called where tiles join the scene, on
 * the GUI thread.
 */
class AXEARTHVIEWER_EXPORT CAxClampObjectCallback : public QObject, public osgEarth::TerrainCallback
{
    Q_OBJECT
public:
    /// minLod: tiles of this level of detail and below are too coarse to be clamped to.
    CAxClampObjectCallback(CAxDragger* dragger, int index, int minLod);

    void onTileAdded(const osgEarth::TileKey& key, osg::Node* tile,
                     osgEarth::TerrainCallbackContext& context) override;
    /// From now on it does nothing.
    void Detach() { dragger = nullptr; }
    /// The handle stands elsewhere: a tile of any level clamps it.
    void Forget() { lastLod = -1; }
    /// Level of the tile that it was last clamped to, -1 when there is none.
    int GetLastLod() const { return lastLod; }
    /// Where that put the handle, degrees and metres; zeros once a tile has come
    /// that does not concern it.
    const osg::Vec3d& GetLastPosition() const { return lastPosition; }

signals:
    /// The handle has been put on the ground: degrees, degrees, metres, and the vertex.
    void signalPositionChanged(double dLng, double dLat, double dAlt, int nIndex);

protected:
    ~CAxClampObjectCallback() override = default;

private:
    CAxDragger* dragger;
    const int index;
    const int minLod;
    int lastLod = -1;
    osg::Vec3d lastPosition;
};
