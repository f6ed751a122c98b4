#include "Airframes.h"
#include "Shape.h"

#include <cmath>

namespace {
const Paint white{"body", {0.93f, 0.93f, 0.91f}, 48.0f};
const Paint red{"nose", {0.86f, 0.10f, 0.08f}, 48.0f};
const Paint orange{"markings", {1.0f, 0.55f, 0.05f}, 32.0f};
const Paint dark{"tail", {0.16f, 0.20f, 0.28f}, 24.0f};
const Paint black{"propellers", {0.07f, 0.07f, 0.08f}, 12.0f};
const Paint glass{"camera", {0.05f, 0.16f, 0.32f}, 96.0f};
constexpr float pi = 3.14159265f;

void Add(osg::Group& model, const Paint& paint, const Shape& shape)
{
    model.addChild(shape.Painted(paint));
}

/// Body, red nose, wings with orange tips: what all that have wings share. Lengths of an aircraft that spans
/// 2.6 m.
void AddGlider(osg::Group& model)
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

void AddFixedWing(osg::Group& model)
{
    AddGlider(model);
    Add(model, dark,
        Shape()
            .Plate({{-0.42f, -0.95f}, {0.42f, -0.95f}, {0.36f, -0.72f}, {-0.36f, -0.72f}}, 0.36f, 0.025f)
            .Fin({{-0.95f, 0.04f}, {-0.62f, 0.04f}, {-0.72f, 0.36f}, {-0.95f, 0.36f}}, 0.0f, 0.03f));
    Add(model, black, Shape().Propeller({0.0f, 0.87f, -0.02f}, 0.26f, true, 0.5f));
}

void AddQuadPlane(osg::Group& model)
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

void AddTailSitter(osg::Group& model)
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
void AddCopter(osg::Group& model, int arms, float reach, float rotor, bool twofold)
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
void AddCamera(osg::Group& model, bool swings)
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

osg::ref_ptr<osg::Group> MakeAirframe(EPlaneType type)
{
    osg::ref_ptr<osg::Group> model = new osg::Group;
    switch (type) {
    case PlaneFixedWing:
        AddFixedWing(*model);
        return model;
    case PlaneTailSitter:
        AddTailSitter(*model);
        return model;
    case PlaneQuadPlane:
        AddQuadPlane(*model);
        return model;
    case PlaneQuadcopter:
        AddCopter(*model, 4, 0.55f, 0.30f, false);
        AddCamera(*model, false);
        return model;
    case PlaneHexacopter:
        AddCopter(*model, 6, 0.66f, 0.29f, false);
        AddCamera(*model, false);
        return model;
    case PlaneOctocopter:
        AddCopter(*model, 8, 0.80f, 0.28f, false);
        AddCamera(*model, false);
        return model;
    case PlaneObliqueCopter:
        AddCopter(*model, 4, 0.62f, 0.36f, true);
        AddCamera(*model, true);
        return model;
    }
    return nullptr;
}
