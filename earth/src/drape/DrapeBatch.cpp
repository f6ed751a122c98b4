#include "drape/DrapeBatch.h"
#include <algorithm>
#include <array>
#include <cmath>

namespace osgEarth {
namespace {
constexpr unsigned kSlots = kDrapeSlots;
// A coarser level is drawn when its rim is at most this many pixels beside the true one.
constexpr double kPixelError = 0.75;
// Shapes with a smaller radius, in pixels, are not drawn.
constexpr double kLeastArea = 0.5;
constexpr double kLeastLine = 1.5;
// So many pixels may fill and outline each lie beside the ground that they are on.
constexpr double kFlatError = 0.4;
// Cosine of the angle to the vertical under which ground can be hidden by nothing but a cliff.
constexpr double kFromAbove = 0.8;
// Heights are looked up again after this many frames.
constexpr unsigned kKnownInterval = 150;
constexpr unsigned kNearInterval = 30;
constexpr unsigned kUnknownInterval = 20;
// More than the width of any line, pixels, widened as the shader does.
constexpr double kLineReach = 200.0;
// Beside the shapes' bounds, for the width of lines, in parts of half the window.
constexpr double kFramePad = 0.05;

/// Grows from nothing to the part of the window that spheres are seen in.
class WindowFrame
{
public:
    void add(const osg::BoundingSphered& sphere, const osg::Matrixd& worldToView,
             const osg::Matrixd& projection)
    {
        const osg::Vec3d c = sphere.center() * worldToView;
        const double r = sphere.radius();
        if (c.z() + r > -1.0) { // the eye may be within
            _low.set(-1.0, -1.0);
            _high.set(1.0, 1.0);
            return;
        }
        for (const double x : {c.x() - r, c.x() + r})
            for (const double y : {c.y() - r, c.y() + r})
                for (const double z : {c.z() - r, c.z() + r}) {
                    const osg::Vec3d p = osg::Vec3d(x, y, z) * projection;
                    _low.set(std::min(_low.x(), p.x() - kFramePad), std::min(_low.y(), p.y() - kFramePad));
                    _high.set(std::max(_high.x(), p.x() + kFramePad), std::max(_high.y(), p.y() + kFramePad));
                }
    }
    osg::Vec4f get() const
    {
        return osg::Vec4f(
            static_cast<float>(std::max(-1.0, _low.x())), static_cast<float>(std::max(-1.0, _low.y())),
            static_cast<float>(std::min(1.0, _high.x())), static_cast<float>(std::min(1.0, _high.y())));
    }

private:
    osg::Vec2d _low{1.0, 1.0};
    osg::Vec2d _high{-1.0, -1.0};
};

/// By how many metres a point seems to be shifted sideways when it lies so many
/// metres above or below its shape; infinite where the eye does not look down on the ground.
double offGround(const DrapeView& view, const DrapeExtent& extent, double height)
{
    const osg::Vec3d sight = view.eye - extent.bound.center();
    const osg::Vec3d up = ellipsoidUp(extent.bound.center());
    const double along = sight * up / sight.length();
    // At the near and far ends of a wide shape the ground is seen more from the side.
    const double aside =
        std::sqrt(std::max(0.0, 1.0 - along * along)) + extent.bound.radius() / sight.length();
    return along > kFromAbove ? height * aside : 1e30;
}

/// A square whose corners the shader of DrapePasses::paintFrame places.
osg::ref_ptr<osg::Geometry> makeSquare()
{
    osg::ref_ptr<osg::Geometry> square = new osg::Geometry();
    square->setUseDisplayList(false);
    square->setUseVertexBufferObjects(true);
    const osg::Vec3 corners[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    square->setVertexArray(new osg::Vec3Array(4, corners));
    square->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
    square->setCullingActive(false);
    return square;
}
} // namespace

/// Up to kSlots members in one set of buffers. The buffers are filled anew when
/// members come or go, the indices when other levels of them are seen.
class DrapeBatch::Chunk
{
public:
    Chunk()
    {
        for (Drawn& part : parts) {
            osg::Geometry& geometry = *part.geometry;
            geometry.setUseDisplayList(false);
            geometry.setUseVertexBufferObjects(true);
            geometry.setDataVariance(osg::Object::DYNAMIC);
            geometry.setVertexArray(positions);
            geometry.setNormalArray(ups, osg::Array::BIND_PER_VERTEX);
            geometry.setTexCoordArray(0, shifts, osg::Array::BIND_PER_VERTEX);
            geometry.setTexCoordArray(1, rims, osg::Array::BIND_PER_VERTEX);
            geometry.addPrimitiveSet(part.indices);
        }
        for (osg::Uniform* uniform : {origins.get(), heights.get()}) {
            uniform->setDataVariance(osg::Object::DYNAMIC);
            state->addUniform(uniform);
        }
        state->setDataVariance(osg::Object::DYNAMIC);
    }

    bool add(const std::shared_ptr<Member>& member)
    {
        const auto free = std::find(members.begin(), members.end(), nullptr);
        if (free == members.end())
            return false;
        *free = member;
        arraysAreOld = true;
        return true;
    }
    bool tidy()
    {
        bool any = false;
        for (auto& member : members) {
            if (member && member.use_count() == 1) {
                member.reset();
                arraysAreOld = true;
            }
            any = any || member;
        }
        return any;
    }

    enum Part
    {
        Outside, // the eye, of the volume
        Within,
        Flat // seen from so far above that the volume's upper face is enough
    };

    /// Chooses the level of a member and how it is marked.
    void choose(unsigned slot, int level, Part how)
    {
        for (Drawn& part : parts)
            part.wanted[slot] = -1;
        parts[how].wanted[slot] = level;
    }

    /// Brings the buffers up to date; false when nothing is drawn.
    bool prepare()
    {
        if (arraysAreOld)
            fillArrays();
        bool any = false;
        for (Drawn& part : parts) {
            if (part.wanted != part.drawn)
                fillIndices(part, Part(&part - parts.data()));
            any = any || !part.indices->empty();
        }
        return any;
    }

    using Levels = std::array<int, kSlots>;
    static Levels none()
    {
        Levels levels;
        levels.fill(-1);
        return levels;
    }
    /// Members of one way of counting.
    struct Drawn
    {
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry();
        osg::ref_ptr<osg::DrawElementsUInt> indices = new osg::DrawElementsUInt(GL_TRIANGLES);
        Levels wanted = none();
        Levels drawn = none();
    };
    std::array<Drawn, 3> parts;
    std::array<std::shared_ptr<Member>, kSlots> members;
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet();
    osg::ref_ptr<osg::Uniform> origins =
        new osg::Uniform(osg::Uniform::FLOAT_VEC3, "ax_drapeOrigins", static_cast<int>(kSlots));
    osg::ref_ptr<osg::Uniform> heights =
        new osg::Uniform(osg::Uniform::FLOAT_VEC3, "ax_drapeRims", static_cast<int>(kSlots));

private:
    void fillIndices(Drawn& part, Part how)
    {
        part.drawn = part.wanted;
        part.indices->clear();
        for (unsigned slot = 0; slot < kSlots; ++slot) {
            if (part.drawn[slot] < 0)
                continue;
            const DrapeBlock::Level& level =
                members[slot]->block.levels[static_cast<size_t>(part.drawn[slot])];
            const size_t count = how == Flat      ? level.caps
                                 : how == Outside ? level.upper
                                                  : level.indices.size();
            for (size_t i = 0; i < count; ++i)
                part.indices->push_back(bases[slot] + level.indices[i]);
        }
        part.indices->dirty();
    }

    void fillArrays()
    {
        arraysAreOld = false;
        for (Drawn& part : parts) {
            part.drawn.fill(-1);
            part.indices->clear();
            part.indices->dirty();
        }
        positions->clear();
        ups->clear();
        shifts->clear();
        rims->clear();
        for (unsigned slot = 0; slot < kSlots; ++slot) {
            bases[slot] = static_cast<unsigned>(positions->size());
            if (!members[slot])
                continue;
            const DrapeBlock& block = members[slot]->block;
            positions->insert(positions->end(), block.positions.begin(), block.positions.end());
            ups->insert(ups->end(), block.ups.begin(), block.ups.end());
            shifts->insert(shifts->end(), block.shifts.begin(), block.shifts.end());
            for (const float rim : block.rims)
                rims->push_back(osg::Vec2(rim, static_cast<float>(slot)));
        }
        for (osg::Array* array :
             {static_cast<osg::Array*>(positions.get()), static_cast<osg::Array*>(ups.get()),
              static_cast<osg::Array*>(shifts.get()), static_cast<osg::Array*>(rims.get())})
            array->dirty();
    }

    osg::ref_ptr<osg::Vec3Array> positions = new osg::Vec3Array();
    osg::ref_ptr<osg::Vec3Array> ups = new osg::Vec3Array();
    osg::ref_ptr<osg::Vec4Array> shifts = new osg::Vec4Array();
    osg::ref_ptr<osg::Vec2Array> rims = new osg::Vec2Array(); // which rim, and the slot
    std::array<unsigned, kSlots> bases{};
    bool arraysAreOld = true;
};

DrapeBatch::DrapeBatch(const osg::Vec4f& color, bool lines)
    : _paint(new osg::StateSet()), _square(makeSquare()), _lines(lines)
{
    _frame = new osg::Uniform("ax_drapeFrame", osg::Vec4f(-1.0f, -1.0f, 1.0f, 1.0f));
    _frame->setDataVariance(osg::Object::DYNAMIC);
    _paint->addUniform(new osg::Uniform("ax_drapeColor", color));
    _paint->addUniform(_frame);
    _paint->setDataVariance(osg::Object::DYNAMIC);
}

DrapeBatch::~DrapeBatch() = default;

void DrapeBatch::add(const std::shared_ptr<Member>& member)
{
    for (const auto& chunk : _chunks)
        if (chunk->add(member))
            return;
    _chunks.push_back(std::make_unique<Chunk>());
    _chunks.back()->add(member);
}

bool DrapeBatch::tidy()
{
    _chunks.erase(
        std::remove_if(_chunks.begin(), _chunks.end(), [](const auto& chunk) { return !chunk->tidy(); }),
        _chunks.end());
    return !_chunks.empty();
}

void DrapeBatch::cull(osgUtil::CullVisitor& cv, const DrapeView& view, const DrapePasses& passes,
                      unsigned& lookUps)
{
    // The shader turns directions only: the places of the shapes come from their slots.
    osg::Matrixd turn = view.worldToView;
    turn.setTrans(0.0, 0.0, 0.0);
    osg::ref_ptr<osg::RefMatrix> matrix = new osg::RefMatrix(turn);
    const double leastRadius = _lines ? kLeastLine : kLeastArea;
    WindowFrame frame;
    bool any = false;
    for (const auto& chunk : _chunks) {
        for (unsigned slot = 0; slot < kSlots; ++slot) {
            chunk->choose(slot, -1, Chunk::Outside);
            Member* member = chunk->members[slot].get();
            if (!member)
                continue;
            const DrapeBlock& block = member->block;
            osg::BoundingSphered seen = block.bound;
            seen.radius() += DrapeGround::kHighest;
            if (view.horizon.hides(block.occludee) ||
                cv.isCulled(osg::BoundingSphere(osg::Vec3(seen.center() * view.worldToLocal),
                                                static_cast<float>(seen.radius()))))
                continue;
            const double distance = (view.eye - block.bound.center()).length();
            const double nearest = std::max(1.0, distance - block.bound.radius());
            if (block.bound.radius() < leastRadius * view.pixel * nearest)
                continue;
            DrapeGround& ground = member->ground;
            if (lookUps > 0 && ground.isDue(view.frame, !ground.isKnown()                ? kUnknownInterval
                                                        : nearest < block.bound.radius() ? kNearInterval
                                                                                         : kKnownInterval))
                lookUps -= std::min(lookUps, ground.lookUp(block, view.map, view.eye, view.frame));
            size_t level = 0;
            while (level + 1 < block.levels.size() &&
                   block.levels[level + 1].error <= kPixelError * view.pixel * nearest)
                ++level;
            osg::Vec3f heights = ground.heights(block.levels[level].sagitta, distance + block.bound.radius());
            // Lines reach further by their width.
            const double reach = block.bound.radius() +
                                 static_cast<double>(std::max(std::abs(heights.x()), std::abs(heights.y()))) +
                                 kLineReach * view.pixel * distance;
            const bool isFlat = distance > reach && ground.isKnown() &&
                                offGround(view, block, ground.relief() + block.levels[level].sagitta) <=
                                    kFlatError * view.pixel * nearest;
            if (isFlat)
                heights.y() = static_cast<float>(ground.middle());
            chunk->choose(slot, static_cast<int>(level),
                          isFlat              ? Chunk::Flat
                          : distance <= reach ? Chunk::Within
                                              : Chunk::Outside);
            chunk->origins->setElement(slot, osg::Vec3f(block.origin * view.worldToView));
            chunk->heights->setElement(slot, heights);
            frame.add(seen, view.worldToView, *cv.getProjectionMatrix());
        }
        if (!chunk->prepare())
            continue;
        any = true;
        cv.pushStateSet(chunk->state.get());
        osg::StateSet* const marks[] = {passes.markManyBefore.get(), passes.markMany.get(),
                                        passes.markManyFlat.get()};
        for (const Chunk::Part part : {Chunk::Outside, Chunk::Within, Chunk::Flat}) {
            if (chunk->parts[part].indices->empty())
                continue;
            cv.pushStateSet(marks[part]);
            cv.addDrawableAndDepth(chunk->parts[part].geometry.get(), matrix.get(), 0.0f);
            cv.popStateSet();
        }
        cv.popStateSet();
    }
    if (!any)
        return;
    _frame->set(frame.get());
    cv.pushStateSet(_paint.get());
    cv.pushStateSet(passes.paintFrame.get());
    cv.addDrawableAndDepth(_square.get(), matrix.get(), 0.0f);
    cv.popStateSet();
    cv.popStateSet();
}

void DrapeBatch::releaseGLObjects(osg::State* state) const
{
    for (const auto& chunk : _chunks)
        for (const Chunk::Drawn& part : chunk->parts)
            part.geometry->releaseGLObjects(state);
    _square->releaseGLObjects(state);
}
} // namespace osgEarth
