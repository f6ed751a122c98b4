#pragma once
#include <QString>
#include <QStringList>

/**
 * While one lives, AxShowNotice() opens no box but hands its text to it, the innermost where there are
 * several: for whoever does one thing to many objects and tells of them all at the end. Questions are asked
 * all the same. GUI thread.
 */
class AxNoticeCollector
{
public:
    AxNoticeCollector();
    ~AxNoticeCollector();
    AxNoticeCollector(const AxNoticeCollector&) = delete;
    AxNoticeCollector& operator=(const AxNoticeCollector&) = delete;

    /// The texts since the last call, each with its details, in one line.
    QStringList Take();

    /// True when one lives, which has the text then.
    static bool Collect(const QString& text, const QString& details);

private:
    QStringList texts;
    AxNoticeCollector* outer;
};
