#pragma once
#include <QPlainTextEdit>

/**
 * Shows lines as they come, newest last: the viewer's signals and the
 * program's log. One panel at a time receives the log; lines of other threads
 * arrive a moment later. The console gets them as before.
 */
class LogPanel : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit LogPanel(QWidget* parent = nullptr);
    ~LogPanel() override;

public slots:
    void AppendLine(const QString& line);
};
