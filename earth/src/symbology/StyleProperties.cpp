#include "symbology/StyleProperties.h"
#include <cstring>
#include <functional>
#include <osgEarth/StringUtils>
#include <osgEarth/Units>
#include <osgEarth/URI>
#include <vector>

namespace osgEarth::Symbology {
namespace {
/// One row a property: how it is read into a style and written from one.
struct Property
{
    const char* table;
    const char* name;
    std::function<bool(const Config&, Style&)> read;
    std::function<std::string(const Style&)> write; // empty: not set
};

std::string unquoted(const std::string& text)
{
    const std::string t = trim(text);
    return t.size() >= 2 && t.front() == '"' && t.back() == '"' ? t.substr(1, t.size() - 2) : t;
}

template <typename T> bool readNumber(const std::string& text, T& out)
{
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    return bool(in >> out);
}

template <typename E> struct Word
{
    const char* text;
    E value;
};

template <typename S, typename E>
Property enumProperty(const char* table, const char* name, optional<E>& (S::*member)(),
                      std::vector<Word<E>> words)
{
    return {table, name,
            [=](const Config& c, Style& style) {
                for (const auto& word : words)
                    if (toLower(unquoted(c.value())) == word.text) {
                        (style.getOrCreate<S>()->*member)() = word.value;
                        return true;
                    }
                return false;
            },
            [=](const Style& style) -> std::string {
                S* symbol = const_cast<Style&>(style).get<S>();
                if (symbol && (symbol->*member)().isSet())
                    for (const auto& word : words)
                        if ((symbol->*member)().value() == word.value)
                            return word.text;
                return {};
            }};
}

template <typename S>
Property numericProperty(const char* table, const char* name, optional<NumericExpression>& (S::*member)())
{
    return {table, name,
            [=](const Config& c, Style& style) {
                const NumericExpression expression(unquoted(c.value()));
                if (!expression.isValid())
                    return false;
                (style.getOrCreate<S>()->*member)() = expression;
                return true;
            },
            [=](const Style& style) -> std::string {
                S* symbol = const_cast<Style&>(style).get<S>();
                return symbol && (symbol->*member)().isSet() ? (symbol->*member)().value().expr()
                                                             : std::string();
            }};
}

template <typename S, typename T>
Property plainProperty(const char* table, const char* name, optional<T>& (S::*member)())
{
    return {table, name,
            [=](const Config& c, Style& style) {
                T value{};
                if (!readNumber(unquoted(c.value()), value))
                    return false;
                (style.getOrCreate<S>()->*member)() = value;
                return true;
            },
            [=](const Style& style) -> std::string {
                S* symbol = const_cast<Style&>(style).get<S>();
                return symbol && (symbol->*member)().isSet() ? osgEarth::toString((symbol->*member)().value())
                                                             : std::string();
            }};
}

template <typename S>
Property boolProperty(const char* table, const char* name, optional<bool>& (S::*member)())
{
    return {table, name,
            [=](const Config& c, Style& style) {
                const std::string text = toLower(unquoted(c.value()));
                const bool yes = as<bool>(text, false);
                if (yes != as<bool>(text, true)) // neither a yes nor a no
                    return false;
                (style.getOrCreate<S>()->*member)() = yes;
                return true;
            },
            [=](const Style& style) -> std::string {
                S* symbol = const_cast<Style&>(style).get<S>();
                return symbol && (symbol->*member)().isSet() ? osgEarth::toString((symbol->*member)().value())
                                                             : std::string();
            }};
}

/// A colour inside the fill or stroke of a symbol.
template <typename S, typename Paint>
Property colorProperty(const char* table, const char* name, optional<Paint>& (S::*member)())
{
    return {table, name,
            [=](const Config& c, Style& style) {
                Color color;
                if (!Color::parse(unquoted(c.value()), color))
                    return false;
                (style.getOrCreate<S>()->*member)()->color() = color;
                return true;
            },
            [=](const Style& style) -> std::string {
                S* symbol = const_cast<Style&>(style).get<S>();
                return symbol && (symbol->*member)().isSet() ? (symbol->*member)().value().color().toHTML()
                                                             : std::string();
            }};
}

/// The opacity of such a colour; written as part of the colour.
template <typename S, typename Paint>
Property opacityProperty(const char* table, const char* name, optional<Paint>& (S::*member)())
{
    return {table, name,
            [=](const Config& c, Style& style) {
                float alpha = 0.0f;
                if (!readNumber(unquoted(c.value()), alpha) || !(alpha >= 0.0f && alpha <= 1.0f))
                    return false;
                (style.getOrCreate<S>()->*member)()->color().a() = alpha;
                return true;
            },
            [](const Style&) { return std::string(); }};
}

bool readStrokeWidth(const Config& c, Style& style)
{
    double width = 0.0;
    Units units;
    const std::string text = unquoted(c.value());
    if (!Units::parse(text, width, units, Units::PIXELS) || !(width >= 0.0) ||
        !(units.isLinear() || units.isScreenSize()))
        return false;
    Stroke& stroke = style.getOrCreate<LineSymbol>()->stroke().mutable_value();
    stroke.width() = static_cast<float>(width);
    stroke.widthUnits() = units;
    return true;
}

std::string writeStrokeWidth(const Style& style)
{
    const LineSymbol* line = style.get<LineSymbol>();
    if (!line || !line->stroke().isSet() || !line->stroke()->width().isSet())
        return {};
    return osgEarth::toString(line->stroke()->width().value()) + line->stroke()->widthUnits()->getAbbr();
}

bool readIcon(const Config& c, Style& style)
{
    const std::string text = unquoted(c.value());
    if (text.empty())
        return false;
    StringExpression url(text);
    if (url.variables().empty())
        url.setLiteral(URI(text, URIContext(c.referrer())).full());
    style.getOrCreate<IconSymbol>()->url() = url;
    return true;
}

bool readContent(const Config& c, Style& style)
{
    style.getOrCreate<TextSymbol>()->content() = StringExpression(trim(c.value()));
    return true;
}

bool readFont(const Config& c, Style& style)
{
    style.getOrCreate<TextSymbol>()->font() = unquoted(c.value());
    return true;
}

template <typename S>
Property offsetProperty(const char* name, size_t axis, optional<osg::Vec2s>& (S::*member)())
{
    return {"text", name,
            [=](const Config& c, Style& style) {
                int value = 0;
                if (!readNumber(unquoted(c.value()), value) || value < -32768 || value > 32767)
                    return false;
                (style.getOrCreate<S>()->*member)().mutable_value()[static_cast<unsigned>(axis)] =
                    short(value);
                return true;
            },
            [=](const Style& style) -> std::string {
                S* symbol = const_cast<Style&>(style).get<S>();
                return symbol && (symbol->*member)().isSet()
                           ? osgEarth::toString((symbol->*member)().value()[static_cast<unsigned>(axis)])
                           : std::string();
            }};
}

template <typename S> std::vector<Word<typename S::Alignment>> alignments()
{
    return {{"left-top", S::ALIGN_LEFT_TOP},           {"left-center", S::ALIGN_LEFT_CENTER},
            {"left-bottom", S::ALIGN_LEFT_BOTTOM},     {"center-top", S::ALIGN_CENTER_TOP},
            {"center-center", S::ALIGN_CENTER_CENTER}, {"center-bottom", S::ALIGN_CENTER_BOTTOM},
            {"right-top", S::ALIGN_RIGHT_TOP},         {"right-center", S::ALIGN_RIGHT_CENTER},
            {"right-bottom", S::ALIGN_RIGHT_BOTTOM}};
}

std::vector<Word<TextSymbol::Alignment>> textAlignments()
{
    using T = TextSymbol;
    auto words = alignments<T>();
    words.insert(words.end(), {{"left-base-line", T::ALIGN_LEFT_BASE_LINE},
                               {"center-base-line", T::ALIGN_CENTER_BASE_LINE},
                               {"right-base-line", T::ALIGN_RIGHT_BASE_LINE},
                               {"left-bottom-base-line", T::ALIGN_LEFT_BOTTOM_BASE_LINE},
                               {"center-bottom-base-line", T::ALIGN_CENTER_BOTTOM_BASE_LINE},
                               {"right-bottom-base-line", T::ALIGN_RIGHT_BOTTOM_BASE_LINE},
                               {"base-line", T::ALIGN_BASE_LINE}});
    return words;
}

const std::vector<Property>& properties()
{
    using A = AltitudeSymbol;
    static const std::vector<Property> table = {
        colorProperty("line", "stroke",
                      static_cast<optional<Stroke>& (LineSymbol::*)()>(&LineSymbol::stroke)),
        opacityProperty("line", "stroke-opacity",
                        static_cast<optional<Stroke>& (LineSymbol::*)()>(&LineSymbol::stroke)),
        {"line", "stroke-width", readStrokeWidth, writeStrokeWidth},
        plainProperty("line", "stroke-tessellation-segments",
                      static_cast<optional<unsigned>& (LineSymbol::*)()>(&LineSymbol::tessellation)),
        colorProperty("polygon", "fill",
                      static_cast<optional<Fill>& (PolygonSymbol::*)()>(&PolygonSymbol::fill)),
        opacityProperty("polygon", "fill-opacity",
                        static_cast<optional<Fill>& (PolygonSymbol::*)()>(&PolygonSymbol::fill)),
        colorProperty("point", "point-fill",
                      static_cast<optional<Fill>& (PointSymbol::*)()>(&PointSymbol::fill)),
        plainProperty("point", "point-size",
                      static_cast<optional<float>& (PointSymbol::*)()>(&PointSymbol::size)),
        {"text", "text-content", readContent,
         [](const Style& style) -> std::string {
             const TextSymbol* text = style.get<TextSymbol>();
             return text && text->content().isSet() ? text->content()->expr() : std::string();
         }},
        {"text", "text-font", readFont,
         [](const Style& style) -> std::string {
             const TextSymbol* text = style.get<TextSymbol>();
             return text && text->font().isSet() ? "\"" + text->font().value() + "\"" : std::string();
         }},
        colorProperty("text", "text-fill", static_cast<optional<Fill>& (TextSymbol::*)()>(&TextSymbol::fill)),
        opacityProperty("text", "text-fill-opacity",
                        static_cast<optional<Fill>& (TextSymbol::*)()>(&TextSymbol::fill)),
        colorProperty("text", "text-halo",
                      static_cast<optional<Stroke>& (TextSymbol::*)()>(&TextSymbol::halo)),
        plainProperty("text", "text-halo-offset",
                      static_cast<optional<float>& (TextSymbol::*)()>(&TextSymbol::haloOffset)),
        numericProperty("text", "text-size",
                        static_cast<optional<NumericExpression>& (TextSymbol::*)()>(&TextSymbol::size)),
        numericProperty("text", "text-priority",
                        static_cast<optional<NumericExpression>& (TextSymbol::*)()>(&TextSymbol::priority)),
        numericProperty(
            "text", "text-rotation",
            static_cast<optional<NumericExpression>& (TextSymbol::*)()>(&TextSymbol::onScreenRotation)),
        offsetProperty("text-offset-x", 0,
                       static_cast<optional<osg::Vec2s>& (TextSymbol::*)()>(&TextSymbol::pixelOffset)),
        offsetProperty("text-offset-y", 1,
                       static_cast<optional<osg::Vec2s>& (TextSymbol::*)()>(&TextSymbol::pixelOffset)),
        boolProperty("text", "text-declutter",
                     static_cast<optional<bool>& (TextSymbol::*)()>(&TextSymbol::declutter)),
        boolProperty("text", "text-occlusion-cull",
                     static_cast<optional<bool>& (TextSymbol::*)()>(&TextSymbol::occlusionCull)),
        enumProperty("text", "text-encoding",
                     static_cast<optional<TextSymbol::Encoding>& (TextSymbol::*)()>(&TextSymbol::encoding),
                     {{"ascii", TextSymbol::ENCODING_ASCII},
                      {"utf-8", TextSymbol::ENCODING_UTF8},
                      {"utf-16", TextSymbol::ENCODING_UTF16},
                      {"utf-32", TextSymbol::ENCODING_UTF32}}),
        enumProperty("text", "text-align",
                     static_cast<optional<TextSymbol::Alignment>& (TextSymbol::*)()>(&TextSymbol::alignment),
                     textAlignments()),
        {"icon", "icon", readIcon,
         [](const Style& style) -> std::
                                    string {
                                        const IconSymbol* icon = style.get<IconSymbol>();
                                        return icon && icon->url().isSet() ? "\"" + icon->url()->expr() + "\""
                                                                           : std::string();
                                    }},
        numericProperty("icon", "icon-scale",
                        static_cast<optional<NumericExpression>& (IconSymbol::*)()>(&IconSymbol::scale)),
        numericProperty("icon", "icon-heading",
                        static_cast<optional<NumericExpression>& (IconSymbol::*)()>(&IconSymbol::heading)),
        boolProperty("icon", "icon-declutter",
                     static_cast<optional<bool>& (IconSymbol::*)()>(&IconSymbol::declutter)),
        enumProperty("icon", "icon-align",
                     static_cast<optional<IconSymbol::Alignment>& (IconSymbol::*)()>(&IconSymbol::alignment),
                     alignments<IconSymbol>()),
        enumProperty("altitude", "altitude-clamping",
                     static_cast<optional<A::Clamping>& (A::*)()>(&A::clamping),
                     {{"none", A::CLAMP_NONE},
                      {"terrain", A::CLAMP_TO_TERRAIN},
                      {"relative", A::CLAMP_RELATIVE_TO_TERRAIN},
                      {"absolute", A::CLAMP_ABSOLUTE}}),
        enumProperty("altitude", "altitude-technique",
                     static_cast<optional<A::Technique>& (A::*)()>(&A::technique),
                     {{"map", A::TECHNIQUE_MAP},
                      {"scene", A::TECHNIQUE_SCENE},
                      {"gpu", A::TECHNIQUE_GPU},
                      {"drape", A::TECHNIQUE_DRAPE}}),
        enumProperty("altitude", "altitude-binding", static_cast<optional<A::Binding>& (A::*)()>(&A::binding),
                     {{"vertex", A::BINDING_VERTEX}, {"centroid", A::BINDING_CENTROID}}),
        plainProperty("altitude", "altitude-resolution",
                      static_cast<optional<float>& (A::*)()>(&A::clampingResolution)),
        numericProperty("altitude", "altitude-offset",
                        static_cast<optional<NumericExpression>& (A::*)()>(&A::verticalOffset)),
        numericProperty("altitude", "altitude-scale",
                        static_cast<optional<NumericExpression>& (A::*)()>(&A::verticalScale)),
        boolProperty("render", "render-depth-test",
                     static_cast<optional<bool>& (RenderSymbol::*)()>(&RenderSymbol::depthTest)),
        boolProperty("render", "render-lighting",
                     static_cast<optional<bool>& (RenderSymbol::*)()>(&RenderSymbol::lighting)),
        boolProperty("render", "render-transparent",
                     static_cast<optional<bool>& (RenderSymbol::*)()>(&RenderSymbol::transparent)),
        numericProperty("render", "render-order",
                        static_cast<optional<NumericExpression>& (RenderSymbol::*)()>(&RenderSymbol::order)),
    };
    return table;
}
} // namespace

PropertyResult readStyleProperty(const Config& property, Style& style, const char* onlyTable)
{
    const std::string key = toLower(property.key());
    for (const Property& row : properties())
        if (key == row.name && (!onlyTable || std::strcmp(onlyTable, row.table) == 0))
            return row.read(property, style) ? PropertyResult::Taken : PropertyResult::BadValue;
    return PropertyResult::Unknown;
}

std::string writeStyleProperties(const Style& style)
{
    std::string css;
    for (const Property& row : properties()) {
        const std::string value = row.write(style);
        if (!value.empty())
            css += std::string("  ") + row.name + ": " + value + ";\n";
    }
    return css;
}
} // namespace osgEarth::Symbology
