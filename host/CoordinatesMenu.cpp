#include "host/CoordinatesMenu.h"
#include "host/KeptState.h"
#include "host/TypedBox.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxCoordinateSystem.h>

#include <QActionGroup>

CoordinatesMenu::CoordinatesMenu(CAxEarthViewer* earthViewer, KeptState* kept, QWidget* parent)
    : QMenu(tr("Coordinate &system"), parent), viewer(earthViewer), group(new QActionGroup(this))
{
    const struct
    {
        QString system;
        QString text;
    } rows[] = {
        {QString(), tr("&Decimal degrees")},
        {QStringLiteral("DMS"), tr("Degrees, &minutes, seconds")},
        {QStringLiteral("UTM"), tr("&UTM")},
        {QStringLiteral("MGRS"), tr("M&GRS")},
    };
    for (const auto& row : rows) {
        QAction* action = addAction(row.text);
        action->setData(row.system);
        group->addAction(action);
        connect(action, &QAction::triggered, this,
                [this, system = row.system] { viewer->SetCoordSys(system); });
    }
    other = addAction(QString(), this, &CoordinatesMenu::AskForSystem);
    group->addAction(other);
    for (QAction* action : group->actions())
        action->setCheckable(true);

    const QString setting = QStringLiteral("coordinates");
    if (kept) {
        // One that PROJ does not know any more leaves degrees.
        viewer->SetCoordSys(QString::fromUtf8(kept->Bytes(setting)));
        connect(viewer, &CAxEarthViewer::signalCoordSys, kept,
                [kept, setting](const QString& system) { kept->SetBytes(setting, system.toUtf8()); });
    }
    connect(viewer, &CAxEarthViewer::signalCoordSys, this, &CoordinatesMenu::Follow);
    Follow();
}

void CoordinatesMenu::Follow()
{
    const AxCoordinateSystem& system = viewer->GetCoordinateSystem();
    other->setText(
        system.IsOfProj()
            ? tr("&Other system (%1)...").arg(system.Name().replace(QLatin1Char('&'), QLatin1String("&&")))
            : tr("&Other system..."));
    for (QAction* action : group->actions())
        action->setChecked(system.IsOfProj() ? action == other
                                             : action != other && action->data().toString() == system.Text());
}

void CoordinatesMenu::AskForSystem()
{
    const auto read = [](const QString& typed) -> TypedBox::Reading {
        QString why;
        const auto system = AxCoordinateSystem::Of(typed, &why);
        return system ? TypedBox::Reading{true, system->Name()} : TypedBox::Reading{false, why};
    };
    TypedBox box(tr("Coordinate system"),
                 tr("An EPSG code (32613), the exact name of a system, a PROJ string or WKT."), read,
                 parentWidget());
    if (viewer->GetCoordinateSystem().IsOfProj())
        box.SetText(viewer->GetCoordSys());
    if (box.exec() == QDialog::Accepted)
        viewer->SetCoordSys(box.Text());
    // The click on the row has checked it, whatever came of it.
    Follow();
}
