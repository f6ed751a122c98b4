#include "analysis/volume/AxVolumeText.h"

#include <AxAlgorthm/AxRoundStep.h>
#include <AxAlgorthm/AxUnits.h>
#include <AxData/planner/AxPlanPlane.h>

#include <QCoreApplication>
#include <QIODevice>
#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace {
class VolumeTr
{
    Q_DECLARE_TR_FUNCTIONS(AxVolumeText)
};

constexpr int stepsOfPicture = 5;

// Heights are metric in every system of units.
QString MetresText(double metres)
{
    return VolumeTr::tr("%1 m").arg(QString::number(metres, 'f', 2));
}

QString CountText(double cells)
{
    return QLocale(QLocale::English).toString(cells, 'f', 0).replace(QLatin1Char(','), QLatin1Char(' '));
}

QString SignedMetres(double metres)
{
    const QString text = MetresText(std::abs(metres));
    const bool isZero = text == MetresText(0.0);
    return isZero ? text : (metres > 0.0 ? QLatin1Char('+') : QLatin1Char('-')) + text;
}

QString BaseText(const AxVolume& volume)
{
    const QString name = AxVolumeBaseText(volume.question.base);
    // A level one has one height.
    constexpr double centimetre = 0.01;
    return volume.baseHigh - volume.baseLow < centimetre
               ? VolumeTr::tr("%1 (%2)").arg(name, MetresText(volume.baseLow))
               : VolumeTr::tr("%1 (%2 to %3)")
                     .arg(name, MetresText(volume.baseLow), MetresText(volume.baseHigh));
}

std::uint8_t Mixed(int from, int to, int step)
{
    return static_cast<std::uint8_t>(from + (to - from) * step / (stepsOfPicture - 1));
}

/// So that the most is within so many of them.
double StepOf(const AxVolume& volume)
{
    constexpr double finest = 0.01; // metres
    return AxRoundStepAbove(
        std::max({finest, volume.highest / stepsOfPicture, -volume.deepest / stepsOfPicture}));
}

/// Above the base, below it, and not known.
std::vector<AxGeoRaster::Class> ClassesOf(const AxVolume& volume)
{
    std::vector<AxGeoRaster::Class> classes;
    classes.reserve(2 * stepsOfPicture + 1);
    const double step = StepOf(volume);
    const auto name = [step](const QString& text, int number) {
        return text.arg(QString::number(number * step, 'g', 6), QString::number((number + 1) * step, 'g', 6));
    };
    // From light to dark: told apart without telling red from blue, too.
    for (int i = 0; i < stepsOfPicture; ++i)
        classes.push_back({name(VolumeTr::tr("%1 to %2 m above"), i),
                           {Mixed(255, 120, i), Mixed(190, 0, i), Mixed(160, 20, i)}});
    for (int i = 0; i < stepsOfPicture; ++i)
        classes.push_back({name(VolumeTr::tr("%1 to %2 m below"), i),
                           {Mixed(170, 10, i), Mixed(205, 30, i), Mixed(255, 130, i)}});
    classes.push_back({VolumeTr::tr("not known"), {150, 150, 150}});
    return classes;
}

double BaseAt(const AxVolume& volume, std::size_t at)
{
    return static_cast<double>(volume.grid->heights[at]) - static_cast<double>(volume.differences[at]);
}
} // namespace

QString AxVolumeBaseKey(AxVolumeBase base)
{
    const char* const keys[] = {"plane", "surface", "mean", "lowest", "highest", "height"};
    return QLatin1String(keys[static_cast<std::size_t>(base)]);
}

QVector<AxVolumeBase> AxVolumeBases()
{
    return {AxVolumeBase::PlaneOfRim,  AxVolumeBase::SurfaceOfRim, AxVolumeBase::MeanOfRim,
            AxVolumeBase::LowestOfRim, AxVolumeBase::HighestOfRim, AxVolumeBase::Height};
}

QString AxVolumeBaseText(AxVolumeBase base)
{
    switch (base) {
    case AxVolumeBase::PlaneOfRim:
        return VolumeTr::tr("Plane through the rim");
    case AxVolumeBase::SurfaceOfRim:
        return VolumeTr::tr("Surface through the rim");
    case AxVolumeBase::MeanOfRim:
        return VolumeTr::tr("Mean height of the rim");
    case AxVolumeBase::LowestOfRim:
        return VolumeTr::tr("Lowest place of the rim");
    case AxVolumeBase::HighestOfRim:
        return VolumeTr::tr("Highest place of the rim");
    case AxVolumeBase::Height:
        return VolumeTr::tr("Given height");
    }
    return {};
}

QString AxVolumeSizeText(const AxVolumeSize& size)
{
    return VolumeTr::tr("%1 cells, about %2 MB")
        .arg(CountText(size.cells), QString::number(std::ceil(size.megabytes), 'f', 0));
}

QString AxVolumeFaultText(AxVolumeFault fault, const AxVolumeQuestion& question)
{
    switch (fault) {
    case AxVolumeFault::NoArea:
        return VolumeTr::tr("The outline has no area, or crosses itself.");
    case AxVolumeFault::TooLarge:
        return VolumeTr::tr("The area is more than %1 across.").arg(AxUnits::Length(2.0 * axWidestVolume));
    case AxVolumeFault::WrongNumber:
        return VolumeTr::tr("The cell or the height is no number that it may be.");
    case AxVolumeFault::Coarse:
        return VolumeTr::tr("The cells are too large for the width of the area: %1 m or less will do.")
            .arg(QString::number(AxCoarsestVolumeCellOf(question.ring), 'g', 3));
    case AxVolumeFault::Many:
        return VolumeTr::tr("The grid is large (%1): it is computed only when that is agreed to.")
            .arg(AxVolumeSizeText(AxVolumeSizeOf(question)));
    case AxVolumeFault::TooMany:
        return VolumeTr::tr("The cells are too small for this area: it would have %1. There may be %2 cells.")
            .arg(AxVolumeSizeText(AxVolumeSizeOf(question)), CountText(axMostVolumeCells));
    case AxVolumeFault::NoGround:
        return VolumeTr::tr("No height of the ground in the area is known.");
    case AxVolumeFault::NoRim:
        return VolumeTr::tr("Too few heights of the ground below the outline are known.");
    case AxVolumeFault::NoMemory:
        return VolumeTr::tr("The memory does not suffice. Choose larger cells, or remove other volumes.");
    case AxVolumeFault::Interrupted:
        return VolumeTr::tr("Called off.");
    case AxVolumeFault::None:
        break;
    }
    return {};
}

QVector<QPair<QString, QString>> AxVolumeFigures(const AxVolume& volume)
{
    if (volume.fault != AxVolumeFault::None)
        return {};
    QVector<QPair<QString, QString>> rows{
        {VolumeTr::tr("Cut"), AxUnits::Volume(volume.cut)},
        {VolumeTr::tr("Fill"), AxUnits::Volume(volume.fill)},
        {VolumeTr::tr("Cut less fill"), AxUnits::SignedVolume(volume.Net())},
        {VolumeTr::tr("Error by cells"), std::isfinite(volume.cellError)
                                             ? VolumeTr::tr("up to %1").arg(AxUnits::Volume(volume.cellError))
                                             : VolumeTr::tr("not known")},
        {VolumeTr::tr("Area"), AxUnits::Area(volume.area)},
        {VolumeTr::tr("Base"), BaseText(volume)},
        {VolumeTr::tr("Mean above base"), SignedMetres(volume.mean)},
        {VolumeTr::tr("Highest above base"), SignedMetres(volume.highest)},
        {VolumeTr::tr("Lowest above base"), SignedMetres(volume.deepest)},
        {VolumeTr::tr("Cell size"), MetresText(volume.question.cell)}};
    if (volume.IsRimMissing())
        rows.insert(
            3, {VolumeTr::tr("Rim"), VolumeTr::tr("%1 % of it has no known height: the base is of the rest")
                                         .arg(QString::number(100.0 * (1.0 - volume.rimKnown), 'f', 1))});
    if (volume.unknown > 0.0)
        rows.insert(
            3, {VolumeTr::tr("Not known"), VolumeTr::tr("%1 % of the area (%2) has no known height")
                                               .arg(QString::number(100.0 * volume.UnknownShare(), 'f', 1),
                                                    AxUnits::Area(volume.unknown))});
    return rows;
}

QString AxVolumeReport(const AxVolume& volume)
{
    QStringList lines;
    for (const auto& [name, value] : AxVolumeFigures(volume))
        lines += VolumeTr::tr("%1: %2").arg(name, value);
    return lines.join(QLatin1Char('\n'));
}

std::vector<AxGeoRaster::Class> AxVolumeLegend(const AxVolume& volume)
{
    std::vector<AxGeoRaster::Class> classes = ClassesOf(volume);
    const double step = StepOf(volume);
    const auto used = [step](double most) {
        return most > 0.0 ? std::min(stepsOfPicture, 1 + static_cast<int>(most / step)) : 0;
    };
    if (!(volume.unknown > 0.0))
        classes.pop_back();
    const auto below = classes.begin() + stepsOfPicture;
    classes.erase(below + used(-volume.deepest), below + stepsOfPicture);
    classes.erase(classes.begin() + used(volume.highest), classes.begin() + stepsOfPicture);
    std::reverse(classes.begin(), classes.begin() + used(volume.highest));
    return classes;
}

AxGeoRaster AxVolumeRaster(const AxVolume& volume, const std::atomic<bool>* isOff)
{
    AxGeoRaster raster;
    if (!volume.grid || volume.fault != AxVolumeFault::None)
        return raster;
    raster.middle = volume.grid->middle;
    raster.columns = volume.grid->columns;
    raster.rows = volume.grid->rows;
    raster.cell = volume.grid->cell;
    raster.classes = ClassesOf(volume);
    raster.values.assign(volume.grid->kinds.size(), 0);
    const double step = StepOf(volume);
    const auto classify = [&](std::size_t at, double, double, double) {
        const auto difference = static_cast<double>(volume.differences[at]);
        if (std::isnan(difference)) {
            raster.values[at] = static_cast<std::uint8_t>(2 * stepsOfPicture + 1);
            return;
        }
        if (difference == 0.0)
            return; // neither cut nor fill
        const int number = std::min(stepsOfPicture - 1, static_cast<int>(std::abs(difference) / step));
        raster.values[at] = static_cast<std::uint8_t>(1 + number + (difference > 0.0 ? 0 : stepsOfPicture));
    };
    if (!volume.grid->EachCell(classify, [isOff](double) { return !isOff || !*isOff; }))
        return {};
    return raster;
}

AxGeoField AxVolumeField(const AxVolume& volume)
{
    AxGeoField field;
    if (!volume.grid || volume.fault != AxVolumeFault::None)
        return field;
    const AxVolumeGrid& grid = *volume.grid;
    field.middle = grid.middle;
    field.columns = grid.columns;
    field.rows = grid.rows;
    field.cell = grid.cell;
    const auto rowOf = [columns = static_cast<std::size_t>(grid.columns)](const std::vector<float>& from) {
        return [columns, &from](int row, float* values) {
            std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(row) * columns),
                        columns, values);
        };
    };
    const auto baseRow = [columns = static_cast<std::size_t>(grid.columns), &volume](int row, float* values) {
        for (std::size_t column = 0; column < columns; ++column)
            values[column] =
                static_cast<float>(BaseAt(volume, static_cast<std::size_t>(row) * columns + column));
    };
    field.bands = {{QStringLiteral("difference"), rowOf(volume.differences)},
                   {QStringLiteral("ground"), rowOf(grid.heights)},
                   {QStringLiteral("base"), baseRow}};
    const auto fact = [&field](const char* key, double value) {
        field.facts[QLatin1String(key)] = QString::number(value, 'g', 12);
    };
    field.facts[QStringLiteral("BASE")] = AxVolumeBaseKey(volume.question.base);
    fact("CUT_M3", volume.cut);
    fact("FILL_M3", volume.fill);
    fact("CELL_ERROR_M3", volume.cellError);
    fact("AREA_M2", volume.area);
    fact("UNKNOWN_M2", volume.unknown);
    fact("RIM_KNOWN", volume.rimKnown);
    fact("BASE_LOW_M", volume.baseLow);
    fact("BASE_HIGH_M", volume.baseHigh);
    return field;
}

bool AxWriteVolumeTable(QIODevice& device, const AxVolume& volume, const std::atomic<bool>& isOff)
{
    const auto isWritten = [&device](const QByteArray& text) { return device.write(text) == text.size(); };
    if (!isWritten("longitude,latitude,area_m2,ground_m,base_m,difference_m\r\n"))
        return false;
    if (!volume.grid)
        return true;
    const AxPlanPlane plane({volume.grid->middle});
    const double cellArea = volume.grid->cell * volume.grid->cell;
    constexpr int degreeDecimals = 9;
    constexpr int metreDecimals = 3;
    // Cells may be centimetres wide, and their parts less.
    constexpr int areaDigits = 9;
    constexpr int piece = 1 << 16;
    QByteArray text;
    bool isGood = true;
    const auto write = [&](std::size_t at, double x, double y, double share) {
        const QPointF place = plane.ToLngLat({x, y});
        const auto metres = [](double value) {
            return std::isfinite(value) ? QByteArray::number(value, 'f', metreDecimals) : QByteArray();
        };
        text += QByteArray::number(place.x(), 'f', degreeDecimals) + ',' +
                QByteArray::number(place.y(), 'f', degreeDecimals) + ',' +
                QByteArray::number(share * cellArea, 'g', areaDigits) + ',' +
                metres(static_cast<double>(volume.grid->heights[at])) + ',' + metres(BaseAt(volume, at)) +
                ',' + metres(static_cast<double>(volume.differences[at])) + "\r\n";
        if (text.size() > piece) {
            isGood = isGood && isWritten(text);
            text.clear();
        }
    };
    return volume.grid->EachCell(write, [&](double) { return isGood && !isOff; }) && isGood &&
           isWritten(text);
}
