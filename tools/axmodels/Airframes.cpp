#include "Airframes.h"
#include "Shape.h"

#include <osg/CullFace>
#include <osg/Material>
#include <osgUtil/MeshOptimizers>

#include <cmath>

namespace {
const Paint white{{0.93f, 0.93f, 0.91f}};
const Paint red{{0.86f, 0.10f, 0.08f}};
const Paint orange{{1.0f, 0.55f, 0.05f}};
const Paint dark{{0.16f, 0.20f, 0.28f}};
const Paint black{{0.07f, 0.07f, 0.08f}};
const Paint glass{{0.05f, 0.16f, 0.32f}};
constexpr float shininess = 48.0f;
constexpr float ambient = 0.38f; // of the paint's color
constexpr float pi = 3.14159265f;

void Add(osg::Geometry& model, const Paint& paint, const Shape& shape)
{
    shape.PaintOn(model, paint);
}

/// Body, red nose, wings with orange tips: what all that have wings share. Lengths of an aircraft that spans
/// 2.6 m.
void AddGlider(osg::Geometry& model)
{
    Add(model, white,
        Shape()
            .Body({{-0.85f, 0.04f, 0.03f, 0.03f},
                   {-0.45f, 0.03f, 0.07f, 0.07f},
                   {-0.05f, 0.0f, 0.13f, 0.12f},
                   {0.40f, 0.0f, 0.13f, 0.12f},
                   {0.55f, 0.0f, 0.115f, 0.105f}})
            .Plate({{0.0f, -0.16f}, {1.0f, -0.08f}, {1.0f, 0.13f}, {0.0f, 0.20f}}, 0.10f, 0.035f, 0.05f)
            .Plate({{0.0f, 0.20f}, {-1.0f, 0.13f}, {-1.0f, -0.08f}, {0.0f, -0.16f}}, 0.10f, 0.035f, 0.05f));
    Add(model, red,
        Shape().Body(
            {{0.55f, 0.0f, 0.115f, 0.105f}, {0.75f, -0.01f, 0.085f, 0.075f}, {0.86f, -0.02f, 0.02f, 0.02f}}));
    Add(model, orange,
        Shape()
            .Plate({{1.0f, -0.08f}, {1.3f, -0.05f}, {1.3f, 0.09f}, {1.0f, 0.13f}}, 0.10f, 0.035f, 0.05f)
            .Plate({{-1.0f, 0.13f}, {-1.3f, 0.09f}, {-1.3f, -0.05f}, {-1.0f, -0.08f}}, 0.10f, 0.035f, 0.05f));
}

void AddFixedWing(osg::Geometry& model)
{
    AddGlider(model);
    Add(model, dark,
        Shape()
            .Plate({{-0.42f, -0.95f}, {0.42f, -0.95f}, {0.36f, -0.72f}, {-0.36f, -0.72f}}, 0.36f, 0.025f)
            .Fin({{-0.95f, 0.04f}, {-0.62f, 0.04f}, {-0.72f, 0.36f}, {-0.95f, 0.36f}}, 0.0f, 0.03f));
    Add(model, black, Shape().Propeller({0.0f, 0.87f, -0.02f}, 0.26f, true, 0.5f));
}

void AddQuadPlane(osg::Geometry& model)
{
    AddGlider(model);
    Shape booms, rotors;
    for (const float side : {-0.52f, 0.52f}) {
        booms.Rod({side, -1.0f, 0.12f}, {side, 0.62f, 0.12f}, 0.03f);
        for (const float y : {0.58f, -0.52f}) {
            booms.Rod({side, y, 0.12f}, {side, y, 0.22f}, 0.035f);
            rotors.Propeller({side, y, 0.22f}, 0.30f, false, side > 0.0f ? 0.6f : 2.5f);
        }
    }
    rotors.Propeller({0.0f, -0.88f, 0.04f}, 0.22f, true, 0.9f);
    // The tail is an upturned V between the booms.
    booms.Plate({{-0.52f, -1.0f}, {0.0f, -1.0f}, {0.0f, -0.82f}, {-0.52f, -0.82f}}, 0.40f, 0.03f, -0.5f)
        .Plate({{0.0f, -1.0f}, {0.52f, -1.0f}, {0.52f, -0.82f}, {0.0f, -0.82f}}, 0.40f, 0.03f, -0.5f);
    Add(model, dark, booms);
    Add(model, black, rotors);
}

void AddTailSitter(osg::Geometry& model)
{
    Add(model, white,
        Shape()
            .Plate({{0.0f, -0.40f}, {0.85f, -0.48f}, {0.85f, -0.14f}, {0.0f, 0.42f}}, 0.0f, 0.06f)
            .Plate({{0.0f, 0.42f}, {-0.85f, -0.14f}, {-0.85f, -0.48f}, {0.0f, -0.40f}}, 0.0f, 0.06f)
            .Body({{-0.42f, 0.0f, 0.05f, 0.03f}, {-0.1f, 0.0f, 0.13f, 0.09f}, {0.32f, 0.0f, 0.12f, 0.09f}}));
    Add(model, red,
        Shape().Body({{0.32f, 0.0f, 0.12f, 0.09f}, {0.5f, 0.0f, 0.08f, 0.06f}, {0.6f, 0.0f, 0.02f, 0.02f}}));
    Shape fins, rotors;
    for (const float side : {-0.85f, 0.85f}) {
        fins.Fin({{-0.62f, -0.20f}, {-0.22f, -0.12f}, {-0.22f, 0.12f}, {-0.62f, 0.30f}}, side, 0.035f);
        fins.Rod({side * 0.5f, -0.1f, 0.0f}, {side * 0.5f, 0.28f, 0.0f}, 0.04f);
        rotors.Propeller({side * 0.5f, 0.28f, 0.0f}, 0.27f, true, side > 0.0f ? 0.4f : 2.7f);
    }
    Add(model, dark, fins);
    Add(model, orange,
        Shape()
            .Plate({{0.30f, -0.45f}, {0.83f, -0.50f}, {0.83f, -0.40f}, {0.30f, -0.33f}}, 0.04f, 0.03f)
            .Plate({{-0.30f, -0.33f}, {-0.83f, -0.40f}, {-0.83f, -0.50f}, {-0.30f, -0.45f}}, 0.04f, 0.03f));
    Add(model, black, rotors);
}

/// So many arms at even angles, none of them straight ahead; the front two are red.
void AddCopter(osg::Geometry& model, int arms, float reach, float rotor, bool twofold)
{
    Shape front, back, rotors;
    for (int i = 0; i < arms; ++i) {
        const float angle = 2.0f * pi * (static_cast<float>(i) + 0.5f) / static_cast<float>(arms);
        const osg::Vec3 tip(reach * std::sin(angle), reach * std::cos(angle), 0.04f);
        Shape& arm = i == 0 || i == arms - 1 ? front : back;
        arm.Rod({0.12f * std::sin(angle), 0.12f * std::cos(angle), 0.02f}, tip, 0.032f);
        arm.Rod(tip - osg::Vec3(0.0f, 0.0f, 0.05f), tip + osg::Vec3(0.0f, 0.0f, 0.07f), 0.05f);
        rotors.Propeller(tip + osg::Vec3(0.0f, 0.0f, 0.075f), rotor, false, angle + 0.9f);
        if (twofold)
            rotors.Propeller(tip - osg::Vec3(0.0f, 0.0f, 0.075f), rotor, false, angle + 2.2f);
    }
    // Skids.
    for (const float side : {-0.20f, 0.20f}) {
        back.Rod({side, -0.22f, -0.30f}, {side, 0.22f, -0.30f}, 0.018f);
        for (const float y : {-0.10f, 0.10f})
            back.Rod({side * 0.5f, y, -0.04f}, {side, y, -0.30f}, 0.016f);
    }
    Add(model, white,
        Shape().Body({{-0.24f, 0.02f, 0.08f, 0.05f},
                      {-0.08f, 0.03f, 0.15f, 0.09f},
                      {0.08f, 0.03f, 0.15f, 0.09f},
                      {0.16f, 0.02f, 0.12f, 0.07f}}));
    front.Body({{0.16f, 0.02f, 0.12f, 0.07f}, {0.26f, 0.0f, 0.05f, 0.03f}});
    Add(model, red, front);
    Add(model, dark, back);
    Add(model, black, rotors);
}

/// A ball below the nose, or a heavy head that swings on an arch.
void AddCamera(osg::Geometry& model, bool swings)
{
    if (!swings) {
        Add(model, glass,
            Shape().Body({{0.06f, -0.13f, 0.02f, 0.02f},
                          {0.09f, -0.13f, 0.06f, 0.06f},
                          {0.14f, -0.13f, 0.07f, 0.07f},
                          {0.20f, -0.13f, 0.03f, 0.03f}}));
        return;
    }
    Add(model, orange,
        Shape()
            .Rod({-0.17f, 0.0f, -0.04f}, {-0.17f, 0.0f, -0.20f}, 0.022f)
            .Rod({0.17f, 0.0f, -0.04f}, {0.17f, 0.0f, -0.20f}, 0.022f)
            .Rod({-0.17f, 0.0f, -0.19f}, {0.17f, 0.0f, -0.19f}, 0.022f));
    Add(model, glass,
        Shape()
            .Box({-0.12f, -0.09f, -0.27f}, {0.12f, 0.09f, -0.12f})
            .Rod({0.0f, 0.0f, -0.26f}, {0.0f, 0.06f, -0.36f}, 0.07f));
}
} // namespace

namespace {
bool Build(osg::Geometry& model, EPlaneType type)
{
    switch (type) {
    case PlaneFixedWing:
        AddFixedWing(model);
        return true;
    case PlaneTailSitter:
        AddTailSitter(model);
        return true;
    case PlaneQuadPlane:
        AddQuadPlane(model);
        return true;
    case PlaneQuadcopter:
        AddCopter(model, 4, 0.55f, 0.30f, false);
        AddCamera(model, false);
        return true;
    case PlaneHexacopter:
        AddCopter(model, 6, 0.66f, 0.29f, false);
        AddCamera(model, false);
        return true;
    case PlaneOctocopter:
        AddCopter(model, 8, 0.80f, 0.28f, false);
        AddCamera(model, false);
        return true;
    case PlaneObliqueCopter:
        AddCopter(model, 4, 0.62f, 0.36f, true);
        AddCamera(model, true);
        return true;
    }
    return false;
}
} // namespace

osg::ref_ptr<osg::Geode> MakeAirframe(EPlaneType type)
{
    const osg::ref_ptr<osg::Geometry> surface = new osg::Geometry;
    surface->setVertexArray(new osg::Vec3Array);
    surface->setNormalArray(new osg::Vec3Array, osg::Array::BIND_PER_VERTEX);
    surface->setColorArray(new osg::Vec4Array, osg::Array::BIND_PER_VERTEX);
    if (!Build(*surface, type))
        return nullptr;
    const unsigned count = surface->getVertexArray()->getNumElements();
    surface->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, static_cast<int>(count)));
    surface->setUseDisplayList(false);
    surface->setUseVertexBufferObjects(true);
    // A corner that several triangles share is stored, and later shaded, once.
    osgUtil::IndexMeshVisitor().makeMesh(*surface);

    // The colors of the vertices count by it.
    osg::ref_ptr<osg::Material> material = new osg::Material;
    constexpr osg::Material::Face faces = osg::Material::FRONT_AND_BACK;
    material->setColorMode(osg::Material::DIFFUSE);
    material->setAmbient(faces, osg::Vec4(ambient, ambient, ambient, 1.0f));
    material->setDiffuse(faces, osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
    material->setSpecular(faces, osg::Vec4(0.3f, 0.3f, 0.3f, 1.0f));
    material->setShininess(faces, shininess);
    osg::ref_ptr<osg::Geode> model = new osg::Geode;
    model->addDrawable(surface);
    model->getOrCreateStateSet()->setAttributeAndModes(material);
    // All parts are closed.
    model->getOrCreateStateSet()->setAttributeAndModes(new osg::CullFace);
    return model;
}
