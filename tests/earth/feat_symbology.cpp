#include <gtest/gtest.h>
#include <osg/Notify>
#include <osgEarthSymbology/CssUtils>
#include <osgEarthSymbology/Expression>
#include <osgEarthSymbology/Geometry>
#include <osgEarthSymbology/StyleSheet>

using namespace osgEarth;

namespace {
Style styleOf(const std::string& css)
{
    return Style(Config("style", css));
}

template <typename T> const T* symbolOf(const Style& style)
{
    const T* symbol = style.get<T>();
    EXPECT_NE(symbol, nullptr);
    return symbol;
}

Polygon* square(double west, double south, double size)
{
    auto* polygon = new Polygon();
    polygon->push_back(west, south);
    polygon->push_back(west + size, south);
    polygon->push_back(west + size, south + size);
    polygon->push_back(west, south + size);
    return polygon;
}
} // namespace

TEST(FeatColor, ReadsWhatMapFilesWrite)
{
    const struct
    {
        const char* text;
        bool good;
        unsigned rgba;
    } rows[] = {{"#ff8000", true, 0xff8000ffu},  {"0xff800040", true, 0xff800040u},
                {" FF8000 ", true, 0xff8000ffu}, {"White", true, 0xffffffffu},
                {"cyan", true, 0x00ffffffu},     {"#ff80", false, 0},
                {"#gg0000", false, 0},           {"", false, 0},
                {"#ff80000", false, 0}};
    for (const auto& row : rows) {
        const Color before(0.25f, 0.5f, 0.75f, 1.0f);
        Color color = before;
        EXPECT_EQ(Color::parse(row.text, color), row.good) << row.text;
        EXPECT_EQ(color, row.good ? Color(row.rgba) : before) << row.text;
    }
    EXPECT_EQ(Color(0x11223344u).as(Color::ABGR), 0x44332211u);
}

TEST(FeatExpression, CalculatesWithAttributes)
{
    const struct
    {
        std::string text;
        bool valid;
        double value; // with [a] = 7
    } rows[] = {{"2+3*4", true, 14.0},
                {"(2+3)*4", true, 20.0},
                {"[a]*2-1", true, 13.0},
                {"10-4-3", true, 3.0},
                {"min([a],3)+max(1,2)", true, 5.0},
                {"-[a]", true, -7.0},
                {"8/0", true, 0.0},
                {"1.5e2", true, 150.0},
                {"17%5", true, 2.0},
                {"2+", false, 0.0},
                {"(1", false, 0.0},
                {"[a", false, 0.0},
                {"one", false, 0.0},
                {"", false, 0.0},
                {"1 2", false, 0.0},
                // Hostile nesting.
                {std::string(100000, '('), false, 0.0},
                {std::string(100000, '-'), false, 0.0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text.substr(0, 20));
        NumericExpression expression(row.text);
        EXPECT_EQ(expression.isValid(), row.valid);
        for (const auto& variable : expression.variables())
            expression.set(variable, 7.0);
        EXPECT_DOUBLE_EQ(expression.eval(), row.value);
    }
}

TEST(FeatStringExpression, JoinsTextAndAttributes)
{
    StringExpression plain("[name] Airport");
    plain.set("name", "Kiruna");
    EXPECT_EQ(plain.eval(), "Kiruna Airport");
    StringExpression quoted("\"[\" + [name] + \"]\"");
    quoted.set("name", "x");
    EXPECT_EQ(quoted.eval(), "[x]");
    StringExpression literal;
    literal.setLiteral("[name]");
    EXPECT_EQ(literal.eval(), "[name]");
}

TEST(FeatStyle, ReadsTheProperties)
{
    const Style style =
        styleOf("places { stroke: #ff000080; stroke-width: 2.5px; fill: lime; fill-opacity: 0.5;"
                " text-content: [name]; text-size: 14; text-fill: #ffffff; text-halo: #202020;"
                " text-priority: [population]; text-align: center-bottom; text-encoding: utf-8;"
                " text-declutter: false; icon: \"marks/a;b.png\"; altitude-clamping: terrain;"
                " altitude-technique: drape; altitude-offset: 12; }");
    EXPECT_EQ(style.getName(), "places");
    EXPECT_EQ(symbolOf<LineSymbol>(style)->stroke()->color().as(Color::RGBA), 0xff000080u);
    EXPECT_FLOAT_EQ(symbolOf<LineSymbol>(style)->stroke()->width().value(), 2.5f);
    EXPECT_EQ(symbolOf<PolygonSymbol>(style)->fill()->color().as(Color::RGBA), 0x00ff0080u);
    const TextSymbol* text = symbolOf<TextSymbol>(style);
    EXPECT_EQ(text->content()->expr(), "[name]");
    EXPECT_EQ(text->priority()->variables().size(), 1u);
    EXPECT_EQ(text->size()->eval(), 14.0);
    EXPECT_EQ(text->alignment().value(), TextSymbol::ALIGN_CENTER_BOTTOM);
    EXPECT_TRUE(text->declutter().isSetTo(false));
    EXPECT_EQ(symbolOf<IconSymbol>(style)->url()->eval(), "marks/a;b.png");
    const AltitudeSymbol* altitude = symbolOf<AltitudeSymbol>(style);
    EXPECT_EQ(altitude->clamping().value(), AltitudeSymbol::CLAMP_TO_TERRAIN);
    EXPECT_EQ(altitude->technique().value(), AltitudeSymbol::TECHNIQUE_DRAPE);
    EXPECT_EQ(altitude->verticalOffset()->eval(), 12.0);
    EXPECT_FALSE(style.has<PointSymbol>());
}

TEST(FeatStyle, BadValuesAndUnknownPropertiesLeaveTheRest)
{
    const Style style =
        styleOf("stroke: nocolour; stroke-width: wide; sparkle: 1; text-size: 2+; fill: #00ff00");
    EXPECT_FALSE(style.has<LineSymbol>());
    EXPECT_FALSE(style.has<TextSymbol>());
    EXPECT_EQ(symbolOf<PolygonSymbol>(style)->fill()->color(), Color::Lime);
}

TEST(FeatCss, CutsBlocksWhereTheyEnd)
{
    struct Row
    {
        const char* css;
        std::vector<std::string> names;
    };
    const Row rows[] = {{"a { x: 1 } b { x: 2 }", {"a", "b"}},
                        {"x: 1; y: 2", {"default"}},
                        {"{ x: 1 }", {"default"}},
                        {"a { /* } */ x: 1 } b {}", {"a", "b"}},
                        {"a { x: \"}\" }", {"a"}},
                        {"a { x: 1", {"a"}},
                        {"  ", {}},
                        {"a { x: 1 /* never closed", {"a"}}};
    for (const Row& row : rows) {
        ConfigSet blocks;
        CssUtils::readConfig(row.css, "", blocks);
        std::vector<std::string> names;
        for (const Config& block : blocks)
            names.push_back(block.key());
        EXPECT_EQ(names, row.names) << row.css;
    }
}

TEST(FeatStyleSheet, SelectorsAndFallBack)
{
    Config conf("styles");
    conf.add(Config("style", "capital { text-size: 16 } city { text-size: 12 }"));
    Config selector("selector"), query("query");
    selector.add("class", "city");
    query.add("expr", "kind = 'City'");
    selector.add(query);
    conf.add(selector);
    osg::ref_ptr<StyleSheet> sheet = new StyleSheet(conf);
    ASSERT_EQ(sheet->selectors().size(), 1u);
    EXPECT_EQ(sheet->selectors().front().getSelectedStyleName(), "city");
    EXPECT_EQ(sheet->selectors().front().query()->expression().value(), "kind = 'City'");
    EXPECT_EQ(sheet->getStyle("#city")->getName(), "city");
    EXPECT_EQ(sheet->getStyle("village")->getName(), "capital");
    EXPECT_EQ(sheet->getStyle("village", false), nullptr);
    osg::ref_ptr<StyleSheet> again = new StyleSheet(sheet->getConfig());
    EXPECT_EQ(again->getStyle("capital", false)->getName(), "capital");
    EXPECT_EQ(again->getStyle("city", false)->getName(), "city");
    EXPECT_EQ(again->selectors().front().getSelectedStyleName(), "city");
}

TEST(FeatGeometry, RingsKnowTheirInsideAndTurn)
{
    osg::ref_ptr<Polygon> polygon = square(10.0, 10.0, 10.0);
    polygon->getHoles().push_back(new Ring(*osg::ref_ptr<Polygon>(square(14.0, 14.0, 2.0))));
    EXPECT_TRUE(polygon->contains2D(11.0, 11.0));
    EXPECT_FALSE(polygon->contains2D(15.0, 15.0)); // in the hole
    EXPECT_FALSE(polygon->contains2D(9.0, 15.0));
    EXPECT_DOUBLE_EQ(polygon->getSignedArea2D(), 100.0);
    polygon->rewind(Geometry::ORIENTATION_CW);
    EXPECT_EQ(polygon->getOrientation(), Geometry::ORIENTATION_CW);
    EXPECT_DOUBLE_EQ(polygon->getLength(), 40.0);
    polygon->close();
    EXPECT_EQ(polygon->size(), 5u);
    EXPECT_DOUBLE_EQ(polygon->getLength(), 40.0);
    EXPECT_EQ(polygon->getTotalPointCount(), 10);
}

TEST(FeatGeometry, PlaneOperations)
{
    osg::ref_ptr<Polygon> a = square(0.0, 0.0, 4.0), b = square(2.0, 2.0, 4.0), hole = square(1.0, 1.0, 1.0);
    osg::ref_ptr<Polygon> touching = square(4.0, 0.0, 1.0), apart = square(9.0, 9.0, 1.0);
    EXPECT_TRUE(a->intersects(b.get()));
    EXPECT_TRUE(a->intersects(touching.get()));
    EXPECT_FALSE(a->intersects(apart.get()));
    osg::ref_ptr<Geometry> result;
    ASSERT_TRUE(a->difference(hole.get(), result));
    const auto* cut = dynamic_cast<const Polygon*>(result.get());
    ASSERT_NE(cut, nullptr);
    EXPECT_EQ(cut->getHoles().size(), 1u);
    EXPECT_FALSE(cut->contains2D(1.5, 1.5));
    ASSERT_TRUE(a->crop(b.get(), result));
    EXPECT_DOUBLE_EQ(result->getBounds().area2d(), 4.0);
    EXPECT_FALSE(a->crop(apart.get(), result));
    ASSERT_TRUE(a->geounion(apart.get(), result));
    EXPECT_EQ(result->getNumComponents(), 2u);
    ASSERT_TRUE(a->buffer(1.0, result));
    EXPECT_NEAR(result->getBounds().width(), 6.0, 1e-9);
}
