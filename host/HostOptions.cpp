#include "host/HostOptions.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>

namespace {
// What no window system exceeds; what OpenGL can draw is known once there is a window.
constexpr int largestWindow = 32767;

struct OptionText
{
    const char* name;
    const char* value;
    const char* description;
};

const OptionText optionTexts[] = {
    {"help", nullptr, QT_TRANSLATE_NOOP("HostOptions", "Show this text and end.")},
    {"tour", "DIR",
     QT_TRANSLATE_NOOP("HostOptions", "Fly to four places, write a picture of each to DIR, end.")},
    {"map", "FILE", QT_TRANSLATE_NOOP("HostOptions", "Show this map instead of the shipped ones.")},
    {"zones", "FILE",
     QT_TRANSLATE_NOOP("HostOptions", "Take the no-fly zones of this file instead of the shipped ones.")},
    {"key-file", "FILE",
     QT_TRANSLATE_NOOP("HostOptions",
                       "The zone file is sealed with the bytes of this file; without it with the environment "
                       "variable AXNOFLY_KEY, or else with the sample's key.")},
    {"apply-url", "URL",
     QT_TRANSLATE_NOOP("HostOptions",
                       "Send applications to fly in no-fly zones to this http or https address.")},
    {"blocks", "FILE",
     QT_TRANSLATE_NOOP("HostOptions", "Draw the blocks of this JSON file: [{\"name\": \"A\", \"type\": 0, "
                                      "\"anchor\": [[lon, lat], ...]}, ...].")},
    {"project", "FILE", QT_TRANSLATE_NOOP("HostOptions", "Open this project.")},
    {"size", "WxH", QT_TRANSLATE_NOOP("HostOptions", "Size of the window in pixels (1440x900).")},
    {"view", "lon,lat,alt,heading,pitch,range",
     QT_TRANSLATE_NOOP("HostOptions", "Look at this point: degrees, metres; pitch -90 is straight down.")},
    {"shot", "FILE",
     QT_TRANSLATE_NOOP("HostOptions", "Write the window's picture once it is complete, end.")},
    {"quit-after", "S", QT_TRANSLATE_NOOP("HostOptions", "End S seconds after the map was loaded.")},
    {"report", nullptr,
     QT_TRANSLATE_NOOP("HostOptions",
                       "Print a line when the map is loaded and when its picture is complete.")},
    {"log", "FILE",
     QT_TRANSLATE_NOOP("HostOptions", "Write every signal and where the camera comes to rest to FILE, one "
                                      "JSON object a line; - is the standard output.")},
    {"no-voice", nullptr,
     QT_TRANSLATE_NOOP("HostOptions",
                       "Do not speak. Runs that end by themselves (--tour, --shot, --quit-after) never do.")},
    {"lang", "LOCALE", QT_TRANSLATE_NOOP("HostOptions", "Language of the texts: en or zh_CN.")},
    {"settings", "FILE",
     QT_TRANSLATE_NOOP("HostOptions", "Keep the window's layout, the last view and the switches in this file "
                                      "instead of the usual place.")},
    {"no-settings", nullptr,
     QT_TRANSLATE_NOOP("HostOptions", "Begin with the usual window and keep nothing of it. Runs that end by "
                                      "themselves do so unless --settings names a file.")},
};

std::optional<QSize> ParseSize(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char('x'), Qt::KeepEmptyParts, Qt::CaseInsensitive);
    if (parts.size() != 2)
        return {};
    bool widthOk = false;
    bool heightOk = false;
    const QSize size(parts[0].toInt(&widthOk), parts[1].toInt(&heightOk));
    if (!widthOk || !heightOk || size.width() < 1 || size.height() < 1 || size.width() > largestWindow ||
        size.height() > largestWindow)
        return {};
    return size;
}

bool IsHttp(const QUrl& url)
{
    const bool knows = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && knows && !url.host().isEmpty();
}
} // namespace

std::optional<TourStop> ParseView(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    if (parts.size() != 6)
        return {};
    double numbers[6];
    for (int i = 0; i < 6; ++i) {
        bool ok = false;
        numbers[i] = parts[i].toDouble(&ok);
        if (!ok || !qIsFinite(numbers[i]))
            return {};
    }
    const TourStop view{"view", numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5]};
    const bool onGlobe = qAbs(view.longitude) <= 180.0 && qAbs(view.latitude) <= 90.0;
    if (!onGlobe || qAbs(view.pitch) > 90.0 || view.range <= 0.0)
        return {};
    return view;
}

std::optional<HostOptions> ParseHostOptions(const QStringList& arguments, QString& error)
{
    QCommandLineParser parser;
    for (const OptionText& text : optionTexts)
        parser.addOption(
            QCommandLineOption(QString::fromLatin1(text.name), QString(), QString::fromLatin1(text.value)));
    const auto fail = [&error](const QString& text) {
        error = text;
        return std::nullopt;
    };
    if (!parser.parse(QStringList(QStringLiteral("AxGroundControl")) + arguments))
        return fail(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return fail(
            HostOptions::tr("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst()));

    const auto value = [&parser](const char* name) { return parser.value(QLatin1String(name)); };
    const auto isSet = [&parser](const char* name) { return parser.isSet(QLatin1String(name)); };
    for (const OptionText& text : optionTexts)
        if (text.value && isSet(text.name) && value(text.name).isEmpty())
            return fail(HostOptions::tr("--%1 needs a value.").arg(QLatin1String(text.name)));

    HostOptions options;
    options.help = isSet("help");
    options.report = isSet("report");
    options.noVoice = isSet("no-voice");
    options.noSettings = isSet("no-settings");
    options.settingsFile = value("settings");
    options.logFile = value("log");
    options.tourFolder = value("tour");
    options.shotFile = value("shot");
    options.mapFile = value("map");
    if (isSet("map") && !QFileInfo(options.mapFile).isFile())
        return fail(HostOptions::tr("--map: there is no file '%1'.").arg(options.mapFile));
    options.zoneFile = value("zones");
    if (isSet("zones") && !QFileInfo(options.zoneFile).isFile())
        return fail(HostOptions::tr("--zones: there is no file '%1'.").arg(options.zoneFile));
    options.keyFile = value("key-file");
    if (isSet("apply-url")) {
        options.applyUrl = QUrl(value("apply-url"), QUrl::StrictMode);
        if (!IsHttp(options.applyUrl))
            return fail(HostOptions::tr("--apply-url: '%1' is no address such as https://example.org/apply.")
                            .arg(value("apply-url")));
    }
    if (isSet("blocks")) {
        QString reason;
        const std::optional<QList<FileBlock>> blocks = ReadBlockFile(value("blocks"), reason);
        if (!blocks)
            return fail(HostOptions::tr("--blocks: %1").arg(reason));
        options.blocks = *blocks;
    }
    options.projectFile = value("project");
    if (isSet("project") && !QFileInfo(options.projectFile).isFile())
        return fail(HostOptions::tr("--project: there is no file '%1'.").arg(options.projectFile));
    if (isSet("project") && isSet("blocks"))
        return fail(HostOptions::tr("--project and --blocks cannot go together."));
    if (isSet("size")) {
        const std::optional<QSize> size = ParseSize(value("size"));
        if (!size)
            return fail(HostOptions::tr("--size: '%1' is no size such as 1440x900.").arg(value("size")));
        options.size = *size;
    }
    if (isSet("view")) {
        options.view = ParseView(value("view"));
        if (!options.view)
            return fail(
                HostOptions::tr(
                    "--view: '%1' is not lon,lat,alt,heading,pitch,range with a place on the globe, a "
                    "pitch from -90 to 90 and a range above 0.")
                    .arg(value("view")));
    }
    if (isSet("quit-after")) {
        bool ok = false;
        const double seconds = value("quit-after").toDouble(&ok);
        if (!ok || !qIsFinite(seconds) || seconds < 0.0 || seconds > 86400.0)
            return fail(HostOptions::tr("--quit-after: '%1' is no number of seconds from 0 to 86400.")
                            .arg(value("quit-after")));
        options.quitAfterSeconds = seconds;
    }
    if (isSet("lang")) {
        options.language = value("lang");
        if (options.language != QLatin1String("en") && options.language != QLatin1String("zh_CN"))
            return fail(HostOptions::tr("--lang: '%1' is neither en nor zh_CN.").arg(options.language));
    }
    return options;
}

QString HostHelpText()
{
    QString text = HostOptions::tr("Usage: AxGroundControl [options]") + QLatin1String("\n\n");
    for (const OptionText& option : optionTexts) {
        const QString name =
            QStringLiteral("--%1 %2").arg(QLatin1String(option.name), QLatin1String(option.value)).trimmed();
        text += QStringLiteral("  %1 %2\n").arg(name, -40).arg(HostOptions::tr(option.description));
    }
    return text;
}
