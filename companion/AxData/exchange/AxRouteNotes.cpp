#include <AxData/exchange/AxExchangeText.h>
#include <AxData/exchange/AxRouteNotes.h>

QStringList AxNotesOfAnyFormat(const AxPlanResult& route, const AxPlanRequest& request)
{
    QStringList notes;
    if (request.kind == AxPlanRequest::Kind::Orbit || request.isThreeDirections)
        notes << AxExchangeText(QT_TRANSLATE_NOOP(
            "AxExchange", "Where the camera looks is not in the file; set it on the aircraft."));
    if (!route.warnings.empty())
        notes << AxExchangeText(
                     QT_TRANSLATE_NOOP("AxExchange", "%1 warnings of the route are not in the file."))
                     .arg(route.warnings.size());
    return notes;
}
