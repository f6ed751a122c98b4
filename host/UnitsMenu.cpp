#include "host/UnitsMenu.h"
#include "host/KeptState.h"

#include <AxAlgorthm/AxUnits.h>

#include <QActionGroup>
#include <QApplication>

UnitsMenu::UnitsMenu(KeptState* kept, QWidget* parent) : QMenu(tr("&Units"), parent)
{
    const struct
    {
        AxUnits::System system;
        const char* key;
        QString text;
    } rows[] = {
        {AxUnits::System::Metric, "metric", tr("&Metric: m, km, km\302\262")},
        {AxUnits::System::Imperial, "imperial", tr("&Imperial: ft, mi, ac, mi\302\262")},
        {AxUnits::System::Mu, "mu", tr("M&u and hectares")},
    };
    const QString setting = QStringLiteral("units");
    const QByteArray chosen = kept ? kept->Bytes(setting) : QByteArray();
    auto* group = new QActionGroup(this);
    for (const auto& row : rows) {
        QAction* action = addAction(row.text);
        action->setCheckable(true);
        group->addAction(action);
        if (chosen == row.key)
            AxUnits::Set(row.system);
        action->setChecked(AxUnits::Get() == row.system);
        connect(action, &QAction::triggered, this,
                [system = row.system, key = QByteArray(row.key), kept, setting] {
                    AxUnits::Set(system);
                    // Lists ask anew what they write.
                    for (QWidget* widget : QApplication::allWidgets())
                        widget->update();
                    if (kept)
                        kept->SetBytes(setting, key);
                });
    }
}
