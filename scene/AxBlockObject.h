#pragma once
#include "scene/base/AxEarthViewerExport.h"

class CAxBlock;
class CAxHandleAdapter;
class QObject;

// The object of a block on the map, as rooms that do not know the class deal with it. GUI thread.

/// The block record that it draws, as it is now; null for null, and when there is none.
AXEARTHVIEWER_EXPORT CAxBlock* AxBlockOf(CAxHandleAdapter* object);
/// The same as a Qt object, whose end can be heard of; null for null.
AXEARTHVIEWER_EXPORT QObject* AxObjectOf(CAxHandleAdapter* object);
