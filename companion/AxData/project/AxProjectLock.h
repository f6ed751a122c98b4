#pragma once

#include <AxData/AxDataExport.h>

#include <QString>

#include <memory>

class QLockFile;

/// Says that this program has a project file open, by a file beside it that ends in ".lock". A program that
/// dies leaves it behind, and the next one on the same computer takes it over. Of one that died on another
/// computer only people can tell: TakeOver(). One thread at a time.
class AXDATA_EXPORT AxProjectLock
{
public:
    /// What became of taking it.
    enum class Answer
    {
        Held,       ///< the project is this program's until Release()
        Taken,      ///< another program, or another part of this one, has it
        NotPossible ///< nothing can be written there: nobody is told, and nobody can save there either
    };

    AxProjectLock();
    ~AxProjectLock(); ///< releases it

    /// Takes the lock of a file, which need not exist yet, and releases that of the file before. Unless it is
    /// Held, the former one stays.
    Answer Take(const QString& path);
    /// The same when the owner that was found last is to lose it, because the pilot says that it is gone.
    /// A program on this computer that has the file keeps it.
    Answer TakeOver(const QString& path);
    void Release(); ///< nothing when none is held

    /// Whether this lock is that of the file.
    bool IsOf(const QString& path) const;
    /// Who had the lock when it was last found taken, for people: computer, process, and since when.
    QString Owner() const { return owner; }
    /// Whether that owner may be gone without anybody here being able to know, as one on another computer.
    bool MayBeGone() const { return mayBeGone; }

private:
    std::unique_ptr<QLockFile> lock;
    QString held; // the real path
    QString owner;
    bool mayBeGone = false;
};
