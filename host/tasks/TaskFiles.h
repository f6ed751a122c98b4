#pragma once
#include "host/tasks/ShownPlan.h"

#include <AxData/exchange/AxMission.h>

#include <QCoreApplication>

#include <optional>
#include <vector>

class QWidget;

/// Routes to and from files, with the dialogs that go with it. GUI thread; events run meanwhile.
class TaskFiles
{
    Q_DECLARE_TR_FUNCTIONS(TaskFiles)
public:
    /// Asks for a file and writes the route. The operator is told what the format cannot say, and why nothing
    /// was written. The name of the file; empty when nothing was written. `fixed` is the
    /// mission when the route was read from a file, else null.
    static QString Export(QWidget* window, const ShownPlan& shown, const QString& name,
                          const AxMission* fixed);

    /// A mission as it was read and its points.
    struct Read
    {
        QString name;
        AxMission mission;
        std::vector<AxPlanPoint> points;
    };
    /// Asks for a file and reads it; nothing when there is no mission in it, which the operator is told.
    static std::optional<Read> Import(QWidget* window);
};
