#pragma once
#include "scene/base/AxEarthViewerExport.h"
#include "viewer/overlay/AxVolumeFields.h"

#include <AxBaseUI/CAxBaseWidget.h>

class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QProgressBar;
class QPushButton;

/**
 * The panel at the map's corner while volumes are measured: the grid of the one drawn last, or next, what it
 * is measured against, how far the work is, and its end. It decides nothing by itself. Owned by the graphics
 * scene, and hidden without the tool. GUI thread.
 */
class AXEARTHVIEWER_EXPORT AxGridWidget : public CAxBaseWidget
{
    Q_OBJECT
public:
    explicit AxGridWidget(QWidget* parent);

    /// Which volume it is about, and its name; empty for the next one that is drawn.
    void ShowVolume(const QString& handleID, const QString& name);
    QString HandleID() const { return id; }
    /// Base, height and cell; emits nothing.
    void ShowQuestion(const AxVolumeQuestion& question) { fields->Show(question); }
    /// The same where somebody else has asked: what is being typed stays otherwise.
    void FollowQuestion(const AxVolumeQuestion& question) { fields->Follow(question); }
    /// AxVolumeFields::Question().
    AxVolumeQuestion Question() const { return fields->Question(); }
    /// A text below, as what came out or what is wrong.
    void ShowNote(const QString& text);
    /// 0 to 100; below 0: nothing is computed.
    void ShowProgress(int percent);

signals:
    /// The panel is to be shown for the object with this handle ID, or hidden.
    void signalGridWidget(QString strHanleID, bool bVisible);
    void questionChanged(); ///< somebody has filled in something else
    void editing();         ///< somebody is filling in something
    void cancelled();       ///< the work is to be given up

protected:
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void fit();

    QString id;
    QLabel* m_pTitle;
    QComboBox* m_pBase;
    QDoubleSpinBox* m_pHeight;
    QDoubleSpinBox* m_pCell;
    AxVolumeFields* fields;
    QLabel* m_pNote;
    QProgressBar* m_pProgress;
    QPushButton* m_pCancel;
    QPushButton* m_pClose;
};
