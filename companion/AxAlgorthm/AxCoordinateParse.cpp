// Reading places: what kind of text it is, and the grids; degrees are in AxTypedDegrees.cpp.
#include <AxAlgorthm/AxCoordinateText.h>

#include <AxAlgorthm/AxTypedDegrees.h>

#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/UTMUPS.hpp>

#include <QCoreApplication>
#include <QRegularExpression>

#include <cmath>
#include <exception>

namespace AxCoordinateText {
namespace {
constexpr int longestText = 200;
const QString bandLetters = QStringLiteral("CDEFGHJKLMNPQRSTUVWX");
constexpr double southernmostBand = -80.0; // degrees
constexpr double bandHeight = 8.0;
constexpr double heightOfLastBand = 12.0;
// Of a coordinate that was rounded to metres at the border of a band, degrees.
constexpr double bandTolerance = 2.0e-5;
constexpr double metresOfKilometre = 1000.0;

QString Tr(const char* text)
{
    return QCoreApplication::translate("AxCoordinateText", text);
}

Typed Fault(const QString& reason)
{
    Typed typed;
    typed.fault = reason;
    return typed;
}

struct Band
{
    double south; // degrees
    double north;
};

Band BandOf(QChar letter)
{
    const int index = bandLetters.indexOf(letter);
    const double south = southernmostBand + bandHeight * index;
    return {south, south + (index == bandLetters.size() - 1 ? heightOfLastBand : bandHeight)};
}

bool IsIn(const Band& band, double latitude)
{
    return latitude >= band.south - bandTolerance && latitude <= band.north + bandTolerance;
}

QString Kilometres(double metres)
{
    return QString::number(metres / metresOfKilometre, 'f', 0);
}

// The place of a grid's coordinates, zone 0 being polar; nothing where the grid does not reach.
std::optional<PointLatLng> FromGrid(int zone, bool isNorth, double easting, double northing)
{
    try {
        double latitude = 0.0;
        double longitude = 0.0;
        GeographicLib::UTMUPS::Reverse(zone, isNorth, easting, northing, latitude, longitude, true);
        return PointLatLng(latitude, longitude);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

// Easting and northing behind a zone; the reason where they are not two numbers.
std::optional<std::array<double, 2>> ReadMetres(const QString& text, const QString& zone, QString& fault)
{
    static const QRegularExpression form(
        QStringLiteral(
            "^(\\d+(?:\\.\\d*)?)\\s*(?:m\\s*E|m|E)?(?:[\\s,;]+(?:(\\d+(?:\\.\\d*)?)\\s*(?:m\\s*N|m|N)?)?)?$"),
        QRegularExpression::CaseInsensitiveOption);
    if (text.isEmpty()) {
        fault =
            Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "Easting and northing are missing after the zone %1."))
                .arg(zone);
        return std::nullopt;
    }
    const QRegularExpressionMatch found = form.match(text);
    if (!found.hasMatch()) {
        fault = Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                     "\"%1\" is not an easting and a northing in metres, as 500000 4140000."))
                    .arg(text);
        return std::nullopt;
    }
    if (found.captured(2).isEmpty()) {
        fault = Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The northing is missing."));
        return std::nullopt;
    }
    return std::array<double, 2>{found.captured(1).toDouble(), found.captured(2).toDouble()};
}

QString BeyondGrid(const std::array<double, 2>& metres, bool isNorth)
{
    constexpr double leastEasting = 1.0e5;
    constexpr double mostEasting = 9.0e5;
    if (metres[0] < leastEasting || metres[0] > mostEasting)
        return Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "The easting %1 m is not between %2 and %3 km."))
            .arg(QString::number(metres[0], 'f', 0), Kilometres(leastEasting), Kilometres(mostEasting));
    return (isNorth ? Tr(QT_TRANSLATE_NOOP(
                          "AxCoordinateText",
                          "The northing %1 m is not on the northern hemisphere, up to 84\302\260."))
                    : Tr(QT_TRANSLATE_NOOP(
                          "AxCoordinateText",
                          "The northing %1 m is not on the southern hemisphere, up to 80\302\260.")))
        .arg(QString::number(metres[1], 'f', 0));
}

Typed OfUtm(int zone, const QString& side, const QString& rest)
{
    Typed typed;
    typed.form = Form::Utm;
    if (zone < 1 || zone > 60)
        return Fault(
            Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "There is no UTM zone %1, only 1 to 60.")).arg(zone));
    const bool isWord = side.size() > 1;
    const QChar letter = side.at(0);
    if (!bandLetters.contains(letter))
        return Fault(
            Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "%1 is neither N nor S nor a latitude band of UTM."))
                .arg(letter));
    const std::optional<std::array<double, 2>> metres =
        ReadMetres(rest, QString::number(zone) + (isWord ? QLatin1Char(' ') + side : side), typed.fault);
    if (!metres)
        return typed;

    const auto at = [zone, &metres](bool isNorth) {
        return FromGrid(zone, isNorth, (*metres)[0], (*metres)[1]);
    };
    const bool isBandNorth = letter >= QLatin1Char('N');
    const bool isSouth = isWord ? letter == QLatin1Char('S') : !isBandNorth;
    if (letter != QLatin1Char('S') || isWord) {
        typed.place = at(!isSouth);
        if (!typed.place)
            return Fault(BeyondGrid(*metres, !isSouth));
        const Band band = BandOf(letter);
        if (letter != QLatin1Char('N') && !isWord && !IsIn(band, typed.place->Lat()))
            return Fault(Tr(QT_TRANSLATE_NOOP(
                                "AxCoordinateText",
                                "Band %1 reaches from %2\302\260 to %3\302\260, and the northing belongs "
                                "to %4\302\260."))
                             .arg(letter)
                             .arg(band.south, 0, 'f', 0)
                             .arg(band.north, 0, 'f', 0)
                             .arg(typed.place->Lat(), 0, 'f', 2));
        return typed;
    }

    const std::optional<PointLatLng> asHemisphere = at(false);
    std::optional<PointLatLng> asBand = at(true);
    if (asBand && !IsIn(BandOf(letter), asBand->Lat()))
        asBand.reset();
    if (asHemisphere && asBand)
        return Fault(Tr(QT_TRANSLATE_NOOP(
                            "AxCoordinateText",
                            "S can be the southern hemisphere (%1\302\260) or band S (%2\302\260): write "
                            "\"%3 south\" or \"%3N\"."))
                         .arg(asHemisphere->Lat(), 0, 'f', 2)
                         .arg(asBand->Lat(), 0, 'f', 2)
                         .arg(zone));
    typed.place = asBand ? asBand : asHemisphere;
    return typed.place ? typed : Fault(BeyondGrid(*metres, false));
}

Typed OfUps(bool isNorth, const QString& rest)
{
    Typed typed;
    typed.form = Form::Utm;
    const std::optional<std::array<double, 2>> metres =
        ReadMetres(rest, isNorth ? QStringLiteral("UPS N") : QStringLiteral("UPS S"), typed.fault);
    if (!metres)
        return typed;
    typed.place = FromGrid(0, isNorth, (*metres)[0], (*metres)[1]);
    return typed.place
               ? typed
               : Fault(Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                            "%1 m, %2 m is beyond the polar grid around 2000000 2000000."))
                           .arg((*metres)[0], 0, 'f', 0)
                           .arg((*metres)[1], 0, 'f', 0));
}

Typed OfMgrs(const QString& zone, const QString& square, const QString& rest)
{
    constexpr int mostDigits = 10;
    constexpr int digitsOfMetre = 5;
    QStringList groups = rest.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (groups.isEmpty())
        return Fault(Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                          "The digits are missing: %1 %2 alone is a square of 100 km."))
                         .arg(zone, square));
    if (groups.size() > 2 || (groups.size() == 1 && groups[0].size() % 2 != 0))
        return Fault(
            Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                 "\"%1\" cannot be halved into as many digits of easting and of northing."))
                .arg(rest));
    if (groups.size() == 1)
        groups = QStringList{groups[0].left(groups[0].size() / 2), groups[0].mid(groups[0].size() / 2)};
    if (groups[0].size() != groups[1].size())
        return Fault(Tr(QT_TRANSLATE_NOOP("AxCoordinateText",
                                          "The easting %1 and the northing %2 have not as many digits."))
                         .arg(groups[0], groups[1]));
    if (groups[0].size() > mostDigits)
        return Fault(Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "More than %1 digits each.")).arg(mostDigits));

    Typed typed;
    typed.form = Form::Mgrs;
    typed.side = std::pow(10.0, digitsOfMetre - groups[0].size());
    try {
        int number = 0;
        bool isNorth = true;
        double easting = 0.0;
        double northing = 0.0;
        int digits = 0;
        GeographicLib::MGRS::Reverse((zone + square + groups.join(QString())).toStdString(), number, isNorth,
                                     easting, northing, digits, true);
        double latitude = 0.0;
        double longitude = 0.0;
        GeographicLib::UTMUPS::Reverse(number, isNorth, easting, northing, latitude, longitude);
        typed.place = PointLatLng(latitude, longitude);
        return typed;
    } catch (const std::exception&) {
        return Fault(Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "There is no square %2 in the MGRS zone %1."))
                         .arg(zone, square));
    }
}

// Nothing where it is no text of a grid at all.
std::optional<Typed> OfGrid(const QString& text)
{
    static const QRegularExpression mgrs(
        QStringLiteral("^(?:MGRS[\\s:]*)?(\\d{1,2}\\s*[A-Z]|[ABYZ])\\s*([A-Z]{2})\\s*([\\d\\s]*)$"));
    static const QRegularExpression ups(QStringLiteral("^UPS[\\s:]*(NORTH|SOUTH|N|S)[\\s,;]*(.*)$"));
    static const QRegularExpression utm(
        QStringLiteral("^(UTM[\\s:]*)?(ZONE\\s*)?(\\d{1,2})\\s*(NORTH|SOUTH|[A-Z])(?![A-Z])[\\s,;]*(.*)$"));
    // Degrees have at most three digits in front of the point.
    static const QRegularExpression metresFirst(QStringLiteral("^\\d{4,}"));
    const QString upper = text.toUpper();
    if (const QRegularExpressionMatch found = mgrs.match(upper); found.hasMatch())
        return OfMgrs(found.captured(1).remove(QLatin1Char(' ')), found.captured(2),
                      found.captured(3).simplified());
    if (const QRegularExpressionMatch found = ups.match(upper); found.hasMatch())
        return OfUps(found.captured(1).startsWith(QLatin1Char('N')), found.captured(2));
    if (const QRegularExpressionMatch found = utm.match(upper); found.hasMatch()) {
        const bool isNamed = !found.captured(1).isEmpty() || !found.captured(2).isEmpty();
        if (isNamed || metresFirst.match(found.captured(5)).hasMatch())
            return OfUtm(found.captured(3).toInt(), found.captured(4), found.captured(5));
    }
    return std::nullopt;
}
} // namespace

Typed Parse(const QString& text)
{
    const QString plain = AxTypedDegrees::WithPlainMarks(text);
    if (plain.isEmpty())
        return Fault(Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "No coordinate is typed.")));
    if (plain.size() > longestText)
        return Fault(Tr(QT_TRANSLATE_NOOP("AxCoordinateText", "This is too long for a coordinate.")));
    if (const std::optional<Typed> grid = OfGrid(plain))
        return *grid;
    return AxTypedDegrees::Read(plain);
}

std::optional<std::array<double, 2>> TwoNumbers(const QString& text)
{
    const QString plain = AxTypedDegrees::WithPlainMarks(text);
    return plain.size() > longestText ? std::nullopt : AxTypedDegrees::TwoNumbers(plain);
}

} // namespace AxCoordinateText
