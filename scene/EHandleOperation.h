#pragma once

#include <QMetaType>

/// What is going on with an editable map object.
enum EHandleOperation
{
    OperationIdle = 0,
    OperationDrawing = 1,    ///< it is being drawn
    OperationMovePoint = 2,  ///< one of its vertices is being dragged
    OperationMoveHandle = 3, ///< the whole object is being moved
};

Q_DECLARE_METATYPE(EHandleOperation)
