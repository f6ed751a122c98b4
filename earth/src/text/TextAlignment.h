#pragma once
#include <osgEarthSymbology/TextSymbol>

namespace osgEarth {
/// Which point of a text's width stands at the text's position, as a share of the width: 0 the left end, 1
/// the right end.
inline float acrossOf(Symbology::TextSymbol::Alignment alignment)
{
    using T = Symbology::TextSymbol;
    switch (alignment) {
    case T::ALIGN_CENTER_TOP:
    case T::ALIGN_CENTER_CENTER:
    case T::ALIGN_CENTER_BOTTOM:
    case T::ALIGN_CENTER_BASE_LINE:
    case T::ALIGN_CENTER_BOTTOM_BASE_LINE:
        return 0.5f;
    case T::ALIGN_RIGHT_TOP:
    case T::ALIGN_RIGHT_CENTER:
    case T::ALIGN_RIGHT_BOTTOM:
    case T::ALIGN_RIGHT_BASE_LINE:
    case T::ALIGN_RIGHT_BOTTOM_BASE_LINE:
        return 1.0f;
    default:
        return 0.0f;
    }
}
} // namespace osgEarth
