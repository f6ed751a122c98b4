#include "Progress.h"

#include "ToolText.h"

#include <QTextStream>

#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {
constexpr int terminalMs = 100;
constexpr int otherMs = 2000;

bool IsTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(fileno(stderr)) != 0;
#endif
}
} // namespace

Progress::Progress(Kind kind)
    : m_isShown(kind == Kind::Always || (kind == Kind::Automatic && IsTerminal())), m_isTerminal(IsTerminal())
{
}

Progress::~Progress()
{
    End();
}

void Progress::Begin(const QString& task, qint64 steps)
{
    End();
    m_task = task;
    m_steps = steps;
    m_since.start();
}

void Progress::Step(qint64 done)
{
    if (!m_isShown || m_steps <= 0 || !m_since.hasExpired(m_isTerminal ? terminalMs : otherMs))
        return;
    m_since.restart();
    QTextStream out(stderr);
    const QString line = ToolText::tr("%1: %2 %").arg(m_task).arg(qMin<qint64>(100, done * 100 / m_steps));
    if (m_isTerminal)
        out << '\r' << line << Qt::flush;
    else
        out << line << Qt::endl;
    m_hasLine = m_isTerminal;
}

void Progress::End()
{
    if (m_hasLine)
        QTextStream(stderr) << '\r' << QString(m_task.size() + 8, QLatin1Char(' ')) << '\r' << Qt::flush;
    m_hasLine = false;
}
