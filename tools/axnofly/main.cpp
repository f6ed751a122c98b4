#include "Commands.h"
#include "Progress.h"
#include "ToolText.h"

#include <AxData/CAxNoflyZoneMgr.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QLoggingCategory>
#include <QTextStream>
#include <QTranslator>

#include <memory>

namespace {
void InstallTranslations()
{
    if (QLocale::system().language() != QLocale::Chinese)
        return;
    const QDir texts(QStringLiteral(":/axnofly"));
    for (const QString& file : texts.entryList({QStringLiteral("*.qm")})) {
        auto* const translator = new QTranslator(QCoreApplication::instance());
        if (translator->load(texts.filePath(file)))
            QCoreApplication::installTranslator(translator);
    }
}

QString Overview()
{
    return ToolText::tr(
        "Makes and looks after the file in which AxEarthViewer keeps its no-fly zones.\n"
        "\n"
        "  axnofly build --zones zones.csv --lifts lifts.geojson NoflyZone.db\n"
        "  axnofly list NoflyZone.db\n"
        "  axnofly check NoflyZone.db\n"
        "  axnofly open NoflyZone.db plain.db      (then change plain.db with any SQLite program)\n"
        "  axnofly seal plain.db NoflyZone.db\n"
        "\n"
        "build  writes a zone file from tables or shapes: CSV (also .csv.gz), GeoJSON, KML, Shapefile\n"
        "       and what else GDAL reads. A zone has an id (field local_id, id or name) and a shape: the\n"
        "       feature's own, or the fields lng and lat, or the field area (\"lng,lat|lng,lat|...\").\n"
        "       A point is a circle of 8 km; a field radius, in metres, makes it another circle.\n"
        "       Field enable: 1 or 0.\n"
        "       A lift frees its shape inside the zones that its field local_ids names (ids with "
        "commas);\n"
        "       further fields begin_at, expired_at, user_id and status (2 is granted, the default).\n"
        "       What cannot be used is named with its line, or feature, and field; the rest is written.\n"
        "list   prints the zones, or with --show-lifts the lifts, one a line.\n"
        "check  prints everything doubtful about a zone file.\n"
        "seal   enciphers a plain zone database.   open   does the reverse.\n"
        "\n"
        "The key is that of the shipped sample unless --key-file names a file or the environment "
        "variable\n"
        "AXNOFLY_KEY holds one. Programs that use the viewer name theirs with "
        "CAxNoflyZoneMgr::SetNoflyKey().\n"
        "\n"
        "The program ends with 0 when all is well, 1 when it failed, 2 when it was called wrongly, 3 "
        "when\n"
        "check found something or build --strict could not use something.");
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("axnofly"));
    QCoreApplication::setApplicationVersion(QStringLiteral(AX_VERSION));
    InstallTranslations();
    // What fails is said once, by this program.
    QLoggingCategory::setFilterRules(QStringLiteral("ax.data=false"));

    QCommandLineParser parser;
    parser.setApplicationDescription(Overview());
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("command"), ToolText::tr("build, list, check, seal or open"));
    parser.addPositionalArgument(QStringLiteral("files"),
                                 ToolText::tr("The zone file; for seal and open source and target."),
                                 QStringLiteral("file..."));
    const QCommandLineOption zones(QStringLiteral("zones"),
                                   ToolText::tr("build: a file of zones; may be repeated."),
                                   ToolText::tr("file"));
    const QCommandLineOption lifts(QStringLiteral("lifts"),
                                   ToolText::tr("build: a file of lifts; may be repeated."),
                                   ToolText::tr("file"));
    const QCommandLineOption airports(
        QStringLiteral("airports"),
        ToolText::tr("build: a table of airports (icao, type, lat, lon, runways), each of which becomes a "
                     "zone; may be repeated."),
        ToolText::tr("file"));
    const QCommandLineOption plain(QStringLiteral("plain"), ToolText::tr("build: do not seal the file."));
    const QCommandLineOption strict(QStringLiteral("strict"),
                                    ToolText::tr("build: write nothing unless everything can be used."));
    const QCommandLineOption quiet(
        QStringLiteral("quiet"),
        ToolText::tr("build: print counts only, not each thing that cannot be used."));
    const QCommandLineOption showLifts(QStringLiteral("show-lifts"), ToolText::tr("list: the lifts."));
    const QCommandLineOption around(QStringLiteral("near"),
                                    ToolText::tr("list: only zones whose middle is near a place."),
                                    ToolText::tr("lng,lat,km"));
    const QCommandLineOption keyFile(QStringLiteral("key-file"),
                                     ToolText::tr("The file whose bytes are the key."), ToolText::tr("file"));
    const QCommandLineOption showProgress(
        QStringLiteral("progress"), ToolText::tr("Say how far the work is, even when not on a terminal."));
    parser.addOptions(
        {zones, lifts, airports, plain, strict, quiet, showLifts, around, keyFile, showProgress});
    parser.process(application);

    const QStringList arguments = parser.positionalArguments();
    const QString command = arguments.value(0);
    const QStringList files = arguments.mid(1);
    const bool needsTwo = command == QLatin1String("seal") || command == QLatin1String("open");
    if (command.isEmpty())
        return Complain(WrongUse,
                        ToolText::tr("Say what to do: build, list, check, seal or open; --help tells more."));
    if (files.size() != (needsTwo ? 2 : 1))
        return Complain(WrongUse, needsTwo ? ToolText::tr("%1 needs a source and a target.").arg(command)
                                           : ToolText::tr("%1 needs one zone file.").arg(command));
    QString error;
    if (!CAxNoflyZoneMgr::TakeNoflyKey(parser.value(keyFile), error))
        return Complain(Failed, error);

    Progress progress(parser.isSet(showProgress) ? Progress::Kind::Always : Progress::Kind::Automatic);
    if (command == QLatin1String("build")) {
        const BuildJob job{files.at(0),          parser.values(airports), parser.values(zones),
                           parser.values(lifts), !parser.isSet(plain),    parser.isSet(strict),
                           parser.isSet(quiet)};
        return Build(job, progress);
    }
    if (command == QLatin1String("list"))
        return List({files.at(0), parser.isSet(showLifts), parser.value(around)});
    if (command == QLatin1String("check"))
        return Check(files.at(0), progress);
    if (command == QLatin1String("seal"))
        return Seal(files.at(0), files.at(1));
    if (command == QLatin1String("open"))
        return Open(files.at(0), files.at(1));
    return Complain(WrongUse,
                    ToolText::tr("\"%1\" is no command: build, list, check, seal or open.").arg(command));
}
