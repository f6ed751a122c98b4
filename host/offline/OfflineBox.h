#pragma once
#include "host/offline/OfflineSaver.h"
#include "host/offline/OfflineTally.h"

#include <AxBaseUI/CAxBaseDialog.h>

#include <QList>
#include <QTimer>

class CAxEarthViewer;
class LimitedNumber;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSpinBox;

/**
 * Which tiles of which service are saved where; how many that would be; how far it is. The map can be used
 * while it is open, and saving goes on while it is closed. The viewer outlives it. GUI thread.
 */
class OfflineBox : public CAxBaseDialog
{
    Q_OBJECT
public:
    OfflineBox(CAxEarthViewer* viewer, QWidget* parent);
    ~OfflineBox() override;

    /// Shows it with the services that the map has now.
    void Open();

    /// What was typed, for the next time.
    QByteArray Typed() const;
    void SetTyped(const QByteArray& text); ///< what cannot be read stays as it is

signals:
    void Saved(const QString& file); ///< there is something in it to be shown
    void TypedChanged();
    void Told(const QString& text); ///< for the status bar

protected slots:
    void slotBtnAcceptClicked() override;
    void slotBtnCancelClicked() override;
    void slotBtnCloseClicked() override;

private:
    enum Ground
    {
        View,
        Block,
        Rectangle,
    };

    void BuildService(QFormLayout* form);
    void BuildGround(QFormLayout* form);
    void BuildFile(QFormLayout* form);
    void BuildState();
    void ChooseFile();
    void OnService();
    /// Nothing, with the reason, where the box says none.
    std::optional<AxTileArea> Area(QString& why) const;
    std::optional<AxTileJob> Job(QString& why) const;
    void Count();
    void Guess();
    void ShowGuess(const QString& text); ///< where the state is told; empty: it is not up to date any more
    bool MayBegin(const AxTileJob& job);
    void OnProgress(const AxTileProgress& progress);
    void OnEnded(AxTileEnd end, const QString& why, const AxTileProgress& progress);
    void ShowBusy();

    CAxEarthViewer* viewer;
    OfflineSaver* saver;
    QList<AxTileService> services; ///< in the order of the list
    QComboBox* service;
    QLineEdit* address;
    QLineEdit* attribution;
    QButtonGroup* ground;
    LimitedNumber* margin;
    QLineEdit* rectangle;
    QSpinBox* firstLevel;
    QSpinBox* lastLevel;
    QLabel* pixel;
    QLineEdit* file;
    QCheckBox* retry;
    QLabel* count;
    QPushButton* guess;
    QProgressBar* bar;
    QLabel* state;
    QList<QWidget*> inputs; ///< nothing of it changes while tiles are fetched
    QTimer recount;         ///< the view moves, blocks change
    OfflineTally tally;
    QString saving; ///< the file that is being fetched
    bool isGuessShown = false;
};
