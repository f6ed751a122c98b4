#pragma once
#include <QStringList>
#include <QtGlobal>

/// Counts the log lines that are written while it exists.
class LogLines
{
public:
    LogLines()
    {
        lines.clear();
        before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { lines += line; });
    }
    ~LogLines() { qInstallMessageHandler(before); }

    static inline QStringList lines;

private:
    QtMessageHandler before;
};
