#pragma once

#include <AxBaseUI/AxBaseUIExport.h>

#include <QDialog>
#include <QPoint>

class QLabel;
class QPushButton;
class QVBoxLayout;

/// The base of the application's modal dialogs: a frameless QDialog that paints its own frame and title,
/// in colours of its own so that it reads the same on a dark and on a light desktop. It is moved by
/// dragging any part that takes no input itself.
///
/// Its three buttons are, in this order, OK, Cancel and the title bar's close button. Enter presses the
/// focused button, else OK, else whatever remains; Escape does what the close button does; Tab goes through
/// the inputs and then OK and Cancel. Created on the stack or owned by its Qt parent; GUI thread only.
class AXBASEUI_EXPORT CAxBaseDialog : public QDialog
{
    Q_OBJECT

public:
    explicit CAxBaseDialog(QWidget* parent = nullptr);

    /// The text in the title bar.
    void SetWindowTitle(const QString& title);
    /// Texts of the buttons, in place of "OK" and "Cancel".
    void SetBtnOKText(const QString& text);
    void SetBtnCancelText(const QString& text);

    /// Hides OK, Cancel and close. When all three are hidden close stays, so that a dialog can always be
    /// seen to have a way out. A Cancel button that stands alone reads "Close" unless it was given a text.
    void SetBtnHidden(bool okHidden, bool cancelHidden, bool closeHidden);

    /// Gives Cancel, while it is shown, the keyboard that OK has otherwise, so that Enter presses it until
    /// the operator goes to OK: for questions whose OK takes something away.
    void SetCancelDefault(bool isDefault);

protected slots:
    /// Runs when the operator presses OK; accepts.
    virtual void slotBtnAcceptClicked();
    /// Runs when the operator presses Cancel; rejects.
    virtual void slotBtnCancelClicked();
    /// Runs when the operator presses the close button or Escape, or closes the window; rejects.
    virtual void slotBtnCloseClicked();

protected:
    /// Where a subclass puts its content, between the title and the buttons.
    QVBoxLayout* ContentLayout() const { return m_pContentLayout; }
    QPushButton* OKButton() const { return m_pBtnOK; }
    QPushButton* CancelButton() const { return m_pBtnCancel; }

    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void updateButtons();
    bool isCancelFirst() const;

    QLabel* m_pLabTitle;
    QPushButton* m_pBtnClose;
    QPushButton* m_pBtnOK;
    QPushButton* m_pBtnCancel;
    QWidget* m_pButtonRow;
    QVBoxLayout* m_pContentLayout;
    QString m_okText;
    QString m_cancelText;
    bool m_okHidden = false;
    bool m_cancelHidden = false;
    bool m_closeHidden = false;
    bool m_cancelDefault = false;
    bool m_dragging = false;
    QPoint m_grip;
};
