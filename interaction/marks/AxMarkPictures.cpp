#include "interaction/marks/AxMarkPictures.h"
#include "scene/base/AxFonts.h"
#include "scene/shape/AxStateOverGround.h"

#include <osg/Program>
#include <osg/Texture2D>

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <cstring>

namespace {
constexpr int atlasWidth = 1024;
constexpr int atlasHeight = 512;
constexpr int sharedHeight = 52; // of the row of pictures that all marks share
constexpr int nameWidth = 204;
constexpr int nameHeight = 22;
constexpr int columns = atlasWidth / nameWidth;
constexpr int rows = (atlasHeight - sharedHeight) / nameHeight;
constexpr int namePixels = 14; // of the font
constexpr int nameRim = 3;     // around the letters
constexpr int selectedRim = 4;
constexpr int dotSize = 9;
constexpr int markBin = 16; // over trails and photo points, below the map's names

const char markVertexSource[] = R"(#version 330 compatibility
out vec2 place;
void main()
{
    place = gl_MultiTexCoord0.xy;
    gl_Position = vec4(gl_Vertex.xy, 0.0, 1.0);
}
)";
const char markFragmentSource[] = R"(#version 330 compatibility
uniform sampler2D axPictures;
in vec2 place;
void main()
{
    gl_FragColor = texture(axPictures, place);
}
)";

QImage Blank(int width, int height)
{
    QImage picture(width, height, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

QImage Marker()
{
    return QImage(QStringLiteral(":/images/Normal/map_airline_show/Map_Marker_ic.png"))
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// Its outline in one colour, around it.
QImage WithRim(const QImage& icon, const QColor& color, int rim)
{
    QImage outline = icon;
    QPainter tint(&outline);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(outline.rect(), color);
    tint.end();
    QImage picture = Blank(icon.width() + 2 * rim, icon.height() + 2 * rim);
    QPainter painter(&picture);
    for (int x = -rim; x <= rim; ++x)
        for (int y = -rim; y <= rim; ++y)
            if (x * x + y * y <= rim * rim)
                painter.drawImage(rim + x, rim + y, outline);
    painter.drawImage(rim, rim, icon);
    return picture;
}

QImage DotPicture()
{
    QImage picture = Blank(dotSize, dotSize);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(20, 20, 20), 1.0));
    painter.setBrush(QColor(255, 220, 60));
    painter.drawEllipse(QRectF(1.0, 1.0, dotSize - 2.0, dotSize - 2.0));
    return picture;
}

QImage NamePicture(const QString& text, const QFont& font, int width)
{
    QImage picture = Blank(width, nameHeight);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QFontMetrics metrics(font);
    QPainterPath letters;
    letters.addText(nameRim, (nameHeight + metrics.ascent() - metrics.descent()) / 2.0, font, text);
    painter.strokePath(letters,
                       QPen(QColor(0, 0, 0, 220), nameRim, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(letters, Qt::white);
    return picture;
}

QFont NameFont()
{
    QFont font(AxOverlayFontFamily());
    font.setPixelSize(namePixels);
    font.setWeight(QFont::DemiBold);
    return font;
}
} // namespace

AxMarkPictures::AxMarkPictures()
    : font(NameFont()), image(new osg::Image), state(AxStateOverGround()),
      places(static_cast<std::size_t>(columns * rows))
{
    image->allocateImage(atlasWidth, atlasHeight, 1, GL_RGBA, GL_UNSIGNED_BYTE);
    std::memset(image->data(), 0, image->getTotalSizeInBytes());
    int left = 0;
    const QImage icon = Marker();
    const QImage pictures[] = {icon, WithRim(icon, QColor(0, 230, 255), selectedRim), DotPicture()};
    for (int kind = Icon; kind <= Dot; ++kind) {
        put(pictures[kind], {left, 0});
        shared[kind] = QRect(QPoint(left, 0), pictures[kind].size());
        left += pictures[kind].width() + 1;
    }
    osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
    // Pictures lie on whole pixels.
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::NEAREST);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::NEAREST);
    texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
    texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
    texture->setResizeNonPowerOfTwoHint(false);
    texture->setUnRefImageDataAfterApply(false);
    state->setTextureAttributeAndModes(0, texture);
    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->setName("Mark points");
    program->addShader(new osg::Shader(osg::Shader::VERTEX, markVertexSource));
    program->addShader(new osg::Shader(osg::Shader::FRAGMENT, markFragmentSource));
    state->setAttributeAndModes(program);
    state->addUniform(new osg::Uniform("axPictures", 0));
    state->setRenderBinDetails(markBin, "RenderBin");
}

QSize AxMarkPictures::Size() const
{
    return {atlasWidth, atlasHeight};
}

int AxMarkPictures::MostNames()
{
    return columns * rows;
}

int AxMarkPictures::HeightOfNames()
{
    return nameHeight;
}

QString AxMarkPictures::shortened(const QString& name) const
{
    // Longer ones are slow to measure and find no room.
    constexpr int mostLetters = 100;
    return QFontMetrics(font).elidedText(name.left(mostLetters), Qt::ElideRight, nameWidth - 2 * nameRim - 1);
}

int AxMarkPictures::WidthOf(const QString& name) const
{
    return std::min(nameWidth, QFontMetrics(font).horizontalAdvance(shortened(name)) + 2 * nameRim + 1);
}

QRect AxMarkPictures::OfName(const QString& name)
{
    auto known = slotOf.constFind(name);
    int found = known == slotOf.constEnd() ? -1 : *known;
    const bool isNew = found < 0;
    for (std::size_t i = 0; found < 0 && i < places.size(); ++i)
        if (places[i].round != round)
            found = static_cast<int>(i);
    if (found < 0)
        return {};
    Slot& slot = places[static_cast<std::size_t>(found)];
    const QPoint corner(found % columns * nameWidth, sharedHeight + found / columns * nameHeight);
    if (isNew) {
        slotOf.remove(slot.name);
        slotOf[name] = found;
        slot.name = name;
        slot.width = WidthOf(name);
        put(NamePicture(shortened(name), font, slot.width), corner);
    }
    slot.round = round;
    return {corner, QSize(slot.width, nameHeight)};
}

void AxMarkPictures::put(const QImage& picture, const QPoint& place)
{
    const QImage colors = picture.convertToFormat(QImage::Format_RGBA8888);
    for (int row = 0; row < colors.height(); ++row)
        std::memcpy(image->data(static_cast<unsigned>(place.x()), static_cast<unsigned>(place.y() + row)),
                    colors.constScanLine(row), static_cast<std::size_t>(colors.width()) * 4);
    image->dirty();
}
