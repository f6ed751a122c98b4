#pragma once
#include <QtGlobal>

// Marks what the viewer library exports.
#if defined(AXEARTHVIEWER_LIBRARY)
#define AXEARTHVIEWER_EXPORT Q_DECL_EXPORT
#else
#define AXEARTHVIEWER_EXPORT Q_DECL_IMPORT
#endif
