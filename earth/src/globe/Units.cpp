#include <osgEarth/Units>

#include <cmath>
#include <cstdlib>

namespace osgEarth {
namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kFoot = 0.3048;
constexpr double kMile = 1609.344;
constexpr double kNauticalMile = 1852.0;
} // namespace

const Units Units::CENTIMETERS("centimeters", "cm", TYPE_LINEAR, 0.01);
const Units Units::FEET("feet", "ft", TYPE_LINEAR, kFoot);
const Units Units::FEET_US_SURVEY("feet(us)", "ft", TYPE_LINEAR, 1200.0 / 3937.0);
const Units Units::INCHES("inches", "in", TYPE_LINEAR, 0.0254);
const Units Units::KILOMETERS("kilometers", "km", TYPE_LINEAR, 1000.0);
const Units Units::METERS("meters", "m", TYPE_LINEAR, 1.0);
const Units Units::MILES("miles", "mi", TYPE_LINEAR, kMile);
const Units Units::MILLIMETERS("millimeters", "mm", TYPE_LINEAR, 0.001);
const Units Units::NAUTICAL_MILES("nautical miles", "nm", TYPE_LINEAR, kNauticalMile);
const Units Units::YARDS("yards", "yd", TYPE_LINEAR, 3.0 * kFoot);

const Units Units::DEGREES("degrees", "deg", TYPE_ANGULAR, kPi / 180.0);
const Units Units::RADIANS("radians", "rad", TYPE_ANGULAR, 1.0);
const Units Units::NATO_MILS("nato mils", "mil", TYPE_ANGULAR, 2.0 * kPi / 6400.0);

const Units Units::DAYS("days", "d", TYPE_TEMPORAL, 86400.0);
const Units Units::HOURS("hours", "hr", TYPE_TEMPORAL, 3600.0);
const Units Units::MICROSECONDS("microseconds", "us", TYPE_TEMPORAL, 1e-6);
const Units Units::MILLISECONDS("milliseconds", "ms", TYPE_TEMPORAL, 1e-3);
const Units Units::MINUTES("minutes", "min", TYPE_TEMPORAL, 60.0);
const Units Units::SECONDS("seconds", "s", TYPE_TEMPORAL, 1.0);
const Units Units::WEEKS("weeks", "wk", TYPE_TEMPORAL, 604800.0);

const Units Units::FEET_PER_SECOND("feet per second", "ft/s", TYPE_SPEED, kFoot);
const Units Units::METERS_PER_SECOND("meters per second", "m/s", TYPE_SPEED, 1.0);
const Units Units::KILOMETERS_PER_SECOND("kilometers per second", "km/s", TYPE_SPEED, 1000.0);
const Units Units::KILOMETERS_PER_HOUR("kilometers per hour", "kmh", TYPE_SPEED, 1000.0 / 3600.0);
const Units Units::MILES_PER_HOUR("miles per hour", "mph", TYPE_SPEED, kMile / 3600.0);
const Units Units::KNOTS("nautical miles per hour", "kts", TYPE_SPEED, kNauticalMile / 3600.0);

const Units Units::PIXELS("pixels", "px", TYPE_SCREEN_SIZE, 1.0);

bool Units::parse(const std::string& input, Units& output)
{
    static const Units* const all[] = {&CENTIMETERS,
                                       &FEET,
                                       &FEET_US_SURVEY,
                                       &INCHES,
                                       &KILOMETERS,
                                       &METERS,
                                       &MILES,
                                       &MILLIMETERS,
                                       &NAUTICAL_MILES,
                                       &YARDS,
                                       &DEGREES,
                                       &RADIANS,
                                       &NATO_MILS,
                                       &DAYS,
                                       &HOURS,
                                       &MICROSECONDS,
                                       &MILLISECONDS,
                                       &MINUTES,
                                       &SECONDS,
                                       &WEEKS,
                                       &FEET_PER_SECOND,
                                       &METERS_PER_SECOND,
                                       &KILOMETERS_PER_SECOND,
                                       &KILOMETERS_PER_HOUR,
                                       &MILES_PER_HOUR,
                                       &KNOTS,
                                       &PIXELS};
    const std::string text = toLower(trim(input));
    for (const Units* units : all)
        if (text == units->_name || text == units->_abbr || text + "s" == units->_name) {
            output = *units;
            return true;
        }
    return false;
}

bool Units::parse(const std::string& input, double& out_value, Units& out_units, const Units& defaultUnits)
{
    const std::string text = trim(input);
    const size_t split = text.find_first_not_of("0123456789.+-");
    size_t end = split;
    // An exponent belongs to the number: "1e3m".
    if (split != std::string::npos && (text[split] == 'e' || text[split] == 'E') && split > 0) {
        const size_t after = text.find_first_not_of("0123456789+-", split + 1);
        if (after != split + 1)
            end = after;
    }
    const std::string number = text.substr(0, end);
    const double nan = std::nan("");
    const double value = as<double>(number, nan);
    if (std::isnan(value))
        return false;
    Units units = defaultUnits;
    if (end != std::string::npos && !parse(text.substr(end), units))
        return false;
    out_value = value;
    out_units = units;
    return true;
}

bool Units::convert(const Units& from, const Units& to, double input, double& output)
{
    if (!canConvert(from, to) || to._type == TYPE_INVALID)
        return false;
    output = from._toBase == to._toBase ? input : input * (from._toBase / to._toBase);
    return true;
}

double Units::convert(const Units& from, const Units& to, double input)
{
    double output = input;
    convert(from, to, input, output);
    return output;
}

template <> Distance as<Distance>(const std::string& text, const Distance& fallback)
{
    double value;
    Units units;
    return Units::parse(text, value, units, Units::METERS) ? Distance(value, units) : fallback;
}

template <> Angle as<Angle>(const std::string& text, const Angle& fallback)
{
    double value;
    Units units;
    return Units::parse(text, value, units, Units::DEGREES) ? Angle(value, units) : fallback;
}

template <> Duration as<Duration>(const std::string& text, const Duration& fallback)
{
    double value;
    Units units;
    return Units::parse(text, value, units, Units::SECONDS) ? Duration(value, units) : fallback;
}

template <> Speed as<Speed>(const std::string& text, const Speed& fallback)
{
    double value;
    Units units;
    return Units::parse(text, value, units, Units::METERS_PER_SECOND) ? Speed(value, units) : fallback;
}
} // namespace osgEarth
