#include "host/tasks/TaskFiles.h"
#include "host/files/SaveBox.h"
#include "host/tasks/PlanWarnings.h"

#include <AxBaseUI/CAxMessageBox.h>
#include <AxData/exchange/AxMissionPoints.h>
#include <AxData/exchange/AxQgcPlan.h>
#include <AxData/exchange/AxRouteFiles.h>
#include <AxData/exchange/AxWplFile.h>

#include <QDir>
#include <QFile>
#include <QFileDialog>

namespace {
/// Larger than any mission is; what is larger is not read into memory.
constexpr qint64 mostBytes = 64LL * 1024 * 1024;

enum class Format
{
    Survey,
    Plan,
    Wpl,
    Kml,
    Csv,
    GeoJson,
};

struct Row
{
    Format format;
    QString filter;
    QStringList suffixes;
};

QList<Row> Formats()
{
    return {
        {Format::Survey, TaskFiles::tr("QGroundControl survey (*.plan)"), {QStringLiteral("plan")}},
        {Format::Plan, TaskFiles::tr("QGroundControl waypoints (*.plan)"), {QStringLiteral("plan")}},
        {Format::Wpl,
         TaskFiles::tr("Mission text QGC WPL 110 (*.waypoints *.txt)"),
         {QStringLiteral("waypoints"), QStringLiteral("txt")}},
        {Format::Kml, TaskFiles::tr("KML (*.kml)"), {QStringLiteral("kml")}},
        {Format::Csv, TaskFiles::tr("CSV table (*.csv)"), {QStringLiteral("csv")}},
        {Format::GeoJson, TaskFiles::tr("GeoJSON (*.geojson)"), {QStringLiteral("geojson")}},
    };
}

void Tell(QWidget* window, const QString& title, const QString& text, const QStringList& details)
{
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(title);
    box.SetMsgText(text);
    box.SetDetails(details.join(QLatin1Char('\n')));
    box.SetBtnHidden(false, true, false);
    box.exec();
}

/// Files that an aircraft flies by are written of a dangerous route only if its pilot says so.
bool IsWanted(QWidget* window, Format format, const ShownPlan& shown)
{
    const bool isFlown = format == Format::Survey || format == Format::Plan || format == Format::Wpl;
    const QString danger = PlanWarnings::Summary(shown.plan.warnings);
    if (!isFlown || danger.isEmpty())
        return true;
    CAxMessageBox box(window);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(TaskFiles::tr("Export route"));
    box.SetMsgText(TaskFiles::tr("An aircraft that flies this route is in danger. Write it all the same?"));
    box.SetDetails(danger);
    box.SetBtnOKText(TaskFiles::tr("Write"));
    box.SetCancelDefault(true);
    return box.exec() == QDialog::Accepted;
}

AxExported Write(Format format, const ShownPlan& shown, const QString& name,
                 const std::optional<AxMission>& fixed)
{
    const AxPlanResult& route = shown.plan;
    const AxPlanRequest& request = shown.request;
    if (format == Format::Kml)
        return AxWriteKml(route, request, name);
    if (format == Format::Csv)
        return AxWriteCsv(route, request, name);
    if (format == Format::GeoJson)
        return AxWriteGeoJson(route, request, name);
    AxMissionRead made;
    if (fixed)
        made.mission = *fixed;
    else
        made = AxMissionOf(route, request, name);
    AxExported written;
    if (!made.fault.isEmpty()) {
        written.fault = made.fault;
        return written;
    }
    written = format == Format::Wpl    ? AxWriteWpl(made.mission)
              : format == Format::Plan ? AxWriteQgcPlan(made.mission)
                                       : AxWriteQgcSurvey(made.mission, route, request);
    written.notes = made.notes + written.notes;
    written.notes.removeDuplicates();
    return written;
}
} // namespace

QString TaskFiles::Export(QWidget* window, const Wanted& wanted)
{
    QList<Row> formats;
    QList<SaveBox::Kind> kinds;
    for (const Row& row : Formats()) {
        if (row.format == Format::Survey && !wanted.isWholeArea)
            continue;
        formats += row;
        kinds += SaveBox::Kind{row.filter, row.suffixes};
    }
    const auto chosen = SaveBox::Ask(window, tr("Export route"), {}, wanted.name, kinds);
    if (!chosen)
        return {};
    const QString file = chosen->file;
    QString error;
    const std::shared_ptr<const ShownPlan> shown = wanted.route(error);
    AxExported written;
    if (shown) {
        const Format format = formats[chosen->kind].format;
        if (!IsWanted(window, format, *shown))
            return {};
        written = Write(format, *shown, wanted.name, wanted.fixed);
        error = written.fault;
    }
    if (!shown || !error.isEmpty() || !AxSaveExport(file, written.data, error)) {
        Tell(window, tr("Export route"), tr("The route was not written."), {error});
        return {};
    }
    if (!written.notes.isEmpty())
        Tell(window, tr("Export route"),
             tr("%1 is written. What it does not say:").arg(QDir::toNativeSeparators(file)), written.notes);
    return file;
}

std::optional<TaskFiles::Read> TaskFiles::Import(QWidget* window)
{
    QFileDialog dialog(window, tr("Import route"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setNameFilters({tr("Missions (*.plan *.waypoints *.txt)"), tr("All files (*)")});
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const QString path = dialog.selectedFiles().constFirst();
    const QString shownPath = QDir::toNativeSeparators(path);
    const auto fail = [&](const QString& why) {
        Tell(window, tr("Import route"), tr("%1 was not read.").arg(shownPath), {why});
        return std::nullopt;
    };
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return fail(file.errorString());
    if (file.size() > mostBytes)
        return fail(tr("It is too large for a mission."));
    const QByteArray data = file.readAll();
    if (data.trimmed().isEmpty())
        return fail(tr("The file is empty."));
    // By what is in it, because both kinds come with any name.
    const bool isPlan = data.trimmed().startsWith('{') || data.startsWith("\xef\xbb\xbf{");
    AxMissionRead read = isPlan ? AxReadQgcPlan(data) : AxReadWpl(data);
    if (!read.fault.isEmpty())
        return fail(read.fault);
    std::vector<AxPlanPoint> points = AxPointsOf(read.mission, read.notes);
    if (points.empty())
        return fail(tr("No place to fly through is in it."));
    if (!read.notes.isEmpty())
        Tell(window, tr("Import route"), tr("%1 is read.").arg(shownPath), read.notes);
    const QString name = read.mission.name.trimmed();
    return Read{name.isEmpty() ? QFileInfo(path).completeBaseName() : name, read.mission, points};
}
