// How far a large model reaches, and the heights of an area's ground.
#include "BenchGlobe.h"

#include "analysis/AxHeightGrid.h"
#include "analysis/CAxAncillaryProcess.h"
#include "analysis/CAxElevationQuery.h"
#include "analysis/ModelComputeBounds.h"
#include "analysis/ModelVertexVisitor.h"
#include "interaction/models/AxModelGeometry.h"
#include "viewer/CAxEarthViewer.h"

#include <benchmark/benchmark.h>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osgEarth/GeoData>
#include <osgEarth/MapNode>

#include <cmath>

namespace {
constexpr unsigned sideOfModel = 707; // cells, of two triangles each: a million altogether

/// Rolling ground, 700 m wide; as a mesh, or with three vertices of its own for each triangle.
osg::ref_ptr<osg::Node> rollingModel(bool isSoup)
{
    const auto placeAt = [](unsigned column, unsigned row) {
        const auto x = static_cast<float>(column), y = static_cast<float>(row);
        return osg::Vec3(x, y, 20.0f * std::sin(0.02f * x) * std::cos(0.03f * y));
    };
    const osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    const osg::ref_ptr<osg::DrawElementsUInt> corners = new osg::DrawElementsUInt(GL_TRIANGLES);
    for (unsigned row = 0; row <= sideOfModel; ++row)
        for (unsigned column = 0; column <= sideOfModel; ++column) {
            if (!isSoup)
                vertices->push_back(placeAt(column, row));
            if (row == sideOfModel || column == sideOfModel)
                continue;
            const unsigned at = row * (sideOfModel + 1) + column, above = at + sideOfModel + 1;
            for (const auto& [c, r, index] : {std::tuple{0u, 0u, at},
                                              {1u, 0u, at + 1},
                                              {1u, 1u, above + 1},
                                              {0u, 0u, at},
                                              {1u, 1u, above + 1},
                                              {0u, 1u, above}})
                if (isSoup)
                    vertices->push_back(placeAt(column + c, row + r));
                else
                    corners->push_back(index);
        }
    const osg::ref_ptr<osg::Geometry> mesh = new osg::Geometry;
    mesh->setVertexArray(vertices);
    if (isSoup)
        mesh->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, static_cast<int>(vertices->size())));
    else
        mesh->addPrimitiveSet(corners);
    const osg::ref_ptr<osg::Geode> model = new osg::Geode;
    model->addDrawable(mesh);
    return model;
}

/// Vertices and outline, on one thread; 1: triangles that share no vertices; 2: a mesh in the parts in which
/// layers of models have it; 3: eight meshes side by side; 4: these, and vertices are dropped as they come.
void ModelBounds(benchmark::State& state)
{
    const osg::ref_ptr<const osgEarth::SpatialReference> wgs84 = osgEarth::SpatialReference::get("wgs84");
    osg::Matrixd toWorld;
    osgEarth::GeoPoint(wgs84, -105.0, 37.4, 2500.0).createLocalToWorld(toWorld);
    osg::ref_ptr<osg::Node> model = rollingModel(state.range(0) == 1);
    if (state.range(0) == 2)
        AxGatherModel(model);
    if (state.range(0) >= 3) {
        const osg::ref_ptr<osg::Group> row = new osg::Group;
        for (int i = 0; i < 8; ++i) {
            const osg::ref_ptr<osg::MatrixTransform> place =
                new osg::MatrixTransform(osg::Matrixd::translate(i * sideOfModel, 0.0, 0.0));
            place->addChild(model);
            row->addChild(place);
        }
        model = row;
    }
    std::size_t vertices = 0;
    for (auto _ : state) {
        ModelVertexVisitor visitor(toWorld);
        ModelComputeBounds bounds(wgs84);
        if (state.range(0) == 4)
            visitor.SetReduce([&bounds](std::vector<osg::Vec3d>& all) { bounds.Reduce(all); });
        model->accept(visitor);
        if (!bounds.Compute(visitor.GetVertices()))
            state.SkipWithError("it has no outline");
        vertices = visitor.GetVertices().size();
        benchmark::DoNotOptimize(bounds.GetHull().data());
    }
    state.counters["held"] = static_cast<double>(vertices);
}
BENCHMARK(ModelBounds)->Name("Model/bounds")->Unit(benchmark::kMillisecond)->DenseRange(0, 4);

/// 10 km² of mountains from the shipped terrain that nobody has read before, by the worker, in cells of so
/// many metres; 0: as the data has them.
void BlockHeights(benchmark::State& state)
{
    CAxEarthViewer& viewer = bench::globe();
    CAxAncillaryProcess& process = *viewer.GetAncillaryProcess();
    const double east = 0.5 * 3162.3 / 88500.0, north = 0.5 * 3162.3 / 111000.0;
    static int area = 0; // side by side, over all of these figures
    AxHeightGridPointer grid;
    for (auto _ : state) {
        const double middle = -105.0 + 2.5 * east * (area % 2 == 0 ? area : -area);
        ++area;
        AxHeightsQuestion question;
        for (const auto& [x, y] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}})
            question.ring.emplace_back(middle + x * east, 37.4 + y * north);
        question.cell = static_cast<double>(state.range(0));
        CAxElevationQuery query;
        process.SetHeightsPara(question, viewer.getMapNode()->getMap(), nullptr, &query);
        const bool isThere = bench::waitFor([&query] { return query.GetResult().isValid(); }, 60000);
        grid = query.GetResult().value<AxHeightGridPointer>();
        if (!isThere || !grid || grid->known < grid->inside) {
            process.CancelElevationQuery(&query);
            state.SkipWithError("heights are missing");
            break;
        }
    }
    if (!grid)
        return;
    state.counters["cells"] = static_cast<double>(grid->inside);
    state.counters["cell_m"] = grid->cell;
}
BENCHMARK(BlockHeights)
    ->Name("Elevation/block")
    ->Unit(benchmark::kMillisecond)
    ->Arg(0)
    ->Arg(5)
    ->Iterations(3)
    ->UseRealTime();
} // namespace
