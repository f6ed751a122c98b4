#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/NodeVisitor>

/// Has each node of a model that has an osg::Material shaded by the program "ModelMaterial", whose sources
/// lie beside the executable, and keeps its light from above while the model turns. Where the sources
/// cannot be read the materials are drawn as they are.
class AXEARTHVIEWER_EXPORT ModelNodeMaterialVisitor : public osg::NodeVisitor
{
public:
    ModelNodeMaterialVisitor();

    void apply(osg::Node& node) override;
    void apply(osg::Geode& geode) override;
    void apply(osg::Drawable& drawable) override;

private:
    void shade(osg::Node& node) const;
};
