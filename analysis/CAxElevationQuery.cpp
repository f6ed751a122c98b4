#include "analysis/CAxElevationQuery.h"

void CAxElevationQuery::slotGenerateElevationQuery(QVariant places)
{
    SetResult(places);
    emit signalElevations(places);
}
