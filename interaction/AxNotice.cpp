#include "interaction/AxNotice.h"

#include <AxBaseUI/CAxMessageBox.h>

namespace {
int Show(QWidget* parent, const QString& title, const QString& text, const QString& details, bool isQuestion)
{
    CAxMessageBox box(parent);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(title);
    box.SetMsgText(text);
    box.SetDetails(details);
    box.SetBtnHidden(false, !isQuestion, !isQuestion);
    return box.exec();
}
} // namespace

void AxShowNotice(QWidget* parent, const QString& title, const QString& text, const QString& details)
{
    Show(parent, title, text, details, false);
}

bool AxAskQuestion(QWidget* parent, const QString& title, const QString& text)
{
    return Show(parent, title, text, QString(), true) == QDialog::Accepted;
}
