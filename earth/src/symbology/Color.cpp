#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <osgEarth/StringUtils>
#include <osgEarthSymbology/Color>
#include <utility>

namespace osgEarth::Symbology {
const Color Color::White(1.0f, 1.0f, 1.0f);
const Color Color::Silver(0xc0c0c0ffu);
const Color Color::Gray(0x808080ffu);
const Color Color::Black(0.0f, 0.0f, 0.0f);
const Color Color::Red(1.0f, 0.0f, 0.0f);
const Color Color::Maroon(0x800000ffu);
const Color Color::Yellow(1.0f, 1.0f, 0.0f);
const Color Color::Olive(0x808000ffu);
const Color Color::Lime(0.0f, 1.0f, 0.0f);
const Color Color::Green(0x008000ffu);
const Color Color::Aqua(0.0f, 1.0f, 1.0f);
const Color Color::Teal(0x008080ffu);
const Color Color::Blue(0.0f, 0.0f, 1.0f);
const Color Color::Navy(0x000080ffu);
const Color Color::Fuchsia(1.0f, 0.0f, 1.0f);
const Color Color::Purple(0x800080ffu);
const Color Color::Orange(0xffa500ffu);
const Color Color::Cyan(0.0f, 1.0f, 1.0f);
const Color Color::DarkGray(0x404040ffu);
const Color Color::Magenta(0xc000c0ffu);
const Color Color::Brown(0xaa5500ffu);

namespace {
const std::pair<const char*, const Color*> kNames[] = {
    {"white", &Color::White},     {"silver", &Color::Silver},     {"gray", &Color::Gray},
    {"black", &Color::Black},     {"red", &Color::Red},           {"maroon", &Color::Maroon},
    {"yellow", &Color::Yellow},   {"olive", &Color::Olive},       {"lime", &Color::Lime},
    {"green", &Color::Green},     {"aqua", &Color::Aqua},         {"teal", &Color::Teal},
    {"blue", &Color::Blue},       {"navy", &Color::Navy},         {"fuchsia", &Color::Fuchsia},
    {"purple", &Color::Purple},   {"orange", &Color::Orange},     {"cyan", &Color::Cyan},
    {"magenta", &Color::Magenta}, {"darkgray", &Color::DarkGray}, {"brown", &Color::Brown}};

unsigned byteOf(float value)
{
    return static_cast<unsigned>(std::lround(std::clamp(value, 0.0f, 1.0f) * 255.0f));
}
} // namespace

Color::Color(const Color& rgb, float alpha) : osg::Vec4f(rgb.r(), rgb.g(), rgb.b(), alpha) {}

Color::Color(unsigned value, Format format)
{
    const auto part = [value](int shift) { return static_cast<float>((value >> shift) & 0xffu) / 255.0f; };
    if (format == RGBA)
        set(part(24), part(16), part(8), part(0));
    else
        set(part(0), part(8), part(16), part(24));
}

Color::Color(const std::string& html, Format format) : osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f)
{
    parse(html, *this, format);
}

bool Color::parse(const std::string& text, Color& output, Format format)
{
    const std::string name = toLower(trim(text));
    for (const auto& known : kNames) {
        if (name == known.first) {
            output = *known.second;
            return true;
        }
    }
    std::string digits = name;
    if (startsWith(digits, "#"))
        digits.erase(0, 1);
    else if (startsWith(digits, "0x"))
        digits.erase(0, 2);
    if ((digits.size() != 6 && digits.size() != 8) ||
        !std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isxdigit(c) != 0; }))
        return false;
    if (digits.size() == 6)
        digits = format == RGBA ? digits + "ff" : "ff" + digits;
    output = Color(static_cast<unsigned>(std::stoul(digits, nullptr, 16)), format);
    return true;
}

std::string Color::toHTML(Format format) const
{
    char text[16];
    std::snprintf(text, sizeof text, "#%08x", as(format));
    return text;
}

unsigned Color::as(Format format) const
{
    if (format == RGBA)
        return byteOf(r()) << 24 | byteOf(g()) << 16 | byteOf(b()) << 8 | byteOf(a());
    return byteOf(a()) << 24 | byteOf(b()) << 16 | byteOf(g()) << 8 | byteOf(r());
}

Color Color::brightness(float factor) const
{
    const auto scaled = [factor](float v) { return std::clamp(v * factor, 0.0f, 1.0f); };
    return Color(scaled(r()), scaled(g()), scaled(b()), a());
}
} // namespace osgEarth::Symbology
