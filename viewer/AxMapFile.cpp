#include "viewer/AxMapFile.h"

#ifdef Q_OS_WIN
#define AX_SEPARATOR "\\"
#else
#define AX_SEPARATOR "/"
#endif

QString AxMapFilePath(const QString& applicationDir, bool networkConnected)
{
    return applicationDir + QLatin1String(networkConnected ? AX_SEPARATOR "google_cn.earth"
                                                           : AX_SEPARATOR "google_cn_net_no.earth");
}
