#pragma once
#include <osg/Array>
#include <osg/Vec3d>

#include <cstddef>

/// Reads the places that a vertex array holds, in whichever of OpenSceneGraph's kinds of floating numbers. It
/// refers to the array, which outlives it. Any thread, as long as nobody makes the array longer or shorter.
class AxModelVertices
{
public:
    explicit AxModelVertices(const osg::Array* array); ///< null for none

    std::size_t Count() const { return count; }
    /// False for none, and for arrays of whole numbers, of which only Count() is known.
    bool AreRead() const { return numbers != nullptr; }
    /// Only for indices below Count() of an array that is read.
    osg::Vec3d operator[](std::size_t i) const;
    /// Whether a vertex is somewhere: not for NaN and infinity. As above.
    bool IsPlace(std::size_t i) const;

private:
    const void* numbers = nullptr;
    std::size_t count = 0;
    std::size_t size = 0; ///< numbers of a vertex, 2 to 4
    bool isDouble = false;
};
