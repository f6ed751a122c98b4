#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osgEarth/Map>

#include <QHash>
#include <QList>
#include <QObject>
#include <QRectF>
#include <QString>

#include <optional>

/// One layer of the map, as a list of layers shows it. A plain value.
struct AxMapLayer
{
    /// What it puts onto the globe.
    enum class Kind
    {
        Image,     ///< pictures on the ground
        Elevation, ///< heights of the ground
        Features   ///< lines, areas and names of the map file
    };

    int id = 0;              ///< unique in the process
    Kind kind = Kind::Image; ///< of its data
    QString name;            ///< in the map file, or that of its file
    bool isVisible = true;   ///< it may have a fault all the same
    double opacity = 1.0;    ///< from 0 to 1; only pictures and features fade
    bool isAdded = false;    ///< since the map was loaded: it can be removed
    QString fault;           ///< why it shows nothing, in words; empty when it does
    /// West, south, width and height of its data, degrees, beyond 180 in the east where it lies across that;
    /// nothing where that is not known.
    std::optional<QRectF> extent;
};

/**
 * The layers of a viewer's map: what a list of them shows, and layers that are added while the program runs.
 * There are none before the map is loaded.
 *
 * Owned by the viewer. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT AxMapLayers : public QObject
{
    Q_OBJECT
public:
    AxMapLayers();
    ~AxMapLayers() override;
    /// For the viewer, once it has read its map.
    void SetMap(osgEarth::Map* shown);

    /// From the uppermost down, by kind: features, pictures, heights.
    QList<AxMapLayer> All() const;
    /// False for an unknown layer; hiding heights flattens the ground below everything.
    bool SetVisible(int id, bool visible);
    /// Clamped to 0 to 1. False for an unknown layer, for heights and for what is no number.
    bool SetOpacity(int id, double opacity);
    /// Puts the pictures, or the heights in metres, of a file that GDAL opens over the others of their kind.
    /// 0, with the reason in `why` and nothing changed, for a file that cannot be opened or is not placed on
    /// the globe, and before the map is loaded. Heights count as the map's own do. A file that was added in
    /// the same way before is not put there twice: its layer is shown, and its ID given.
    int AddImage(const QString& file, QString* why = nullptr);
    int AddElevation(const QString& file, QString* why = nullptr);
    /// Reads the file of such pictures anew, as a layer knows it only as it was when it was opened. The new
    /// layer's ID: it is where the former one was, as visible and as opaque. 0, with the reason in `why` and
    /// the former one standing, for a file that cannot be opened any more and for other layers.
    int OpenImageAgain(int id, QString* why = nullptr);
    /// False for a layer that was not added here.
    bool Remove(int id);

signals:
    /// A layer was added, removed, moved, shown, hidden or faded, whoever did it.
    void changed();
    /// The ground is another one: heights were added, removed, moved, shown or hidden, whoever did it. What
    /// was read of the former ground does not hold any more.
    void groundChanged();
    /// Heights were added: the layer's name and its file.
    void elevationAdded(const QString& name, const QString& file);

private:
    class Watch;
    bool hasMap(QString* why) const;
    int shownAgain(const QString& file, AxMapLayer::Kind kind);

    osg::ref_ptr<osgEarth::Map> map;
    osg::ref_ptr<Watch> watch;
    /// A file that was added.
    struct Added
    {
        QString path;
        std::optional<QRectF> extent; ///< as the file itself tells it, where its layer knows no better
    };
    QHash<int, Added> added;
};
