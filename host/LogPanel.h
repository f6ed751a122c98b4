#pragma once
#include <QList>
#include <QPlainTextEdit>

/**
 * Shows lines as they come, newest last: the viewer's signals and the
 * program's log. What comes again while its line is among the last few has no
 * line of its own, but counts there. One panel at a time receives the log;
 * lines of other threads arrive a moment later. The console gets them as before.
 */
class LogPanel : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit LogPanel(QWidget* parent = nullptr);
    ~LogPanel() override;

    /// A line that replaces an earlier one of the same kind.
    void AppendOfKind(const QString& kind, const QString& line);

public slots:
    /// A line that repeats only itself.
    void AppendLine(const QString& line);

private:
    struct Recent
    {
        QString kind;
        int count;
    };

    QList<Recent> recent; ///< of the last lines, the newest last
};
