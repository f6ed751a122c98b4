#pragma once
#include <AxData/tiles/AxTileFetch.h>

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QStringList>

class CAxEarthViewer;
class OfflineBox;
class QMenu;
class QWidget;

/**
 * Areas that are saved for use without a network: the box that saves them, and the files that are shown on
 * the map from then on, in each run, until they are removed from it. Owned by the window; the viewer outlives
 * it. GUI thread.
 */
class OfflineAreas : public QObject
{
    Q_OBJECT
public:
    OfflineAreas(CAxEarthViewer* viewer, QWidget* window);
    ~OfflineAreas() override;

    void FillMenu(QMenu* menu);
    /// Files that are not where they were.
    QStringList Missing() const;
    /// Does not look for it any more; nothing for a file that is shown.
    void Forget(const QString& file);
    /// Shows another file in the place of a missing one; false, with the reason told, where that fails.
    bool FindAgain(const QString& file, const QString& there);

    /// Everything to be kept from one run to the next: the files, and what was typed last.
    QByteArray Kept() const;
    /// Such a text of an earlier run; what cannot be read is none. The files are shown once the map is
    /// loaded.
    void SetKept(const QByteArray& text);

    /// Puts a file onto the map, or what it has become in the place of what it was; false, with the reason
    /// told, where that fails.
    bool Show(const QString& file);
    /// Files that are shown, or would be if they were there.
    QStringList Files() const { return shown.keys(); }

signals:
    void KeptChanged();
    void Told(const QString& text); ///< for the status bar

private:
    void Open();
    void FillMissing();
    void ShowKept();
    void OnLayers();
    bool IsSeen(const QString& file) const; ///< on the map, and not hidden

    CAxEarthViewer* viewer;
    QWidget* window;
    QPointer<OfflineBox> box;
    QPointer<QMenu> missing;  ///< a submenu for each one
    QMap<QString, int> shown; ///< IDs of their layers; 0: not on the map
    QByteArray typed;         ///< by the box
};
