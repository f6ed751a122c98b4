#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxBaseUI/CAxBaseWidget.h>
#include <AxBaseUI/EToolType.h>

#include <QPointer>
#include <QPushButton>

class AxViewerParts;

/**
 * The column of image buttons at the right edge of the map. Each slot ends by
 * marking the press as the bar's, so that the viewer does not take its release
 * for a click on the map. Owned by the graphics scene. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxMapToolsWidget : public CAxBaseWidget
{
    Q_OBJECT
public:
    /// parent is the viewer that the buttons act on.
    explicit CAxMapToolsWidget(QWidget* parent);

    /// Nothing is left to connect; the viewer calls it after construction.
    void ConnectEvent() {}
    /// Unchecks the measure and the marker button.
    void ResetToolType();
    /// Shows that tool's button as checked and the other one as not, without a click.
    void ShowTool(EToolType tool);
    /// Keeps the buttons between these rows of the widget, pixels: closer together where there is little
    /// room, in two columns where there is less. Where that is not enough they go on below, down to `end`.
    void KeepButtonsWithin(int top, int bottom, int end);
    /// Show or hide the buttons: all tools, the shoot point, following the aircraft, the voice.
    void SetToolsBtnVisible(bool visible);
    void SetShootPointBtnVisible(bool visible);
    void SetFollowToAircraftBtnVisible(bool visible);
    void SetTextToSpeechBtnVisible(bool visible);
    /// Shows the button of the shoot points as checked or not, without a click.
    void SetShootPointChecked(bool checked);
    /// True while the voice button is not checked: checked means muted.
    bool VoiceEnabled() const;

signals:
    /// A tool of the bar was switched on, or off (then ToolNavigate).
    void ToolTypeChanged(EToolType eToolType);
    /// The viewer has another tool in hand, one of the bar or not, whoever has taken it up.
    void ToolInHand(EToolType eToolType);
    /// For listeners; the bar itself never emits it.
    void signalHeading(double heading);

private slots:
    void slotDisplayShootPoint(bool checked);
    void slotFollowToAircraf(bool checked);
    void slotNoflyZoneVisbile(bool checked);
    void slotScrollToArea(bool checked);
    void slotMeasureToolEnabled(bool checked);
    void slotMarkerToolEnabled(bool checked);
    void slotTextToSpeechEnabled(bool checked);

private:
    void BuildForm();
    void InitSlots();
    void ArrangeButtons();
    void ArrangeInTwoColumns(const QList<QPushButton*>& buttons);
    void SwitchTool(bool checked, EToolType tool, QPushButton* other);
    template <typename Action> void Act(Action action);

    QPushButton* m_pBtnDisplayShoot = nullptr;
    QPushButton* m_pBtnNoFly = nullptr;
    QPushButton* m_pMeasureBtn = nullptr;
    QPushButton* m_pMarkerTools = nullptr;
    QPushButton* m_pMapCtrlToEditAreaBtn = nullptr;
    QPushButton* m_pMapCtrlFollowAircraftBtn = nullptr;
    QPushButton* m_pVoiceSwitchBtn = nullptr;
    QPointer<AxViewerParts> viewer;
    int firstRow = 0;
    int lastRow = QWIDGETSIZE_MAX;
    int endRow = QWIDGETSIZE_MAX;
};
