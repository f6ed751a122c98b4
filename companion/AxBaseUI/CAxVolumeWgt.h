#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxBaseWidget.h>

#include <QColor>
#include <QPair>
#include <QString>
#include <QVector>

class QFormLayout;
class QLabel;

/// The panel that shows the result of a volume measurement. Owned by its Qt parent; GUI thread only.
class AXBASEUI_EXPORT CAxVolumeWgt : public CAxBaseWidget
{
    Q_OBJECT

public:
    explicit CAxVolumeWgt(QWidget* parent = nullptr);

    /// Cubic metres to be taken away above, and to be filled in below, the reference surface. The panel shows
    /// both and their difference, in the units of AxUnits.
    void SetVolume(double cut, double fill);
    /// More figures below these: their names and values.
    void SetFigures(const QVector<QPair<QString, QString>>& figures);
    /// What the colours of the picture on the map stand for.
    void SetLegend(const QVector<QPair<QColor, QString>>& colors);

private:
    QLabel* m_pLabCut;
    QLabel* m_pLabFill;
    QLabel* m_pLabNet;
    QFormLayout* m_pFigures; ///< below the three
    QFormLayout* m_pLegend;
};
