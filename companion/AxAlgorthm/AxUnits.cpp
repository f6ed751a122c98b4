#include <AxAlgorthm/AxUnits.h>

#include <QCoreApplication>
#include <QLocale>

#include <atomic>
#include <cmath>

namespace AxUnits {
namespace {
std::atomic<System> chosen{System::Metric};

constexpr double metresOfFoot = 0.3048;
constexpr double metresOfMile = 1609.344;
constexpr double metresOfKilometre = 1000.0;
constexpr double squareMetresOfAcre = 4046.8564224;
constexpr double squareMetresOfHectare = 1.0e4;
constexpr double squareMetresOfMu = squareMetresOfHectare / 15.0;
constexpr double leastInSquareKilometres = 1.0e4; // square metres
// Below that share of an acre or a mu the smaller unit tells more.
constexpr double leastShare = 0.1;

QString Tr(const char* text)
{
    return QCoreApplication::translate("AxUnits", text);
}

QString Number(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}
} // namespace

void Set(System system)
{
    chosen = system;
}

System Get()
{
    return chosen;
}

QString Length(double metres)
{
    if (Get() == System::Imperial)
        return metres < metresOfMile
                   ? Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 ft")).arg(Number(metres / metresOfFoot, 1))
                   : Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 mi")).arg(Number(metres / metresOfMile, 3));
    return metres < metresOfKilometre
               ? Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 m")).arg(Number(metres, 1))
               : Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 km")).arg(Number(metres / metresOfKilometre, 3));
}

QString Area(double squareMetres)
{
    constexpr double squareMile = metresOfMile * metresOfMile;
    constexpr double squareKilometre = metresOfKilometre * metresOfKilometre;
    constexpr double squareFoot = metresOfFoot * metresOfFoot;
    constexpr double fewSquares = 10.0;
    const auto inSquares = [](const char* text, double value) {
        return Tr(text).arg(Number(value, value < fewSquares ? 2 : 0));
    };
    switch (Get()) {
    case System::Imperial:
        if (squareMetres < leastShare * squareMetresOfAcre)
            return inSquares(QT_TRANSLATE_NOOP("AxUnits", "%1 ft\302\262"), squareMetres / squareFoot);
        return squareMetres < squareMile ? Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 ac"))
                                               .arg(Number(squareMetres / squareMetresOfAcre, 3))
                                         : Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 mi\302\262"))
                                               .arg(Number(squareMetres / squareMile, 3));
    case System::Mu:
        if (squareMetres >= leastShare * squareMetresOfMu)
            return Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 mu (%2 ha)"))
                .arg(Number(squareMetres / squareMetresOfMu, 2),
                     Number(squareMetres / squareMetresOfHectare, 4));
        break;
    case System::Metric:
        break;
    }
    return squareMetres < leastInSquareKilometres
               ? inSquares(QT_TRANSLATE_NOOP("AxUnits", "%1 m\302\262"), squareMetres)
               : Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 km\302\262"))
                     .arg(Number(squareMetres / squareKilometre, 3));
}

QString Volume(double cubicMetres)
{
    // Earth is counted in yards.
    constexpr double metresOfYard = 3.0 * metresOfFoot;
    constexpr double few = 10.0;
    const bool isImperial = Get() == System::Imperial;
    const double value =
        isImperial ? cubicMetres / (metresOfYard * metresOfYard * metresOfYard) : cubicMetres;
    constexpr double many = 9999.5;
    QString number = Number(value, std::abs(value) < few ? 2 : 0);
    if (std::abs(value) >= many)
        number =
            QLocale(QLocale::English).toString(value, 'f', 0).replace(QLatin1Char(','), QLatin1Char(' '));
    return isImperial ? Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 yd\302\263")).arg(number)
                      : Tr(QT_TRANSLATE_NOOP("AxUnits", "%1 m\302\263")).arg(number);
}

QString SignedVolume(double cubicMetres)
{
    const QString text = Volume(std::abs(cubicMetres));
    const bool isZero = text == Volume(0.0);
    return isZero ? text : (cubicMetres > 0.0 ? QLatin1Char('+') : QLatin1Char('-')) + text;
}

Unit OfWidths()
{
    return Get() == System::Imperial ? Unit{Tr(QT_TRANSLATE_NOOP("AxUnits", "ft")), metresOfFoot}
                                     : Unit{Tr(QT_TRANSLATE_NOOP("AxUnits", "m")), 1.0};
}

Unit OfDistances()
{
    return Get() == System::Imperial ? Unit{Tr(QT_TRANSLATE_NOOP("AxUnits", "mi")), metresOfMile}
                                     : Unit{Tr(QT_TRANSLATE_NOOP("AxUnits", "km")), metresOfKilometre};
}

Unit OfAreas()
{
    switch (Get()) {
    case System::Imperial:
        return {Tr(QT_TRANSLATE_NOOP("AxUnits", "ac")), squareMetresOfAcre};
    case System::Mu:
        return {Tr(QT_TRANSLATE_NOOP("AxUnits", "mu")), squareMetresOfMu};
    case System::Metric:
        break;
    }
    return {Tr(QT_TRANSLATE_NOOP("AxUnits", "km^2")), metresOfKilometre * metresOfKilometre};
}

} // namespace AxUnits
