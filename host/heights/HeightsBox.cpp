#include "host/heights/HeightsBox.h"
#include "analysis/CAxAncillaryProcess.h"
#include "analysis/CAxElevationQuery.h"
#include "host/files/SaveBox.h"
#include "host/heights/HeightsFile.h"
#include "interaction/CAxHandleAdapter.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinateSystem.h>
#include <AxAlgorthm/AxUnits.h>
#include <AxBaseUI/CAxMessageBox.h>
#include <AxBaseUI/CAxProgressWgt.h>
#include <AxData/CAxBlock.h>

#include <osgEarth/MapNode>

#include <QApplication>
#include <QDir>
#include <QFontMetrics>
#include <QPlainTextEdit>
#include <QPointer>
#include <QVBoxLayout>

namespace {
constexpr int percentWhole = 100;

/// Heights of mountains are not told in kilometres.
QString HeightText(double metres)
{
    const AxUnits::Unit unit = AxUnits::OfWidths();
    return QString::number(metres / unit.size, 'f', 1) + QLatin1Char(' ') + unit.sign;
}

const QString exclamationOfHeights = QStringLiteral(":/images/Normal/Exclamation_mark.png");

void TellOfHeights(QWidget* window, const QString& sign, const QString& text, const QString& details = {})
{
    CAxMessageBox box(window);
    if (!sign.isEmpty())
        box.SetIcon(sign);
    box.SetWindowTitle(HeightsBox::tr("Heights of block"));
    box.SetMsgText(text);
    box.SetDetails(details);
    box.SetBtnHidden(false, true, false);
    box.exec();
}

/// Null when the operator calls it off, or the viewer goes.
AxHeightGridPointer ReadHeights(CAxEarthViewer& viewer, const AxHeightsQuestion& question,
                                const QString& name, QWidget* window)
{
    const QPointer<CAxAncillaryProcess> process = viewer.GetAncillaryProcess();
    if (!process || !viewer.getMapNode())
        return nullptr;
    CAxElevationQuery query;
    CAxProgressWgt progress(HeightsBox::tr("Heights of %1").arg(name), window);
    progress.SetText(HeightsBox::tr("The heights of the ground are read..."));
    progress.SetMaxValue(percentWhole);
    progress.VisibleBtnCannel(true);
    QObject::connect(&query, &CAxElevationQuery::signalElevations, &progress,
                     [&progress] { progress.SetValue(percentWhole); });
    QObject::connect(process, &QObject::destroyed, &progress, &QDialog::reject);
    process->SetHeightsPara(question, viewer.getMapNode()->getMap(), &progress, &query);
    const bool isDone = progress.exec(true) == QDialog::Accepted;
    if (!isDone && process)
        process->CancelElevationQuery(&query);
    return isDone ? query.GetResult().value<AxHeightGridPointer>() : nullptr;
}
} // namespace

void HeightsBox::ShowOf(CAxEarthViewer* earthViewer, const QString& blockID, QWidget* window)
{
    const QPointer<CAxEarthViewer> viewer(earthViewer);
    CAxHandleAdapter* const object = viewer ? viewer->FindExistNode(blockID) : nullptr;
    if (!object || !object->GetContainedBlock())
        return;
    const QString name = object->GetContainedBlock()->GetBlockName();
    AxHeightsQuestion question;
    if (object->IsOutlineClosed())
        for (const osg::Vec3d& place : object->Outline())
            question.ring.emplace_back(place.x(), place.y());
    if (question.ring.size() < 3) {
        TellOfHeights(window, exclamationOfHeights, tr("\"%1\" encloses no area.").arg(name));
        return;
    }
    const QPointer<QWidget> parent(window);
    const AxHeightGridPointer grid = ReadHeights(*viewer, question, name, window);
    if (!grid || !viewer || !parent)
        return;
    if (grid->known == 0)
        TellOfHeights(window, exclamationOfHeights,
                      tr("No height of the ground is known below \"%1\".").arg(name));
    else
        HeightsBox(grid, name, viewer->GetCoordinateSystem(), viewer->AreMapHeightsAboveEllipsoid(), window)
            .exec();
}

HeightsBox::HeightsBox(AxHeightGridPointer grid, QString name, const AxCoordinateSystem& system,
                       bool aboveEllipsoid, QWidget* window)
    : CAxBaseDialog(window), heights(std::move(grid)), block(std::move(name)),
      isAboveEllipsoid(aboveEllipsoid)
{
    SetWindowTitle(tr("Heights of %1").arg(block));
    SetBtnOKText(tr("Export..."));
    SetBtnCancelText(tr("Close"));
    auto* text = new QPlainTextEdit(Report(*heights, system, isAboveEllipsoid), this);
    text->setObjectName(QStringLiteral("heights"));
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    const QFontMetrics metrics(text->font());
    constexpr int letters = 64;
    constexpr int lines = 10;
    text->setMinimumSize(letters * metrics.averageCharWidth(), lines * metrics.lineSpacing());
    ContentLayout()->addWidget(text);
}

QString HeightsBox::Report(const AxHeightGrid& grid, const AxCoordinateSystem& system, bool aboveEllipsoid)
{
    const auto at = [&system](const QPointF& place) { return system.Line(place.y(), place.x()); };
    QStringList lines{
        tr("Lowest: %1 at %2").arg(HeightText(grid.lowest), at(grid.lowestPlace)),
        tr("Highest: %1 at %2").arg(HeightText(grid.highest), at(grid.highestPlace)),
        tr("Mean: %1").arg(HeightText(grid.mean)),
        tr("Difference: %1").arg(HeightText(grid.highest - grid.lowest)),
        QString(),
        (aboveEllipsoid ? tr("%1 cells of %2, heights above the ellipsoid.")
                        : tr("%1 cells of %2, heights above mean sea level."))
            .arg(grid.inside)
            .arg(HeightText(grid.cell)),
    };
    if (grid.cellOfData > 0.0 && grid.cell > grid.cellOfData * 1.01)
        lines += tr("The map has finer heights, every %1; means of them are taken.")
                     .arg(AxUnits::Length(grid.cellOfData));
    else if (grid.cellOfData > grid.cell * 1.01)
        lines += tr("The map has a height every %1 here; in between they are interpolated.")
                     .arg(AxUnits::Length(grid.cellOfData));
    if (grid.known < grid.inside) {
        const double share =
            100.0 * static_cast<double>(grid.inside - grid.known) / static_cast<double>(grid.inside);
        lines += tr("%1 % of the area has no known height and does not count.")
                     .arg(share < 0.1 ? QStringLiteral("< 0.1") : QString::number(share, 'f', 1));
    }
    return lines.join(QLatin1Char('\n'));
}

void HeightsBox::slotBtnAcceptClicked()
{
    const QPointer<HeightsBox> self(this);
    const auto chosen =
        SaveBox::Ask(this, tr("Export heights"), {}, tr("Heights of %1").arg(block),
                     {{tr("GeoTIFF (*.tif)"), {QStringLiteral("tif"), QStringLiteral("tiff")}},
                      {tr("CSV table (*.csv)"), {QStringLiteral("csv")}}});
    if (!self || !chosen)
        return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const QString fault = WriteHeights(chosen->file, *heights, isAboveEllipsoid);
    QApplication::restoreOverrideCursor();
    const QString name = QDir::toNativeSeparators(chosen->file);
    if (fault.isEmpty())
        TellOfHeights(this, {}, tr("%1 is written.").arg(name));
    else
        TellOfHeights(this, exclamationOfHeights, tr("%1 was not written.").arg(name), fault);
}
