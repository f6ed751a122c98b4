#pragma once

#include <AxAlgorthm/AxCoordinateText.h>

/// The part of AxCoordinateText that reads degrees. Any thread.
namespace AxTypedDegrees {

/// The text with blanks made single, and with ° ' " - , ; and no sign that only looks like one of them.
QString WithPlainMarks(const QString& text);

/// Degrees as AxCoordinateText::Parse() describes them, of a text with plain marks that is not empty.
AxCoordinateText::Typed Read(const QString& plain);

/// As AxCoordinateText::TwoNumbers(), of a text with plain marks.
std::optional<std::array<double, 2>> TwoNumbers(const QString& plain);

} // namespace AxTypedDegrees
