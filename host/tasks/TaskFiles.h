#pragma once
#include "host/tasks/ShownPlan.h"

#include <AxData/exchange/AxMission.h>

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QWidget;

/// Routes to and from files, with the dialogs that go with it. GUI thread; events run meanwhile.
class TaskFiles
{
    Q_DECLARE_TR_FUNCTIONS(TaskFiles)
public:
    /// What is to be written.
    struct Wanted
    {
        QString name;
        /// Called once a file is chosen, because the records may change while it is. Null for nothing;
        /// `fault` then says why.
        std::function<std::shared_ptr<const ShownPlan>(QString& fault)> route;
        std::optional<AxMission> fixed; ///< when the route was read from a file
        bool isWholeArea = false;       ///< a survey of an area, and no part of one
    };
    /// Asks for a file and writes the route. The operator is told what the format cannot say, and why nothing
    /// was written. The name of the file; empty when nothing was written.
    static QString Export(QWidget* window, const Wanted& wanted);

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
