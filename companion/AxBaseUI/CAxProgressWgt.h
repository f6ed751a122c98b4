#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxBaseDialog.h>

class QLabel;
class QProgressBar;

/// A modal progress display with a caption, a text and up to three buttons: Cancel, Retry and Close, all
/// hidden at first. A job that runs elsewhere reports to its slots through queued signals; the display
/// itself belongs to the GUI thread.
///
/// Escape does what the visible one of Cancel and Close does. While neither is visible the title bar's close
/// button is there and, like Escape, rejects; the job is not told.
class AXBASEUI_EXPORT CAxProgressWgt : public CAxBaseDialog
{
    Q_OBJECT

public:
    /// The caption stands in the title bar.
    explicit CAxProgressWgt(const QString& caption, QWidget* parent = nullptr);

    /// The value at which the job is done; 0, as at first, shows a job of unknown length.
    void SetMaxValue(int maximum);

    /// Show or hide one button each.
    void VisibleBtnCannel(bool visible);
    void VisibleBtnRetry(bool visible);
    void VisibleBtnClose(bool visible);
    /// The bar, which is there at first; a job that has failed is nowhere on its way.
    void VisibleBar(bool visible);

    using CAxBaseDialog::exec;
    /// Runs the display. With closeWhenDone it is accepted as soon as the value reaches the maximum;
    /// otherwise Close appears then and accepts. Cancelling rejects.
    int exec(bool closeWhenDone);

public slots:
    /// How far the job is, from 0 to the maximum.
    void SetValue(int value);
    /// What the job does now, shown above the bar.
    void SetText(const QString& text);

signals:
    /// The operator pressed Cancel; the display is about to be rejected.
    void signalCancel();
    /// The operator pressed Retry; the display stays.
    void signalRetry();

protected:
    /// For a subclass that changes its text or place.
    QPushButton* RetryButton() const { return m_pBtnRetry; }

protected slots:
    void slotBtnAcceptClicked() override;
    void slotBtnCancelClicked() override;
    void slotBtnCloseClicked() override;

private:
    bool isDone() const;
    void updateProgressButtons();

    QLabel* m_pLabText;
    QProgressBar* m_pBar;
    QPushButton* m_pBtnRetry;
    bool m_cancelVisible = false;
    bool m_closeVisible = false;
    bool m_closeWhenDone = false;
};
