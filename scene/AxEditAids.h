#pragma once

/// What helps while the vertices of a map object are edited; each a switch of
/// its own that the host shows. A plain value.
struct AxEditAids
{
    /// A smaller handle in the middle of each edge, which inserts a vertex there when it is dragged.
    bool edgeHandles = true;
    /// The Delete key takes the vertex under the mouse away.
    bool deleteKey = true;
    /// A dragged vertex goes to a vertex or an edge within 10 pixels, the object's own others included; one
    /// that is being drawn to those of the other objects.
    bool snap = true;
    /// A dragged vertex keeps the angle to the previous edge at steps of 15 degrees.
    bool angleSteps = false;
    /// Handles at the corners of the box around a polygon or strip stretch it, with Shift in proportion, and
    /// one outside turns it.
    bool rimHandles = false;
    /// Vertices are put on the models of the map, roofs and walls, where there is one, and else on the
    /// ground: by drags, and by AxScene::GetElevations(), which gives the heights of models then.
    bool clampToModels = false;
};
