#pragma once
#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(axViewerLog) ///< "ax.viewer": the widget, its start-up and its overlays
Q_DECLARE_LOGGING_CATEGORY(axSceneLog)  ///< "ax.scene": what the scene graph and the map engine have to say
