#include "symbology/StyleProperties.h"
#include <osgEarthSymbology/Style>

namespace osgEarth::Symbology {
PolygonSymbol::PolygonSymbol(const PolygonSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _fill(rhs._fill)
{
}

LineSymbol::LineSymbol(const LineSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _stroke(rhs._stroke), _tessellation(rhs._tessellation)
{
}

PointSymbol::PointSymbol(const PointSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _fill(rhs._fill), _size(rhs._size)
{
}

BBoxSymbol::BBoxSymbol(const BBoxSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _fill(rhs._fill), _border(rhs._border), _margin(rhs._margin),
      _leastSize(rhs._leastSize)
{
}

AltitudeSymbol::AltitudeSymbol(const AltitudeSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _clamping(rhs._clamping), _technique(rhs._technique), _binding(rhs._binding),
      _clampingResolution(rhs._clampingResolution), _verticalOffset(rhs._verticalOffset),
      _verticalScale(rhs._verticalScale)
{
}

RenderSymbol::RenderSymbol(const RenderSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _depthTest(rhs._depthTest), _lighting(rhs._lighting),
      _backfaceCulling(rhs._backfaceCulling), _order(rhs._order), _transparent(rhs._transparent),
      _renderBin(rhs._renderBin)
{
}

InstanceSymbol::InstanceSymbol(const InstanceSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _url(rhs._url), _scale(rhs._scale)
{
}

IconSymbol::IconSymbol(const IconSymbol& rhs, const osg::CopyOp& copyop)
    : InstanceSymbol(rhs, copyop), _image(rhs._image), _alignment(rhs._alignment), _heading(rhs._heading),
      _declutter(rhs._declutter), _occlusionCull(rhs._occlusionCull),
      _occlusionCullAltitude(rhs._occlusionCullAltitude)
{
}

TextSymbol::TextSymbol(const TextSymbol& rhs, const osg::CopyOp& copyop)
    : Symbol(rhs, copyop), _fill(rhs._fill), _halo(rhs._halo), _haloOffset(rhs._haloOffset), _font(rhs._font),
      _content(rhs._content), _priority(rhs._priority), _size(rhs._size), _pixelOffset(rhs._pixelOffset),
      _onScreenRotation(rhs._onScreenRotation), _alignment(rhs._alignment), _layout(rhs._layout),
      _removeDuplicateLabels(rhs._removeDuplicateLabels), _declutter(rhs._declutter),
      _occlusionCull(rhs._occlusionCull), _occlusionCullAltitude(rhs._occlusionCullAltitude),
      _provider(rhs._provider), _encoding(rhs._encoding)
{
}

void PolygonSymbol::parseSLD(const Config& property, Style& style)
{
    readStyleProperty(property, style, "polygon");
}

void LineSymbol::parseSLD(const Config& property, Style& style)
{
    readStyleProperty(property, style, "line");
}

void PointSymbol::parseSLD(const Config& property, Style& style)
{
    readStyleProperty(property, style, "point");
}

void AltitudeSymbol::parseSLD(const Config& property, Style& style)
{
    readStyleProperty(property, style, "altitude");
}

void RenderSymbol::parseSLD(const Config& property, Style& style)
{
    readStyleProperty(property, style, "render");
}

void IconSymbol::parseSLD(const Config& property, Style& style)
{
    readStyleProperty(property, style, "icon");
}

void TextSymbol::parseSLD(const Config& property, Style& style)
{
    readStyleProperty(property, style, "text");
}
} // namespace osgEarth::Symbology
