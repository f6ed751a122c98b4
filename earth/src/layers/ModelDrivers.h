#pragma once
#include <osgEarth/ModelSource>

#include <string>

namespace osgEarth {
/// Makes a driver of model layers known under its name for as long as the
/// process lives. The layers know no driver: whoever implements one keeps such
/// an object at namespace scope, which registers it when the library is
/// loaded. That works because the library and the tests link all object files,
/// not an archive from which a linker would leave out what nobody calls.
class ModelDriver
{
public:
    using Make = ModelSource* (*)(const ModelSourceOptions& options);
    ModelDriver(const std::string& name, Make make);
};
} // namespace osgEarth
