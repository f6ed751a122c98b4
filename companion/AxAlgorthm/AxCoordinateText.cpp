// Writing places; AxCoordinateParse.cpp reads them.
#include <AxAlgorthm/AxCoordinateText.h>

#include <GeographicLib/Math.hpp>
#include <GeographicLib/MGRS.hpp>
#include <GeographicLib/UTMUPS.hpp>

#include <cmath>

namespace AxCoordinateText {
namespace {
constexpr int decimalsOfDegrees = 6;
constexpr int decimalsOfSeconds = 2;
constexpr int decimalsOfMetres = 1;
constexpr int digitsOfMgrs = 5; // metres
constexpr double southOfBandS = 3.5e6;
constexpr double northOfBandS = 4.5e6;

bool IsPlace(double latitude, double longitude)
{
    return std::isfinite(longitude) && std::abs(latitude) <= 90.0;
}

struct InZone
{
    int zone = 0; // 0: polar stereographic
    bool isNorth = true;
    double easting = 0.0;
    double northing = 0.0;
};

InZone Project(double latitude, double longitude)
{
    InZone to;
    GeographicLib::UTMUPS::Forward(latitude, GeographicLib::Math::AngNormalize(longitude), to.zone,
                                   to.isNorth, to.easting, to.northing);
    return to;
}
} // namespace

QString WriteDms(double degrees, bool isLatitude)
{
    // Whole hundredths of seconds first, so that no seconds are rounded up to 60.
    constexpr qint64 partsOfSecond = 100;
    constexpr qint64 partsOfMinute = 60 * partsOfSecond;
    constexpr qint64 partsOfDegree = 60 * partsOfMinute;
    const double within = isLatitude ? degrees : GeographicLib::Math::AngNormalize(degrees);
    const qint64 parts = qRound64(std::abs(within) * double(partsOfDegree));
    const char letter = isLatitude ? (within < 0.0 ? 'S' : 'N') : (within < 0.0 ? 'W' : 'E');
    return QString::fromUtf8("%1\302\260%2'%3\"%4")
        .arg(parts / partsOfDegree, isLatitude ? 2 : 3, 10, QLatin1Char('0'))
        .arg(parts % partsOfDegree / partsOfMinute, 2, 10, QLatin1Char('0'))
        .arg(double(parts % partsOfMinute) / double(partsOfSecond), decimalsOfSeconds + 3, 'f',
             decimalsOfSeconds, QLatin1Char('0'))
        .arg(QLatin1Char(letter));
}

std::optional<Grid> ToGrid(double latitude, double longitude)
{
    if (!IsPlace(latitude, longitude))
        return std::nullopt;
    const InZone to = Project(latitude, longitude);
    // A reader could take S for the latitude band on the northern hemisphere.
    const bool isLikeBand = to.northing > southOfBandS && to.northing < northOfBandS;
    const QString side = to.isNorth
                             ? QStringLiteral("N")
                             : (isLikeBand && to.zone != 0 ? QStringLiteral(" south") : QStringLiteral("S"));
    const QString zone = to.zone == 0 ? QStringLiteral("UPS ") : QString::number(to.zone);
    return Grid{zone + side, to.easting, to.northing};
}

QString Write(double latitude, double longitude, Form form)
{
    if (!IsPlace(latitude, longitude))
        return QString();
    switch (form) {
    case Form::Decimal:
        return QString::number(latitude, 'f', decimalsOfDegrees) + QStringLiteral(", ") +
               QString::number(GeographicLib::Math::AngNormalize(longitude), 'f', decimalsOfDegrees);
    case Form::Dms:
        return WriteDms(latitude, true) + QLatin1Char(' ') + WriteDms(longitude, false);
    case Form::Utm: {
        const std::optional<Grid> grid = ToGrid(latitude, longitude);
        return grid->zone + QLatin1Char(' ') + QString::number(grid->easting, 'f', decimalsOfMetres) +
               QLatin1Char(' ') + QString::number(grid->northing, 'f', decimalsOfMetres);
    }
    case Form::Mgrs:
        break;
    }
    const InZone to = Project(latitude, longitude);
    std::string text;
    GeographicLib::MGRS::Forward(to.zone, to.isNorth, to.easting, to.northing, latitude, digitsOfMgrs, text);
    QString grouped = QString::fromStdString(text);
    const int digits = grouped.size() - 2 * digitsOfMgrs;
    grouped.insert(digits + digitsOfMgrs, QLatin1Char(' '));
    grouped.insert(digits, QLatin1Char(' '));
    grouped.insert(digits - 2, QLatin1Char(' '));
    return grouped;
}

} // namespace AxCoordinateText
