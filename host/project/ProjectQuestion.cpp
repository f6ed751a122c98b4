#include "host/project/ProjectQuestion.h"
#include "host/project/ProjectSession.h"

namespace {
constexpr int few = 8; // lines or names that a box shows
} // namespace

ProjectQuestion::ProjectQuestion(QWidget* window, const QString& title, const QString& text)
    : QMessageBox(QMessageBox::Question, title, text, QMessageBox::NoButton, window)
{
    setTextFormat(Qt::PlainText);
}

QAbstractButton* ProjectQuestion::Ask()
{
    exec();
    return clickedButton();
}

QString ProjectQuestion::Few(const QStringList& names)
{
    constexpr int longest = 40;
    QStringList shown;
    for (const QString& name : names.mid(0, few)) {
        const QString line = name.simplified();
        shown += line.size() > longest ? line.left(longest) + QStringLiteral("...") : line;
    }
    if (names.size() > few)
        shown += QStringLiteral("... (%1)").arg(names.size());
    return shown.join(QStringLiteral(", "));
}

QString ProjectQuestion::LeftOut(const QStringList& leftOut)
{
    if (leftOut.isEmpty())
        return {};
    QString text = QStringLiteral("\n\n") + ProjectSession::tr("This of it cannot be and is left out: %1")
                                                .arg(leftOut.mid(0, few).join(QStringLiteral("; ")));
    if (leftOut.size() > few)
        text += QStringLiteral("; ... (%1)").arg(leftOut.size());
    return text;
}
