#include <osgEarth/ShaderGenerator>

// Nodes of the caller's are drawn by the fixed functions in this engine: the header says why.
namespace osgEarth {
void ShaderGeneratorProxy::run(osg::Node*, const std::string&, StateSetCache*) {}

void ShaderGeneratorProxy::run(osg::Node*) {}

void ShaderGeneratorProxy::run(osg::Node*, StateSetCache*) {}

void ShaderGeneratorProxy::run(osg::Node*, const std::string&) {}
} // namespace osgEarth
