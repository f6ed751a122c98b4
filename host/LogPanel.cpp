#include "host/LogPanel.h"

#include <QMutex>
#include <QScrollBar>
#include <QTime>

namespace {
constexpr int keptLines = 5000;

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
    appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss.zzz  ")) + line);
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}
