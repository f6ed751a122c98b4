#pragma once
#include <AxData/planner/AxPlanResult.h>

#include <QCoreApplication>
#include <QString>

#include <vector>

/// What a pilot is told of the warnings of a plan. Values; any thread.
class PlanWarnings
{
    Q_DECLARE_TR_FUNCTIONS(PlanWarnings)

public:
    static QString TextOf(const AxPlanWarning& warning);
    /// Whether who flies the route as it is may hit the ground or break into a zone.
    static bool IsDanger(const AxPlanWarning& warning);
    /// Dangers first, the lowest heights before others.
    static std::vector<AxPlanWarning> WorstFirst(std::vector<AxPlanWarning> warnings);
    /// How many dangers there are, and the worst of them; empty without any.
    static QString Summary(const std::vector<AxPlanWarning>& warnings);
};
