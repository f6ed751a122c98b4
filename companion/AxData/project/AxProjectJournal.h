#pragma once

#include <AxData/AxDataExport.h>
#include <AxData/project/AxProject.h>

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>

class AxRecoveryWriter;

/// Keeps what is not saved yet in a recovery file, so that a program that is killed loses at most the edits
/// of its last second, and knows whether there is anything to save. It looks at the project within a second
/// of each Touch(), and rarely without one; a thread of its own compares and writes. The file goes when there
/// is nothing to save; what is left of it after the program's end is found by AxFindRecoveries(). GUI thread;
/// owned by its parent.
class AXDATA_EXPORT AxProjectJournal : public QObject
{
    Q_OBJECT

public:
    /// Says what the project holds now. Asked on the GUI thread; it should take no longer than a millisecond.
    using Look = std::function<AxProject()>;

    /// The folder is made when it is needed; without one nothing is kept, and only changes are told.
    AxProjectJournal(const QString& folder, Look look, QObject* parent = nullptr);
    /// What was looked at last is written before, and stays.
    ~AxProjectJournal() override;

    /// From now on this is what the file at that path holds, which may be empty: nothing has to be saved, nor
    /// recovered. Called after opening, after saving, and for a new project.
    void Begin(const QString& path, const AxProject& saved);

    /// Something may be another now. Costs next to nothing: of many calls the first one counts until it
    /// looks.
    void Touch();
    /// Looks at once, as for a question whether to save.
    void LookNow();
    /// Whether something differed from what is saved when it last looked.
    bool IsModified() const { return isModified; }
    /// What it saw then.
    const AxProject& Seen() const { return seen; }

    /// Waits until the file holds what was looked at; false when that takes longer, or fails.
    bool Flush(int milliseconds);

    /// Nothing of it is to be recovered: the pilot has thrown it away. It looks no more until Begin().
    void Drop();

signals:
    /// There is something to save now, or nothing any more.
    void modifiedChanged(bool modified);
    /// The recovery file cannot be written, for people; once until it can be again.
    void failed(const QString& fault);
    /// There is something now that AxWriteProject() would refuse, for people; once for each such thing. Told
    /// only where there is a folder.
    void refused(const QString& fault);

private:
    void Hand();

    Look look;
    std::unique_ptr<AxRecoveryWriter> writer;
    QTimer soon;
    QTimer seldom;
    QString path;
    AxProject saved;
    AxProject seen;
    bool isModified = false;
};
