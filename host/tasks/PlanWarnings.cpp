#include "host/tasks/PlanWarnings.h"

#include <QLocale>

#include <algorithm>
#include <tuple>

using Kind = AxPlanWarning::Kind;

namespace {
QString Decimals(double value, int decimals)
{
    return QLocale().toString(value, 'f', decimals);
}
} // namespace

QString PlanWarnings::TextOf(const AxPlanWarning& warning)
{
    switch (warning.kind) {
    case Kind::Clearance:
        return warning.value < 0.0 ? tr("%1 m below the ground, %2 m above it are asked")
                                         .arg(Decimals(-warning.value, 1), Decimals(warning.asked, 1))
                                   : tr("%1 m above the ground, %2 m are asked")
                                         .arg(Decimals(warning.value, 1), Decimals(warning.asked, 1));
    case Kind::UnknownGround:
        return tr("No height of the ground is known here");
    case Kind::Interval:
        return tr("A photo every %1 s, the camera needs %2 s")
            .arg(Decimals(warning.value, 2), Decimals(warning.asked, 2));
    case Kind::Overlap:
        return tr("Side overlap %1 %, %2 % are asked")
            .arg(Decimals(warning.value * 100.0, 0), Decimals(warning.asked * 100.0, 0));
    case Kind::Zone:
        return tr("In the no-fly zone %1 for %2 m").arg(warning.zone, Decimals(warning.value, 0));
    case Kind::Bend:
        return tr("The route bends at %1 m here, the aircraft turns at %2 m")
            .arg(Decimals(warning.value, 0), Decimals(warning.asked, 0));
    case Kind::NoWayRound:
        return tr("No way from or to home round the no-fly zones was found");
    case Kind::UnknownZones:
        return tr("The no-fly zones are not known");
    }
    return {};
}

bool PlanWarnings::IsDanger(const AxPlanWarning& warning)
{
    switch (warning.kind) {
    case Kind::Clearance:
    case Kind::UnknownGround:
    case Kind::Zone:
    case Kind::NoWayRound:
    case Kind::UnknownZones:
        return true;
    case Kind::Interval:
    case Kind::Overlap:
    case Kind::Bend:
        return false;
    }
    return true;
}

std::vector<AxPlanWarning> PlanWarnings::WorstFirst(std::vector<AxPlanWarning> warnings)
{
    const auto rank = [](const AxPlanWarning& warning) {
        const bool isHeight = warning.kind == Kind::Clearance;
        return std::tuple(!IsDanger(warning), !isHeight, isHeight ? warning.value : 0.0);
    };
    std::stable_sort(warnings.begin(), warnings.end(),
                     [&rank](const auto& a, const auto& b) { return rank(a) < rank(b); });
    return warnings;
}

QString PlanWarnings::Summary(const std::vector<AxPlanWarning>& warnings)
{
    const auto dangers = std::count_if(warnings.begin(), warnings.end(), IsDanger);
    if (dangers == 0)
        return {};
    const QString worst = TextOf(WorstFirst(warnings).front());
    return dangers == 1 ? tr("Dangerous: %1").arg(worst)
                        : tr("Dangerous at %1 places: %2").arg(QLocale().toString(dangers), worst);
}
