#pragma once

#include <AxData/exchange/AxMission.h>

/// A mission as the text "QGC WPL 110": a line an item, twelve columns, home first. Any thread.
AXDATA_EXPORT AxExported AxWriteWpl(const AxMission& mission);

/// The mission of such a text; columns stand apart by tabs or spaces, lines end as on any system.
AXDATA_EXPORT AxMissionRead AxReadWpl(const QByteArray& data);
