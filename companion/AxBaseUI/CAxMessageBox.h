#pragma once

#include <AxBaseUI/AxBaseUIExport.h>
#include <AxBaseUI/CAxBaseDialog.h>

class QLabel;
class QScrollArea;

/// A modal box with an icon and a message. exec() returns QDialog::Accepted or QDialog::Rejected.
class AXBASEUI_EXPORT CAxMessageBox : public CAxBaseDialog
{
    Q_OBJECT

public:
    explicit CAxMessageBox(QWidget* parent = nullptr);

    /// Path of a picture, normally a resource. Without a readable picture the box shows none.
    void SetIcon(const QString& path);

    /// Shown as it is: markup in it is not interpreted, line breaks are kept, long lines are wrapped.
    void SetMsgText(const QString& text);

    /// What the operator may want to know besides, in smaller print below the message, as plain as that;
    /// what is longer than ten lines is scrolled. Empty, as at first: nothing.
    void SetDetails(const QString& text);

private:
    QLabel* m_pLabIcon;
    QLabel* m_pLabText;
    QLabel* m_pLabDetails;
    QScrollArea* m_pDetails;
};
