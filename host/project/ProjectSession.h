#pragma once
#include <AxData/project/AxProjectLock.h>
#include <AxData/project/AxRecovery.h>

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class AxProjectJournal;
struct AxProjectRead;
class CAxEarthViewer;
class QAction;
class QMenu;
class QWidget;
class RecentProjects;

/**
 * The project that is open: what the file menu does with it, the window's title, the question before changes
 * are thrown away, and what a program that died has left. Owned by the window; GUI thread.
 */
class ProjectSession : public QObject
{
    Q_OBJECT
public:
    /// The viewer and the window outlive it. Without a folder nothing is kept for recovery. Where nobody is
    /// expected at the window, nothing is asked.
    ProjectSession(CAxEarthViewer* viewer, QWidget* window, const QString& recoveryFolder, bool isUnattended);
    ~ProjectSession() override;

    /// New, Open, Save, Save as and the recent files; enabled by Start().
    void FillMenu(QMenu* menu);

    /// Once the map is loaded and the blocks of the command line are drawn, which are no changes. Offers what
    /// was left, then opens the file, if one is named; false when that cannot be opened.
    bool Start(const QString& file);

    /// Opens a file in the place of what is open, after asking; false when all stays as it was.
    bool Open(const QString& file);
    static bool IsProjectFile(const QString& file); ///< by its name

    /// Whether what is open may be left: asks where there is something to save, and where there is another
    /// reason to stay, a whole sentence. `otherwise` asks whether to go all the same, `go` is its button.
    bool MayLeave(const QString& reason, const QString& otherwise, const QString& go);
    /// The window closes: nothing is left to be recovered.
    void End();

    /// A text of the host's that goes with the project, by a name of its own: `look` tells it, `show` gets
    /// that of a project that is about to be shown. Empty for nothing. Both on the GUI thread.
    void KeepValue(const QString& name, std::function<QString()> look,
                   std::function<void(const QString&)> show);
    /// Some of such a text cannot be read: a whole sentence, told when all of the project is shown.
    void NoteUnread(const QString& text) { unread += text; }

    /// The folder of the file that is open, also as a copy, or is saved just now; empty for none.
    QString Home() const { return home; }

    /// Another reason not to leave, asked whenever it matters.
    void SetReasonToStay(std::function<QString()> reason) { reasonToStay = std::move(reason); }

    /// Files that were open, the last one first, as bytes to be kept.
    QByteArray Recent() const;
    void SetRecent(const QByteArray& kept);

signals:
    void Told(const QString& text); ///< for the status bar
    void RecentChanged();

private:
    void New();
    void ChooseFile();
    bool Save();
    bool SaveAs();
    /// `wanted` is the lock of the file, null where it is held already; it is taken over with success.
    bool SaveTo(const QString& file, std::unique_ptr<AxProjectLock> wanted = nullptr);
    /// Whether the file may be written although somebody else has changed it since it was opened here.
    enum class Overwrite
    {
        Yes,
        Elsewhere, ///< another name is wanted
        No,
    };
    Overwrite AskOverwrite(const QString& file);
    bool MayReplace(const QString& otherwise, const QString& go);
    /// False when another program has it and the pilot gives up; `isCopy` when he opens it all the same.
    bool TakeLock(const QString& file, bool& isCopy);
    static QString TakeOverText(const AxProjectLock& taken);
    bool TakeOver(AxProjectLock& taken, const QString& file, const QString& title);
    bool MayTake(AxProjectLock& wanted, const QString& file); ///< for saving under that name
    bool OpenRest(const QString& file, const AxProjectRead& look);
    AxProject Look() const;
    void ShowProject(const AxProject& project);
    void OfferRecoveries();
    bool Offer(AxRecovery& recovery);
    void Recover(AxRecovery& recovery);
    void OpenRecent(const QString& file);
    /// A hash of them; empty when the file cannot be read.
    static QByteArray ContentsOf(const QString& path);
    void ShowTitle();
    void Warn(const QString& title, const QString& text);
    QString Name() const;
    QString Folder() const; ///< where dialogs begin

    CAxEarthViewer* viewer;
    QWidget* window;
    QString recoveryFolder;
    bool isUnattended;
    std::function<QString()> reasonToStay;
    struct KeptValue
    {
        std::function<QString()> look;
        std::function<void(const QString&)> show;
    };
    QMap<QString, KeptValue> keptValues;
    QStringList unread;
    AxProject rest; ///< of the file, what nothing shows
    AxProjectJournal* journal;
    std::unique_ptr<AxProjectLock> lock;
    QString path;        ///< empty: it has never been saved under a name that is this program's
    QString home;        ///< as Home() tells
    QString copyOf;      ///< that file's name
    QByteArray contents; ///< as ContentsOf() told when the file was opened or saved
    RecentProjects* recent;
    QList<QAction*> actions;
    QString windowTitle; ///< without the project
};
