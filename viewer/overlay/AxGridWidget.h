#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxBaseUI/CAxBaseWidget.h>

/**
 * The panel that shows or hides the grid of a measured volume. Owned by the
 * graphics scene and hidden until the volume measurement needs it. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxGridWidget : public CAxBaseWidget
{
    Q_OBJECT
public:
    explicit AxGridWidget(QWidget* parent);

signals:
    /// The grid of the object with this handle ID is to be shown or hidden.
    void signalGridWidget(QString strHanleID, bool bVisible);
};
