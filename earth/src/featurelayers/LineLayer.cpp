#include "featurelayers/LineLayer.h"
#include "base/SharedWhileUsed.h"
#include "featurelayers/LazyGroup.h"
#include "globe/Horizon.h"
#include "layers/TerrainHeights.h"
#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Geometry>
#include <osg/LineWidth>
#include <osg/MatrixTransform>
#include <osg/Program>
#include <osgEarthSymbology/AltitudeSymbol>
#include <osgEarthSymbology/LineSymbol>

namespace osgEarth::Features {
using namespace Symbology;

namespace {
/// One degree of detail. A pixel of an 800 pixel high view of 30 degrees covers
/// 1/1500 of its distance, so that each tolerance stays within a pixel or two
/// at the distance from which the level is used.
struct Level
{
    double cell;       // degrees
    double tolerance;  // degrees
    double longest;    // degrees; longer segments would cut through the round earth
    double resolution; // degrees between the heights looked at
    double range;      // metres from which on the next finer level is drawn
};
constexpr Level kLevels[] = {{45.0, 0.35, 4.0, 0.5, 1.4e7},
                             {22.5, 0.08, 1.0, 0.2, 5.0e6},
                             {7.5, 0.02, 0.5, 0.1, 1.2e6},
                             {2.5, 0.0, 0.1, 0.01, 0.0}};
constexpr int kFinest = 3;

// The eye sees lines this share of their distance nearer than they are: more
// than the coarse ground may stand above the true one, too little to show
// through a hill that is worth its name.
const char kLineVertexShader[] = R"(#version 330 compatibility
const float nearer = 0.01;
void main()
{
    vec4 seen = gl_ModelViewMatrix * gl_Vertex;
    vec4 place = gl_ProjectionMatrix * seen;
    vec4 front = gl_ProjectionMatrix * vec4(seen.xyz * (1.0 - nearer), 1.0);
    // The lines are moved towards the eye, but never through the near plane.
    place.z = max(front.z / front.w, min(place.z / place.w, -1.0)) * place.w;
    gl_Position = place;
    gl_FrontColor = gl_Color;
}
)";
const char kLineFragmentShader[] = R"(#version 330 compatibility
void main()
{
    gl_FragColor = gl_Color;
}
)";

struct LineStyle
{
    osg::Vec4f color;
    bool clamp = false;
    double offset = 0.0;
};

/// What all squares of a layer share.
struct LineLayerData : public osg::Referenced
{
    std::vector<LonLatLine> lines;
    LineStyle style;
    osg::observer_ptr<const Map> map;
};

/// Draws its coarse child, or from near by the fine one; nothing while the
/// globe hides it.
class LineSquare : public osg::Group
{
public:
    LineSquare(osg::Node* coarse, const OccludeePoint& occludee, double range)
        : _occludee(occludee), _range(range)
    {
        addChild(coarse);
    }
    void setFine(osg::Group* fine)
    {
        _fine = fine;
        addChild(fine);
    }
    void traverse(osg::NodeVisitor& nv) override
    {
        if (nv.getVisitorType() != osg::NodeVisitor::CULL_VISITOR) {
            osg::Group::traverse(nv);
            return;
        }
        if (Horizon(nv.getEyePoint()).hides(_occludee))
            return;
        const osg::BoundingSphere& bound = getChild(0)->getBound();
        const double distance = (bound.center() - nv.getEyePoint()).length() - bound.radius();
        if (_fine && distance < _range) {
            _fine->accept(nv);
            if (_fine->getNumChildren() > 0)
                return;
        }
        getChild(0)->accept(nv);
    }

private:
    OccludeePoint _occludee;
    double _range;
    osg::Group* _fine = nullptr; // owned as a child
};

osg::Vec3d worldOf(const osg::Vec2d& lonLat, double height)
{
    static const osg::EllipsoidModel wgs84;
    osg::Vec3d world;
    wgs84.convertLatLongHeightToXYZ(osg::DegreesToRadians(lonLat.y()), osg::DegreesToRadians(lonLat.x()),
                                    height, world.x(), world.y(), world.z());
    return world;
}

/// A square's lines as one drawable under its own origin.
osg::ref_ptr<LineSquare> makeSquare(const LineCell& cell, const LineLayerData& data, int level)
{
    TerrainHeights heights;
    osg::ref_ptr<const Map> map;
    if (data.style.clamp && data.map.lock(map))
        heights =
            TerrainHeights(*map, Bounds(cell.west, cell.south, cell.west + cell.size, cell.south + cell.size),
                           kLevels[level].resolution);

    const osg::Vec3d origin = worldOf(
        osg::Vec2d(cell.west + 0.5 * cell.size, std::clamp(cell.south + 0.5 * cell.size, -90.0, 90.0)), 0.0);
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array();
    osg::ref_ptr<osg::DrawElementsUInt> segments = new osg::DrawElementsUInt(GL_LINES);
    for (const LonLatLine& run : cell.runs) {
        for (size_t i = 0; i < run.size(); ++i) {
            if (i > 0) {
                segments->push_back(static_cast<unsigned>(points->size() - 1));
                segments->push_back(static_cast<unsigned>(points->size()));
            }
            points->push_back(worldOf(run[i], heights.at(run[i].x(), run[i].y()) + data.style.offset) -
                              origin);
        }
    }
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry();
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    geometry->setVertexArray(points.get());
    osg::ref_ptr<osg::Vec4Array> color = new osg::Vec4Array(1, &data.style.color);
    geometry->setColorArray(color.get(), osg::Array::BIND_OVERALL);
    geometry->addPrimitiveSet(segments.get());

    osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform(osg::Matrixd::translate(origin));
    place->addChild(geometry);
    const OccludeePoint occludee =
        occludeeOf(origin, std::vector<osg::Vec3f>(points->begin(), points->end()), 0.0);
    return new LineSquare(place.get(), occludee, kLevels[level].range);
}

std::vector<LonLatLine> simplifiedLines(const std::vector<LonLatLine>& lines, double tolerance)
{
    if (tolerance <= 0.0)
        return lines;
    std::vector<LonLatLine> result;
    for (const LonLatLine& line : lines) {
        LonLatLine simple = simplified(line, tolerance);
        if (simple.size() > 1)
            result.push_back(std::move(simple));
    }
    return result;
}

std::vector<LineCell> levelCells(const std::vector<LonLatLine>& lines, int level)
{
    return cellsOf(simplifiedLines(lines, kLevels[level].tolerance), kLevels[level].cell,
                   kLevels[level].longest);
}

/// The finer levels of one square of the coarsest.
class FinerLines : public BackgroundBuild
{
public:
    FinerLines(LineLayerData* data, const LineCell& where)
        : _data(data), _west(where.west), _south(where.south), _size(where.size)
    {
    }

    osg::ref_ptr<osg::Node> build() override
    {
        const std::vector<LonLatLine> near = linesNear();
        std::vector<std::vector<LineCell>> cells;
        for (int level = 1; level <= kFinest; ++level)
            cells.push_back(levelCells(near, level));
        return squares(cells, 1, _west, _south, _size);
    }

private:
    /// The lines with a point in or next to the square.
    std::vector<LonLatLine> linesNear() const
    {
        const double margin = 5.0;
        std::vector<LonLatLine> near;
        for (const LonLatLine& line : _data->lines)
            for (const osg::Vec2d& p : line)
                if (p.x() > _west - margin && p.x() < _west + _size + margin && p.y() > _south - margin &&
                    p.y() < _south + _size + margin) {
                    near.push_back(line);
                    break;
                }
        return near;
    }

    /// The squares of a level that lie in a larger one, each with its finer ones.
    osg::ref_ptr<osg::Group> squares(const std::vector<std::vector<LineCell>>& cells, int level, double west,
                                     double south, double size) const
    {
        const double rim = 1e-9;
        osg::ref_ptr<osg::Group> group = new osg::Group();
        for (const LineCell& cell : cells[static_cast<size_t>(level) - 1]) {
            if (cell.west < west - rim || cell.west > west + size - rim || cell.south < south - rim ||
                cell.south > south + size - rim)
                continue;
            osg::ref_ptr<LineSquare> square = makeSquare(cell, *_data, level);
            if (level < kFinest) {
                osg::ref_ptr<osg::Group> finer = squares(cells, level + 1, cell.west, cell.south, cell.size);
                if (finer->getNumChildren() > 0)
                    square->setFine(finer);
            }
            group->addChild(square);
        }
        return group;
    }

    const osg::ref_ptr<LineLayerData> _data;
    const double _west, _south, _size;
};

osg::StateSet* lineState(const LineSymbol& symbol)
{
    const osg::ref_ptr<osg::Program> program = sharedWhileUsed<osg::Program, LineLayerData>([] {
        osg::ref_ptr<osg::Program> made = new osg::Program();
        made->setName("feature lines");
        made->addShader(new osg::Shader(osg::Shader::VERTEX, kLineVertexShader));
        made->addShader(new osg::Shader(osg::Shader::FRAGMENT, kLineFragmentShader));
        return made;
    });
    auto* state = new osg::StateSet();
    state->setAttributeAndModes(program.get());
    state->setAttributeAndModes(new osg::LineWidth(symbol.stroke()->width().value()));
    state->setAttributeAndModes(
        new osg::BlendFunc(osg::BlendFunc::SRC_ALPHA, osg::BlendFunc::ONE_MINUS_SRC_ALPHA));
    state->setAttributeAndModes(new osg::Depth(osg::Depth::LEQUAL, 0.0, 1.0, false));
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    // After the ground and what is draped on it, before whatever is transparent.
    state->setRenderBinDetails(2, "RenderBin");
    return state;
}
} // namespace

osg::ref_ptr<osg::Node> makeLineLayer(const FeatureList& features, const Style& style,
                                      const osg::observer_ptr<const Map>& map)
{
    osg::ref_ptr<osg::Group> root = new osg::Group();
    const LineSymbol* symbol = style.get<LineSymbol>();
    if (!symbol)
        return root;
    osg::ref_ptr<LineLayerData> data = new LineLayerData();
    data->map = map;
    data->lines = distinctLines(features);
    data->style.color = symbol->stroke()->color();
    if (const AltitudeSymbol* altitude = style.get<AltitudeSymbol>()) {
        data->style.clamp = altitude->clamping().value() == AltitudeSymbol::CLAMP_TO_TERRAIN ||
                            altitude->clamping().value() == AltitudeSymbol::CLAMP_RELATIVE_TO_TERRAIN;
        data->style.offset = altitude->verticalOffset().isSet() ? altitude->verticalOffset()->eval() : 0.0;
    }
    root->setStateSet(lineState(*symbol));
    for (const LineCell& cell : levelCells(data->lines, 0)) {
        osg::ref_ptr<LineSquare> square = makeSquare(cell, *data, 0);
        square->setFine(new LazyGroup(new FinerLines(data.get(), cell)));
        root->addChild(square);
    }
    return root;
}
} // namespace osgEarth::Features
