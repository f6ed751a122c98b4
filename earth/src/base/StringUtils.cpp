#include <osgEarth/StringUtils>

#include <algorithm>
#include <cctype>

namespace osgEarth {
namespace {
char lower(char c)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool equal(const std::string& text, size_t from, const std::string& part, bool caseSensitive)
{
    return std::equal(part.begin(), part.end(), text.begin() + static_cast<std::ptrdiff_t>(from),
                      [&](char a, char b) { return caseSensitive ? a == b : lower(a) == lower(b); });
}
} // namespace

std::string trim(const std::string& in)
{
    const char* space = " \t\r\n\f\v";
    const size_t first = in.find_first_not_of(space);
    if (first == std::string::npos)
        return {};
    return in.substr(first, in.find_last_not_of(space) - first + 1);
}

std::string toLower(const std::string& in)
{
    std::string out = in;
    std::transform(out.begin(), out.end(), out.begin(), lower);
    return out;
}

bool startsWith(const std::string& text, const std::string& start, bool caseSensitive)
{
    return text.size() >= start.size() && equal(text, 0, start, caseSensitive);
}

bool endsWith(const std::string& text, const std::string& end, bool caseSensitive)
{
    return text.size() >= end.size() && equal(text, text.size() - end.size(), end, caseSensitive);
}

template <> bool as<bool>(const std::string& text, const bool& fallback)
{
    const std::string t = toLower(trim(text));
    if (t == "true" || t == "yes" || t == "on" || t == "1")
        return true;
    if (t == "false" || t == "no" || t == "off" || t == "0")
        return false;
    return fallback;
}
} // namespace osgEarth
