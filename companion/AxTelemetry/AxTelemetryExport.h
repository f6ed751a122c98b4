#pragma once

#include <QtCore/qglobal.h>

#if defined(AXTELEMETRY_LIBRARY)
#define AXTELEMETRY_EXPORT Q_DECL_EXPORT
#else
#define AXTELEMETRY_EXPORT Q_DECL_IMPORT
#endif
