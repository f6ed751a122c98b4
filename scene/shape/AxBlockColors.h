#pragma once
#include <osg/Vec4f>

/// The colours of a block, RGBA from 0 to 1. A plain value.
struct AxBlockColors
{
    osg::Vec4f edge;
    osg::Vec4f fill;

    /// Red, green and blue from 0 to 255; the edge is opaque, the fill as given.
    static AxBlockColors Of(int red, int green, int blue, int fillAlpha)
    {
        constexpr float full = 255.0f;
        const osg::Vec4f opaque(static_cast<float>(red) / full, static_cast<float>(green) / full,
                                static_cast<float>(blue) / full, 1.0f);
        osg::Vec4f fill = opaque;
        fill.a() = static_cast<float>(fillAlpha) / full;
        return {opaque, fill};
    }

    /// The edge of an object that is one of several selected ones: amber, which no object has of its own.
    static osg::Vec4f SelectedEdge() { return Of(255, 196, 0, 0).edge; }

    /// Of survey blocks: blue, and violet once a block has routes.
    static AxBlockColors OfBlock(bool hasRoutes)
    {
        return hasRoutes ? Of(88, 0, 176, 102) : Of(49, 155, 208, 102);
    }
};
