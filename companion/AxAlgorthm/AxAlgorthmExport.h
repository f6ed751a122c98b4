#pragma once

#include <QtCore/qglobal.h>

#if defined(AXALGORTHM_LIBRARY)
#define AXALGORTHM_EXPORT Q_DECL_EXPORT
#else
#define AXALGORTHM_EXPORT Q_DECL_IMPORT
#endif
