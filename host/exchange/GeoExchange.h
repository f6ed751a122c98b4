#pragma once
#include "scene/AxLatestWork.h"

#include <AxData/geofiles/AxGeoFile.h>

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class CAxBlock;
class CAxEarthViewer;
class QFileDialog;
class QMenu;
class QWidget;

/**
 * Areas and lines of files become blocks, as one step that can be undone, and blocks become files; with the
 * dialogs that go with it. Owned by the window; GUI thread, files are read beside it.
 */
class GeoExchange : public QObject
{
    Q_OBJECT
public:
    /// Viewer and window outlive it. `faultOf` tells why drawing would refuse a block that is drawn.
    GeoExchange(CAxEarthViewer* viewer, QWidget* window, std::function<QString(const QString& id)> faultOf);

    void FillMenu(QMenu* menu);
    /// The menu of blocks that are chosen in the list.
    void FillBlockMenu(QMenu* menu, const QStringList& ids);

    static bool IsGeoFile(const QString& file); ///< by its name
    /// Reads the files one after the other; the pilot chooses what becomes a block.
    void Import(const QStringList& files);

    /// Where the dialogs begin: the folder that was used last.
    QString Folder() const { return folder; }
    void SetFolder(const QString& used);

signals:
    void FolderChanged();
    void Told(const QString& text); ///< for the status bar

private:
    void ChooseFiles();
    void Export(const QStringList& ids);
    /// Where to, and in which format; nothing when the pilot cancels.
    struct Target
    {
        QString file;
        AxGeoFormat format;
    };
    std::optional<Target> AskWhere(const QString& name);
    void StartIn(QFileDialog& dialog) const;
    /// With a progress box while it takes long; nothing when the pilot cancels.
    std::optional<AxGeoContent> Read(const QString& file, const AxGeoReadOptions& options);
    /// Asks for the coordinate system of a file that names none.
    std::optional<AxGeoContent> ReadWithSystem(const QString& file);
    void ImportOne(const QString& file);
    /// With a progress box while it takes long, whose Cancel leaves the map as it was.
    void PutOnMap(std::vector<std::unique_ptr<CAxBlock>> records);
    void TellImported(const QStringList& ids, int wanted);
    void Tell(const QString& title, const QString& text, const QStringList& details);
    QStringList Chosen() const;

    CAxEarthViewer* viewer;
    QWidget* window;
    std::function<QString(const QString&)> faultOf;
    QString folder;
    QString lastSystem = QStringLiteral("EPSG:4326");
    AxLatestWork reading;
};
