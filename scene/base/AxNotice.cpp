#include "scene/base/AxNotice.h"
#include "scene/base/AxNoticeCollector.h"

#include <AxBaseUI/CAxMessageBox.h>

#include <QPointer>

namespace {
const QString warningSign = QStringLiteral(":/images/Normal/Exclamation_mark.png");

enum class Buttons
{
    Confirm,
    ConfirmAndClose,
    ConfirmAndCancel,
    CloseAndCancel
};

int Show(QWidget* parent, const QString& sign, const QString& title, const QString& text,
         const QString& details, Buttons buttons, const QString& confirm = {})
{
    // On the heap, because its parent may be deleted while it is open.
    const QPointer<CAxMessageBox> box = new CAxMessageBox(parent);
    if (!sign.isEmpty())
        box->SetIcon(sign);
    box->SetWindowTitle(title);
    box->SetMsgText(text);
    box->SetDetails(details);
    box->SetBtnHidden(buttons == Buttons::CloseAndCancel,
                      buttons != Buttons::ConfirmAndCancel && buttons != Buttons::CloseAndCancel,
                      buttons != Buttons::ConfirmAndClose && buttons != Buttons::CloseAndCancel);
    if (!confirm.isEmpty()) {
        box->SetBtnOKText(confirm);
        box->SetCancelDefault(true);
    }
    const int answer = box->exec();
    delete box;
    return answer;
}
} // namespace

void AxShowNotice(QWidget* parent, const QString& title, const QString& text, const QString& details)
{
    if (!AxNoticeCollector::Collect(text, details))
        Show(parent, warningSign, title, text, details, Buttons::Confirm);
}

void AxShowSuccess(QWidget* parent, const QString& title, const QString& text, const QString& details)
{
    Show(parent, {}, title, text, details, Buttons::Confirm);
}

void AxShowClosableNotice(QWidget* parent, const QString& title, const QString& text)
{
    Show(parent, warningSign, title, text, {}, Buttons::ConfirmAndClose);
}

void AxShowProblem(QWidget* parent, const QString& title, const QString& text, const QString& details)
{
    Show(parent, warningSign, title, text, details, Buttons::CloseAndCancel);
}

bool AxAskQuestion(QWidget* parent, const QString& title, const QString& text, const QString& confirm)
{
    return Show(parent, warningSign, title, text, {}, Buttons::ConfirmAndCancel, confirm) ==
           QDialog::Accepted;
}
