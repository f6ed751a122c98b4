#pragma once
#include "scene/base/AxEarthViewerExport.h"

/// What is known of a window whose frame lacks tiles, before the next one is begun. Seconds on the viewer's
/// clock.
struct AxWaitFacts
{
    bool isResting = false;  ///< the camera, since before the last frame was drawn
    bool hadInput = false;   ///< since then
    bool isAsked = false;    ///< somebody asked for a frame
    unsigned wanted = 0;     ///< tiles that the pager has not begun to make
    bool isUnderWay = false; ///< some tile is, from the wish for it until it is shown
    unsigned made = 0;       ///< tiles that the next frames show
    double now = 0.0;
    double drawnAt = 0.0;    ///< the last frame
    double lastTileAt = 0.0; ///< the pager handed one over, or had nothing to do
};

/// Whether the next frame is left out as a whole, because its drawing would only take time from the making
/// of tiles. Plain logic, any thread.
AXEARTHVIEWER_EXPORT bool AxMayWaitForTiles(const AxWaitFacts& facts);
