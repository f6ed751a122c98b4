#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/planner/AxPassLayout.h>

#include <vector>

/// A pass in the order of the flight.
struct AXDATA_EXPORT AxFlownPass
{
    std::size_t pass = 0;   ///< its number in the layout
    bool isEastward = true; ///< or flown from its east end
};

/// The pass that the flight begins with at an entry: 0 the west and 1 the east end of the first line, 2 the
/// west and 3 the east end of the last one. There must be a pass.
AXDATA_EXPORT AxFlownPass AxEntryPass(const std::vector<AxPass>& passes, int entry);

/// The order in which passes are flown: each once, neighbours in opposite directions, with little way in
/// between. It begins at the entry. Where the area falls into several parts beside each other they are flown
/// part by part or line by line, whichever is shorter.
AXDATA_EXPORT std::vector<AxFlownPass> AxOrderPasses(const std::vector<AxPass>& passes, int entry);
