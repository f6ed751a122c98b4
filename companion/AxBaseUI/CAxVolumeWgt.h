#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxBaseWidget.h>

class QLabel;

/// The panel that shows the result of a volume measurement. Owned by its Qt parent; GUI thread only.
class AXBASEUI_EXPORT CAxVolumeWgt : public CAxBaseWidget
{
    Q_OBJECT

public:
    explicit CAxVolumeWgt(QWidget* parent = nullptr);

    /// Cubic metres to be taken away above, and to be filled in below, the reference plane. The panel shows
    /// both and their difference.
    void SetVolume(double cut, double fill);

private:
    QLabel* m_pLabCut;
    QLabel* m_pLabFill;
    QLabel* m_pLabNet;
};
