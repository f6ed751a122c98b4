#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QString>

/// How lengths and areas on the map are written for people, whatever shows them: one choice for the process,
/// which the host sets. Heights and speeds are metric always. Any thread; texts in the language of the
/// program, numbers with a point.
namespace AxUnits {

/// The units of lengths; of areas.
enum class System
{
    Metric,   ///< m, km; m², km²
    Imperial, ///< ft, mi; ft², ac, mi²
    Mu,       ///< m, km; m², mu with hectares
};

/// Metric until set. A text that is shown already stays as it is.
AXALGORTHM_EXPORT void Set(System system);
AXALGORTHM_EXPORT System Get();

/// "12.3 m", from a kilometre on "1.234 km"; "40.4 ft", from a mile on "1.234 mi".
AXALGORTHM_EXPORT QString Length(double metres);
/// "1234 m²", below ten "1.23 m²", from a hundredth of a square kilometre on "1.234 km²"; "1234 ft²", from a
/// tenth of an acre on "0.305 ac", from a square mile on "1.234 mi²"; m², from a tenth of a mu on
/// "1.85 mu (0.1234 ha)".
AXALGORTHM_EXPORT QString Area(double squareMetres);
/// "1234 m³", below ten "1.23 m³", from ten thousand on "12 345 m³"; "1234 yd³".
AXALGORTHM_EXPORT QString Volume(double cubicMetres);
/// The same with the sign of a difference: "+1234 m³", "-1234 m³"; without one for what is written as zero.
AXALGORTHM_EXPORT QString SignedVolume(double cubicMetres);

/// One unit for all values of a field that people fill in.
struct Unit
{
    QString sign;      ///< behind the name of the field
    double size = 1.0; ///< metres, or square metres
};
AXALGORTHM_EXPORT Unit OfWidths();    ///< m or ft
AXALGORTHM_EXPORT Unit OfDistances(); ///< km or mi
AXALGORTHM_EXPORT Unit OfAreas();     ///< km^2, ac or mu

} // namespace AxUnits
