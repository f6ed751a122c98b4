#include "scene/base/AxViewerLog.h"

Q_LOGGING_CATEGORY(axViewerLog, "ax.viewer", QtInfoMsg)
Q_LOGGING_CATEGORY(axSceneLog, "ax.scene", QtInfoMsg)
