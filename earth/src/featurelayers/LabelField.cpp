#include "featurelayers/LabelField.h"
#include "terrain/QuadtreeTerrain.h"
#include <algorithm>
#include <cmath>
#include <map>
#include <osgEarth/Map>
#include <osgEarth/SpatialReference>
#include <osgEarth/Terrain>

namespace osgEarth::Features {
namespace {
// More labels than this on a screen of a million pixels hide the map.
constexpr float kPixelsPerLabel = 8500.0f;
// Labels that are shown stay so a little beyond that number.
constexpr float kStayingShare = 1.15f;
// Free room round a label, beyond what its letters cover.
constexpr float kBreathingRoom = 3.0f;
// Farther away a mountain moves its label by less than a pixel.
constexpr double kHeightRange = 4.0e6;
constexpr size_t kHeightsPerFrame = 10;
// Labels may wait a frame or two, a frame may not wait for rays.
constexpr size_t kSightsPerFrame = 16;
// So many of them go to labels whose ground may have changed.
constexpr size_t kSightsRefreshed = 4;
// An eye that moved less than this share of its distance sees round the same ridges.
constexpr double kSameEye = 0.1;
// No slope hides what is looked at from so steeply above (sine of the angle).
constexpr double kSteepLook = 0.7;
// A place is as high as its label's dot, and the drawn ground may be off by a few pixels.
constexpr double kLift = 0.006;

/// Whether the drawn ground stands between the eye and the place.
bool isBehindGround(const PlaceLabel& label, const osg::Vec3d& eye, double distance,
                    const QuadtreeTerrain& ground)
{
    const osg::Vec3d place = label.ground + label.up * (label.height + kLift * distance);
    const osg::Vec3d way = place - eye;
    osg::Vec3d hit;
    return ground.intersectRay(eye, way, hit) && (hit - eye).length() < (1.0 - 2.0 * kLift) * way.length();
}
} // namespace

bool LabelView::project(const osg::Vec3d& world, osg::Vec2f& pixel) const
{
    const osg::Vec4d clip = osg::Vec4d(world, 1.0) * worldToClip;
    if (!(clip.w() > 0.0) || std::abs(clip.x()) > 1.2 * clip.w() || std::abs(clip.y()) > 1.2 * clip.w())
        return false;
    pixel.set(static_cast<float>((clip.x() / clip.w() * 0.5 + 0.5) * width),
              static_cast<float>((clip.y() / clip.w() * 0.5 + 0.5) * height));
    return true;
}

bool LabelView::sameSight(const LabelView& other) const
{
    if (width != other.width || height != other.height)
        return false;
    for (int row = 0; row < 4; ++row)
        for (const int column : {0, 1, 3})
            if (worldToClip(row, column) != other.worldToClip(row, column))
                return false;
    return true;
}

osg::ref_ptr<LabelField> LabelField::of(const Map* map)
{
    static std::mutex mutex;
    static std::map<const Map*, osg::observer_ptr<LabelField>> fields;
    std::lock_guard<std::mutex> lock(mutex);
    osg::ref_ptr<LabelField> field;
    if (!fields[map].lock(field)) {
        field = new LabelField();
        fields[map] = field.get();
    }
    for (auto it = fields.begin(); it != fields.end();)
        it = it->second.valid() ? std::next(it) : fields.erase(it);
    return field;
}

void LabelField::add(const std::shared_ptr<LabelSet>& set)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _sets.push_back(set);
}

void LabelField::update(const LabelView& view, const QuadtreeTerrain* ground)
{
    if (view.frame != _frame) {
        _frameBefore = _frame;
        _frame = view.frame;
    }
    std::vector<std::shared_ptr<LabelSet>> active;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        for (auto it = _sets.begin(); it != _sets.end();) {
            std::shared_ptr<LabelSet> set = it->lock();
            it = set ? std::next(it) : _sets.erase(it);
            if (set && (set->lastSeen == _frame || set->lastSeen == _frameBefore))
                active.push_back(std::move(set));
        }
    }
    const bool newFrame = view.frame != _lastView.frame;
    bool changed = active != _active || (newFrame && _looksWait);
    if (active != _active) {
        _active.swap(active);
        _inSight.clear();
    }
    if (newFrame) {
        _sightsLeft = kSightsPerFrame;
        _looksWait = false;
    }
    if (ground && newFrame) {
        changed = refreshHeights(view, *ground->getTerrain()) || changed;
        changed = refreshSight(view, *ground) || changed;
    }
    if (changed || !view.sameSight(_lastView))
        choose(view, ground);
    _lastView = view;
}

/// Looks a few shown labels up in the terrain; true when one of them moved.
bool LabelField::refreshHeights(const LabelView& view, const Terrain& terrain)
{
    size_t total = 0;
    for (const auto& set : _active)
        total += set->shown.size();
    if (total == 0)
        return false;
    bool moved = false;
    for (size_t n = 0; n < std::min(kHeightsPerFrame, total); ++n) {
        size_t index = _nextHeight++ % total;
        PlaceLabel* label = nullptr;
        for (const auto& set : _active) {
            if (index < set->shown.size()) {
                label = set->shown[index].label;
                break;
            }
            index -= set->shown.size();
        }
        const double distance = label ? (label->ground - view.eye).length() : kHeightRange;
        double height = 0.0;
        if (distance < kHeightRange &&
            terrain.getHeight(SpatialReference::get("wgs84"), label->lonLat.x(), label->lonLat.y(),
                              &height) &&
            std::abs(height - label->height) > 1e-4 * distance) {
            label->height = height;
            moved = true;
        }
    }
    return moved;
}

bool LabelField::isBlocked(PlaceLabel& label, const LabelView& view, const QuadtreeTerrain& ground, bool anew)
{
    const osg::Vec3d toEye = view.eye - (label.ground + label.up * label.height);
    const double distance = toEye.length();
    if (distance > kHeightRange || toEye * label.up > kSteepLook * distance) {
        label.blocked = false;
        label.seenFrom.reset();
        return false;
    }
    const bool known = label.seenFrom && (*label.seenFrom - view.eye).length() < kSameEye * distance;
    if (known && !anew)
        return label.blocked;
    if (_sightsLeft == 0) {
        _looksWait = true;
        return label.blocked || !label.seenFrom;
    }
    --_sightsLeft;
    label.blocked = isBehindGround(label, view.eye, distance, ground);
    label.seenFrom = view.eye;
    return label.blocked;
}

bool LabelField::refreshSight(const LabelView& view, const QuadtreeTerrain& ground)
{
    bool changed = false;
    for (size_t n = 0; n < std::min(kSightsRefreshed, _inSight.size()); ++n) {
        PlaceLabel& label = *_inSight[_nextSight++ % _inSight.size()];
        const bool before = label.blocked;
        changed = isBlocked(label, view, ground, true) != before || changed;
    }
    return changed;
}

void LabelField::choose(const LabelView& view, const QuadtreeTerrain* ground)
{
    _inSight.clear();
    const Horizon horizon(view.eye);
    const size_t most = static_cast<size_t>(std::max(10.0f, view.width * view.height / kPixelsPerLabel));
    ScreenOccupancy screen(view.width, view.height);
    std::vector<size_t> next(_active.size(), 0);
    for (const auto& set : _active) {
        set->shown.clear();
        ++set->selection;
        if (set->atlas->isFull()) {
            set->atlas->reset();
            for (const auto& other : _active)
                if (other->atlas == set->atlas)
                    for (PlaceLabel& label : other->labels)
                        label.laidOut = false;
        }
    }

    size_t chosen = 0;
    for (;;) {
        // The most important label that was not yet looked at; the sets are sorted.
        size_t best = _active.size();
        for (size_t s = 0; s < _active.size(); ++s)
            if (next[s] < _active[s]->labels.size() &&
                (best == _active.size() ||
                 _active[s]->labels[next[s]].priority > _active[best]->labels[next[best]].priority))
                best = s;
        if (best == _active.size())
            break;
        LabelSet& set = *_active[best];
        PlaceLabel& label = set.labels[next[best]++];
        const bool before = label.shown;
        label.shown = false;
        if (static_cast<float>(chosen) >= static_cast<float>(most) * (before ? kStayingShare : 1.0f) ||
            horizon.hides(label.occludee))
            continue;
        osg::Vec2f pixel;
        if (!view.project(label.ground + label.up * label.height, pixel))
            continue;
        if (!label.laidOut)
            layOut(label, set.look, *set.atlas);
        pixel.set(std::round(pixel.x()), std::round(pixel.y()));
        const ScreenBox box{pixel.x() + label.box.left, pixel.y() + label.box.bottom,
                            pixel.x() + label.box.right, pixel.y() + label.box.top};
        if (set.look.declutter &&
            !screen.isFree(box.grownBy(kBreathingRoom + (before ? 0.0f : kComebackMargin))))
            continue;
        _inSight.push_back(&label);
        if (ground && isBlocked(label, view, *ground, false))
            continue;
        screen.take(box);
        label.shown = true;
        set.shown.push_back({&label, pixel});
        ++chosen;
    }
}
} // namespace osgEarth::Features
