#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <QString>
#include <QStringList>

/// While it is there, what OpenSceneGraph's readers remark in this thread is kept out of the log, but for its
/// debug level, and can be asked for: they speak of their own matters, again and again, and name no file.
/// Other threads are not concerned, nor is a process whose log is not that of AxRouteSceneLog(). It goes in
/// the thread that made it, the innermost one first.
class AXEARTHVIEWER_EXPORT AxReaderNotices
{
public:
    AxReaderNotices();
    ~AxReaderNotices();
    AxReaderNotices(const AxReaderNotices&) = delete;
    AxReaderNotices& operator=(const AxReaderNotices&) = delete;

    /// What was remarked so far, a line each; the first thousand of them.
    const QStringList& Lines() const { return lines; }

    /// For the one that writes the log: whether a remark of this thread was taken.
    static bool Take(const QString& line);

private:
    AxReaderNotices* outer;
    QStringList lines;
};
