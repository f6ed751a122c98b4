#pragma once
#include "viewer/AxEarthViewerExport.h"

#include <QObject>

class CAxHandleAdapter;

/**
 * The vertex handles of one map object. Owned by its adapter. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxHandleAdapterEditor : public QObject
{
    Q_OBJECT
public:
    explicit CAxHandleAdapterEditor(CAxHandleAdapter* adapter);
    ~CAxHandleAdapterEditor() override;

    /// Whether a handle is held: the camera then stays where it is, and no new
    /// shape is begun.
    bool GetDrag() const { return dragging; }
    void SetDragState(bool drag) { dragging = drag; }

private:
    bool dragging = false;
};
