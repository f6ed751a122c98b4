#pragma once

#include <QtCore/qglobal.h>

#if defined(AXBASEUI_LIBRARY)
#define AXBASEUI_EXPORT Q_DECL_EXPORT
#else
#define AXBASEUI_EXPORT Q_DECL_IMPORT
#endif
