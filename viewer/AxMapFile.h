#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QString>

/// Path of the map file that start-up reads: "google_cn.earth" in the
/// application's directory when the network is up, "google_cn_net_no.earth"
/// when it is not.
AXEARTHVIEWER_EXPORT QString AxMapFilePath(const QString& applicationDir, bool networkConnected);
