#pragma once
#include "host/BlockFile.h"
#include "host/TourStops.h"

#include <QCoreApplication>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

/// Status of the process when the command line or a file that it names cannot be used.
constexpr int exitWrongUse = 2;

/// What the command line asks for.
struct HostOptions
{
    Q_DECLARE_TR_FUNCTIONS(HostOptions)

public:
    bool help = false;
    bool report = false; ///< print when the map is loaded and when its picture is complete
    bool noVoice = false;
    QString logFile;      ///< empty: none; "-": standard output
    QString tourFolder;   ///< empty: no tour
    QString projectFile;  ///< empty: a new project
    QString mapFile;      ///< empty: the rule by network state
    QString zoneFile;     ///< empty: the one beside the program
    QString keyFile;      ///< of the zone file; empty: the environment's key, or the sample's
    QString shotFile;     ///< empty: no picture
    QString language;     ///< empty: the system's
    QString settingsFile; ///< where the window's state is kept; empty: the usual place
    bool noSettings = false;
    std::optional<QSize> size;
    QList<FileBlock> blocks;
    QUrl applyUrl; ///< where applications to fly are sent; empty: nowhere
    std::optional<TourStop> view;
    std::optional<double> quitAfterSeconds;

    /// Whether nobody is expected at the window: the run ends by itself.
    bool IsUnattended() const
    {
        return !tourFolder.isEmpty() || !shotFile.isEmpty() || quitAfterSeconds.has_value();
    }
    /// Whether the window begins as it was left, and is remembered for the next time.
    bool KeepsState() const { return !noSettings && (!IsUnattended() || !settingsFile.isEmpty()); }
};

/// Reads the arguments, the program's name not among them. On a mistake
/// returns nothing and says in `error` which option is wrong and why.
std::optional<HostOptions> ParseHostOptions(const QStringList& arguments, QString& error);

/// Reads "lon,lat,alt,heading,pitch,range"; nothing for what is no view of the globe.
std::optional<TourStop> ParseView(const QString& text);

/// What --help prints.
QString HostHelpText();
