#pragma once

#include <QElapsedTimer>
#include <QString>

/// Says on standard error how far a long task is; nothing at all about tasks that are done at once.
class Progress
{
public:
    enum class Kind
    {
        Automatic, ///< on a terminal only
        Always,
        Never,
    };
    explicit Progress(Kind kind);
    /// Ends the line.
    ~Progress();

    void Begin(const QString& task, qint64 steps);
    void Step(qint64 done);

private:
    void End();

    bool m_isShown;
    bool m_isTerminal;
    bool m_hasLine = false;
    QString m_task;
    qint64 m_steps = 0;
    QElapsedTimer m_since;
};
