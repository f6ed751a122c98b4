#include "host/LogPanel.h"

#include <QMutex>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTime>

#include <algorithm>

namespace {
constexpr int keptLines = 5000;
// As many signals tell of one thing that happened, by turns when it happens again.
constexpr int recentLines = 6;

QMutex receiverMutex;
LogPanel* receiver = nullptr;
QtMessageHandler consoleHandler = nullptr;

void HandleMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (consoleHandler)
        consoleHandler(type, context, text);
    if (!context.category || qstrncmp(context.category, "ax.", 3) != 0)
        return;
    const QString line = QString::fromLatin1(context.category) + QStringLiteral(": ") + text;
    QMutexLocker lock(&receiverMutex);
    if (receiver)
        QMetaObject::invokeMethod(receiver, "AppendLine", Qt::QueuedConnection, Q_ARG(QString, line));
}
} // namespace

LogPanel::LogPanel(QWidget* parent) : QPlainTextEdit(parent)
{
    setReadOnly(true);
    setMaximumBlockCount(keptLines);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    // A small window is the map's.
    setMinimumHeight(2 * fontMetrics().lineSpacing());
    QMutexLocker lock(&receiverMutex);
    receiver = this;
    consoleHandler = qInstallMessageHandler(HandleMessage);
}

LogPanel::~LogPanel()
{
    QMutexLocker lock(&receiverMutex);
    receiver = nullptr;
    qInstallMessageHandler(consoleHandler);
}

void LogPanel::AppendLine(const QString& line)
{
    AppendOfKind(line, line);
}

void LogPanel::AppendOfKind(const QString& kind, const QString& line)
{
    QScrollBar* const bar = verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    // One block of the document a line, whatever breaks lines there.
    const QString text = QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz  ")) + line.simplified();
    const auto same =
        std::find_if(recent.begin(), recent.end(), [&kind](const Recent& one) { return one.kind == kind; });
    if (same == recent.end()) {
        appendPlainText(text);
        recent += {kind, 1};
        if (recent.size() > recentLines)
            recent.removeFirst();
    } else {
        QTextCursor place(document()->lastBlock());
        place.movePosition(QTextCursor::PreviousBlock, QTextCursor::MoveAnchor,
                           static_cast<int>(recent.end() - same) - 1);
        place.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
        place.insertText(QStringLiteral("%1  \u00d7%2").arg(text).arg(++same->count));
    }
    // Who reads further up is left there.
    if (isAtEnd)
        bar->setValue(bar->maximum());
}
