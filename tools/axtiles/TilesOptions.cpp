#include "TilesOptions.h"

#include "TilesText.h"

#include <AxAlgorthm/AxAreaOperations.h>
#include <AxData/geofiles/AxGeoFile.h>

#include <QCommandLineParser>
#include <QFileInfo>
#include <QLocale>

namespace {
QString Overview()
{
    return TilesText::tr(
        "Fetches the tiles of an area into one MBTiles file, which AxEarthViewer and other programs show "
        "without a network.\n"
        "\n"
        "  axtiles --area -105.3,37.2,-104.8,37.6 --levels 8-15 \\\n"
        "          \"https://tiles.example.org/{z}/{x}/{y}.png\" peaks.mbtiles\n"
        "  axtiles --outline field.kml --margin 500 --levels 12-18 ADDRESS field.mbtiles\n"
        "  axtiles --estimate ...        tells how many tiles and megabytes that would be\n"
        "\n"
        "In the address {z} stands for the level, {x} for the column, {y} for the row from the north, {-y} "
        "for the row from the south, {s} for one of the hosts a, b and c, [1234] for one of these letters. "
        "The service has to be in Web Mercator.\n"
        "\n"
        "The same command goes on where it was broken off, by Ctrl+C, a lost network or a power cut: tiles "
        "that are in the file are not asked for again. The service is asked by few requests at once and left "
        "alone as long as it asks for. Whether it may be fetched from in this way is in its terms of use; "
        "many forbid it.\n"
        "\n"
        "A proxy is taken from the system (http_proxy, https_proxy).\n"
        "\n"
        "The program ends with 0 when all that the service has is in the file, 1 when it failed and there "
        "is no file to go on with, 2 when it was called wrongly, 3 when a part is in the file and the same "
        "command will go on.");
}

bool ReadLevels(const QString& text, AxTileJob& job)
{
    const QStringList parts = text.split(QLatin1Char('-'));
    bool isFirst = false;
    bool isLast = false;
    job.firstLevel = parts.constFirst().toInt(&isFirst);
    job.lastLevel = parts.constLast().toInt(&isLast);
    return isFirst && isLast && parts.size() <= 2;
}

bool ReadOutline(const QString& file, double margin, AxTileJob& job, QString& error)
{
    const AxGeoContent content = AxReadGeoFile(file);
    if (!content.fault.isEmpty()) {
        error = content.fault;
        return false;
    }
    QList<QList<QPointF>> rings;
    for (const AxGeoShape& shape : content.shapes) {
        if (shape.kind != AxGeoShape::Area)
            continue;
        if (margin <= 0.0) {
            rings += shape.points;
            continue;
        }
        const AxAreaOperations::Result grown = AxAreaOperations::Buffer(shape.points, margin);
        for (const AxAreaOperations::Area& area : grown.areas)
            rings += area.ring;
        if (grown.areas.isEmpty()) {
            error = TilesText::tr("\"%1\": no margin can be put around \"%2\".").arg(file, shape.name);
            return false;
        }
    }
    const std::optional<AxTileArea> area = AxTileArea::OfRings(rings);
    if (area)
        job.area = *area;
    else
        error = TilesText::tr("\"%1\" has no area in it.").arg(file);
    return area.has_value();
}

/// A whole number that an option has; false, with what is wrong, for anything else.
template <typename Number>
bool ReadNumber(const QCommandLineParser& parser, const char* name, qint64 least, qint64 most, Number& value,
                QString& error)
{
    const QString option = QLatin1String(name);
    if (!parser.isSet(option))
        return true;
    bool isNumber = false;
    const qint64 number = QLocale::c().toLongLong(parser.value(option), &isNumber);
    if (!isNumber || number < least || number > most) {
        error = TilesText::tr("--%1 is a whole number from %2 to %3.").arg(option).arg(least).arg(most);
        return false;
    }
    value = static_cast<Number>(number);
    return true;
}

void AddOptions(QCommandLineParser& parser)
{
    const auto add = [&parser](const char* name, const QString& description, const QString& value = {}) {
        parser.addOption(QCommandLineOption(QLatin1String(name), description, value));
    };
    add("area",
        TilesText::tr("A rectangle of degrees; it crosses 180 degrees where its east is less than "
                      "its west."),
        QStringLiteral("west,south,east,north"));
    add("outline", TilesText::tr("The areas of a file: KML, KMZ, GeoJSON, Shapefile, GeoPackage, DXF."),
        TilesText::tr("file"));
    add("margin", TilesText::tr("Metres around the areas of --outline."), TilesText::tr("metres"));
    add("levels", TilesText::tr("From the coarse one to the fine one, 0 to %1.").arg(axMostTileLevel),
        QStringLiteral("8-16"));
    add("name", TilesText::tr("Name of the map; otherwise the one in the file, or that of the file."),
        TilesText::tr("text"));
    add("attribution",
        TilesText::tr("Whose pictures they are; kept in the file, also when it is gone on with."),
        TilesText::tr("text"));
    add("parallel", TilesText::tr("Requests at once, 1 to %1; otherwise 4.").arg(axMostTilesAtOnce),
        TilesText::tr("number"));
    add("timeout", TilesText::tr("Seconds of silence that are waited for; otherwise 20."),
        TilesText::tr("seconds"));
    add("most", TilesText::tr("No more tiles than this; otherwise 100000."), TilesText::tr("number"));
    add("user-agent", TilesText::tr("Who asks, told to the service: a name and a way to reach you."),
        TilesText::tr("text"));
    add("retry-missing", TilesText::tr("Ask again for tiles that the file knows to be missing."));
    add("estimate", TilesText::tr("Ask for a few tiles, tell how many tiles and megabytes there are, and "
                                  "write nothing."));
    add("quiet", TilesText::tr("Say nothing but what is wrong."));
    add("progress", TilesText::tr("Say how far it is, even when not on a terminal."));
}
} // namespace

bool ReadTilesOptions(const QStringList& arguments, TilesOptions& options, QString& error)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(Overview());
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("address"), TilesText::tr("Of the tile service."));
    parser.addPositionalArgument(QStringLiteral("file"), TilesText::tr("The MBTiles file."));
    AddOptions(parser);
    const auto refuse = [&error](const QString& reason) {
        error = reason;
        return false;
    };
    if (!parser.parse(arguments))
        return refuse(parser.errorText());
    if (parser.isSet(help))
        parser.showHelp();
    if (parser.isSet(version))
        parser.showVersion();
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 2)
        return refuse(TilesText::tr("An address and a file are needed; --help tells more."));
    AxTileJob& job = options.job;
    job.service.address = positional[0];
    job.file = positional[1];
    job.name = parser.value(QStringLiteral("name"));
    job.service.attribution = parser.value(QStringLiteral("attribution"));
    job.userAgent = parser.value(QStringLiteral("user-agent")).toUtf8();
    job.isMissingAskedAgain = parser.isSet(QStringLiteral("retry-missing"));
    options.isEstimateOnly = parser.isSet(QStringLiteral("estimate"));
    options.isQuiet = parser.isSet(QStringLiteral("quiet"));
    options.isTalkative = parser.isSet(QStringLiteral("progress"));
    if (parser.isSet(QStringLiteral("area")) == parser.isSet(QStringLiteral("outline")))
        return refuse(TilesText::tr("Either --area or --outline is needed."));
    if (!parser.isSet(QStringLiteral("levels")) || !ReadLevels(parser.value(QStringLiteral("levels")), job))
        return refuse(TilesText::tr("--levels is needed, as in --levels 8-16."));
    constexpr int mostSeconds = 600;
    constexpr int msOfSecond = 1000;
    int seconds = job.timeoutMs / msOfSecond;
    qint64 margin = 0;
    if (!ReadNumber(parser, "parallel", 1, axMostTilesAtOnce, job.atOnce, error) ||
        !ReadNumber(parser, "timeout", 1, mostSeconds, seconds, error) ||
        !ReadNumber(parser, "most", 1, axMostTilesOfJob, job.mostTiles, error) ||
        !ReadNumber(parser, "margin", 0, 100000, margin, error))
        return false;
    job.timeoutMs = seconds * msOfSecond;
    if (parser.isSet(QStringLiteral("area"))) {
        const std::optional<AxTileArea> area = AxTileArea::OfText(parser.value(QStringLiteral("area")));
        if (!area)
            return refuse(TilesText::tr("--area is west,south,east,north in degrees."));
        job.area = *area;
    } else if (!ReadOutline(parser.value(QStringLiteral("outline")), static_cast<double>(margin), job,
                            error)) {
        return false;
    }
    // That is the question.
    if (options.isEstimateOnly)
        job.mostTiles = axMostTilesOfJob;
    error = AxTileJobFault(job);
    return error.isEmpty();
}
