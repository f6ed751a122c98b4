#pragma once
#include "featurelayers/LabelSet.h"
#include <mutex>
#include <osg/Matrixd>
#include <osg/observer_ptr>
#include <osg/Viewport>

namespace osgEarth {
class Map;
class Terrain;
class QuadtreeTerrain;

namespace Features {
/// What the choice of labels needs to know of one frame's camera.
struct LabelView
{
    osg::Matrixd worldToClip;
    osg::Vec3d eye;
    float width = 0.0f, height = 0.0f;
    unsigned frame = 0;

    /// Whether both views put every point at the same pixel; their near and far planes may differ.
    bool sameSight(const LabelView& other) const;
    /// Pixels from the lower left corner; false behind the eye or far outside.
    bool project(const osg::Vec3d& world, osg::Vec2f& pixel) const;
};

/// A label that is shown now.
struct ShownLabel
{
    PlaceLabel* label;
    osg::Vec2f pixel;
};

/// The labels of one layer and what of them is shown.
struct LabelSet
{
    LabelLook look;
    std::vector<PlaceLabel> labels; ///< by falling priority
    std::shared_ptr<GlyphAtlas> atlas;
    std::vector<ShownLabel> shown;
    unsigned lastSeen = 0;  ///< frame in which the layer was culled
    unsigned selection = 0; ///< grows when shown changes
};

/// Chooses, for all label layers of a map together, which labels are shown.
/// Layers that were not drawn in this frame or the last drawn one do not take part. Used
/// on the thread that culls.
class LabelField : public osg::Referenced
{
public:
    /// The field of that map, made by the first call. Any thread.
    static osg::ref_ptr<LabelField> of(const Map* map);

    void add(const std::shared_ptr<LabelSet>& set);
    /// Refreshes the choice when sight, layers or ground have changed. Without
    /// ground the heights stay as they are, and nothing stands before a place.
    void update(const LabelView& view, const QuadtreeTerrain* ground);

private:
    bool refreshHeights(const LabelView& view, const Terrain& terrain);
    /// Whether ground stands between the eye and the label's place, as far as the frame has rays left to
    /// look.
    bool isBlocked(PlaceLabel& label, const LabelView& view, const QuadtreeTerrain& ground, bool anew);
    /// Looks anew whether ground stands before a few of the labels that have room; true when that changed.
    bool refreshSight(const LabelView& view, const QuadtreeTerrain& ground);
    void choose(const LabelView& view, const QuadtreeTerrain* ground);

    std::mutex _mutex; ///< guards _sets, which loading threads add to
    std::vector<std::weak_ptr<LabelSet>> _sets;
    std::vector<std::shared_ptr<LabelSet>> _active;
    LabelView _lastView;
    // Numbers of the frame that is drawn and of the one drawn before it; some lie between that were not.
    unsigned _frame = 0;
    unsigned _frameBefore = 0;
    size_t _nextHeight = 0;
    /// Those that only ground kept from being shown, and the shown ones. Of the active sets.
    std::vector<PlaceLabel*> _inSight;
    size_t _nextSight = 0;
    size_t _sightsLeft = 0;  ///< rays of this frame
    bool _looksWait = false; ///< some label's sight is still to be looked up
};
} // namespace Features
} // namespace osgEarth
