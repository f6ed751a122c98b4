#pragma once
#include <cstdint>
#include <osg/Geometry>
#include <vector>

namespace osgEarth {
/// A text made of letters (see makeLetters()), somewhere on the screen.
struct PlacedText
{
    std::uint64_t number = 0; ///< no other text ever has it
    osg::Vec2f place;         ///< of its origin, pixels
    // Of the text's drawable, which lives at least until show() returns.
    const osg::Vec3Array* corners = nullptr;
    const osg::Vec2Array* places = nullptr; ///< in the picture of letters
    const osg::Vec4Array* fills = nullptr;
    const osg::Vec4Array* halos = nullptr;
    const osg::DrawElementsUInt* indices = nullptr;
};

/// Texts of one picture of letters in one drawable: each drawn by itself costs
/// the driver more than its letters. Belongs to the thread that culls and draws.
class LetterBatch : public osg::Geometry
{
public:
    LetterBatch();
    /// Drawn in this order.
    void show(const std::vector<PlacedText>& texts);

    /// The vertex attribute of the halo's colour. On some drivers those below
    /// this number are the same as OpenGL's built-in ones (vertex, normal, colour, ...).
    static constexpr unsigned kHaloAttribute = 6;

private:
    void append(const PlacedText& text);

    std::vector<PlacedText> _shown; // their arrays are not followed
    osg::ref_ptr<osg::Vec3Array> _corners = new osg::Vec3Array();
    osg::ref_ptr<osg::Vec2Array> _places = new osg::Vec2Array();
    osg::ref_ptr<osg::Vec4Array> _fills = new osg::Vec4Array();
    osg::ref_ptr<osg::Vec4Array> _halos = new osg::Vec4Array();
    osg::ref_ptr<osg::DrawElementsUInt> _indices = new osg::DrawElementsUInt(GL_TRIANGLES);
};
} // namespace osgEarth
