#include <osgEarth/Map>
#include <osgEarthAnnotation/FeatureNode>
#include <osgEarthFeatures/FilterContext>

namespace osgEarth::Annotation {
FeatureNode::FeatureNode(MapNode* mapNode, Feature* feature, const Style& style,
                         const GeometryCompilerOptions& options, StyleSheet* styleSheet)
    : _options(options), _styleSheet(styleSheet)
{
    if (feature)
        _features.push_back(feature);
    _style = style;
    AnnotationNode::setMapNode(mapNode);
    init();
}

FeatureNode::FeatureNode(MapNode* mapNode, FeatureList& features, const Style& style,
                         const GeometryCompilerOptions& options, StyleSheet* styleSheet)
    : _features(features), _options(options), _styleSheet(styleSheet)
{
    _style = style;
    AnnotationNode::setMapNode(mapNode);
    init();
}

FeatureNode::FeatureNode(const FeatureNode& rhs, const osg::CopyOp& op)
    : AnnotationNode(rhs, op), _features(rhs._features), _options(rhs._options), _styleSheet(rhs._styleSheet)
{
    init();
}

Feature* FeatureNode::getFeature()
{
    return _features.empty() ? nullptr : _features.front().get();
}

void FeatureNode::setFeature(Feature* feature)
{
    _features.clear();
    if (feature)
        _features.push_back(feature);
    init();
}

void FeatureNode::setStyleSheet(StyleSheet* styleSheet)
{
    _styleSheet = styleSheet;
}

const Style& FeatureNode::getStyle() const
{
    if (_style.empty() && !_features.empty() && _features.front()->style().isSet())
        return _features.front()->style().value();
    return _style;
}

void FeatureNode::setStyle(const Style& style)
{
    AnnotationNode::setStyle(style);
    init();
}

void FeatureNode::setMapNode(MapNode* mapNode)
{
    if (getMapNode() != mapNode) {
        AnnotationNode::setMapNode(mapNode);
        init();
    }
}

void FeatureNode::init()
{
    removeChildren(0, getNumChildren());
    setHorizonCulling(false); // the bound may be as wide as a country
    applyRenderSymbology(getStyle());
    if (_features.empty())
        return;
    const osg::ref_ptr<Session> session =
        new Session(getMapNode() ? getMapNode()->getMap() : nullptr, _styleSheet.get());
    addChild(GeometryCompiler(_options).compile(_features, getStyle(), FilterContext(session.get())));
}
} // namespace osgEarth::Annotation
