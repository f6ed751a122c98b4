#pragma once
#include <osgEarth/Config>

namespace osgEarth {
/// Config::fromXML that also says in `out_cause` what is wrong and in which line.
bool readXml(std::istream& in, Config& out, std::string& out_cause);
/// The tree as an XML document, simple children written as elements.
std::string writeXml(const Config& conf);
} // namespace osgEarth
