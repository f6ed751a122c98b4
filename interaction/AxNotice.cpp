#include "interaction/AxNotice.h"

#include <AxBaseUI/CAxMessageBox.h>

namespace {
int Show(QWidget* parent, const QString& title, const QString& text, bool isQuestion)
{
    CAxMessageBox box(parent);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(title);
    box.SetMsgText(text);
    box.SetBtnHidden(false, !isQuestion, !isQuestion);
    return box.exec();
}
} // namespace

void AxShowNotice(QWidget* parent, const QString& title, const QString& text)
{
    Show(parent, title, text, false);
}

bool AxAskQuestion(QWidget* parent, const QString& title, const QString& text)
{
    return Show(parent, title, text, true) == QDialog::Accepted;
}
