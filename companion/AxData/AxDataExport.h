#pragma once

#include <QtCore/qglobal.h>

#if defined(AXDATA_LIBRARY)
#define AXDATA_EXPORT Q_DECL_EXPORT
#else
#define AXDATA_EXPORT Q_DECL_IMPORT
#endif
