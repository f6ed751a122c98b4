#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QPoint>
#include <QSize>

#include <functional>
#include <optional>
#include <vector>

/// A mark point in the window.
struct AxMarkOnScreen
{
    int index = 0;      ///< of the mark
    QPoint foot;        ///< where it stands, pixels, y upwards
    float depth = 0.0f; ///< the lesser one is nearer
    bool isSelected = false;
};

/// How it is drawn: with its icon or, in a crowd, as a dot.
struct AxMarkPlaced
{
    int index = 0;
    QPoint foot;
    bool isIcon = false;
    std::optional<QPoint> label; ///< lower left corner of its name, where there is room for that
};

/// What there is to be placed.
struct AxMarkSizes
{
    QSize window;
    QSize icon;
    int labelHeight = 0;
    int mostLabels = 0;
    std::function<int(int index)> labelWidth; ///< asked only where a label may find room
};

/// Finds room for the icons and names of many marks: those that are nearer come first, the selected one
/// before all others. An icon that would cover another one becomes a dot; dots in one place become one, and
/// those behind the head of an icon are left out; a name has room where it covers no icon and no other name.
/// Answers what is to be drawn, what lies below first. Any thread.
AXEARTHVIEWER_EXPORT std::vector<AxMarkPlaced> AxPlaceMarks(std::vector<AxMarkOnScreen> marks,
                                                            const AxMarkSizes& sizes);
