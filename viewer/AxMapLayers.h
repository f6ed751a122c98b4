#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/ref_ptr>
#include <osgEarth/Map>

#include <QList>
#include <QObject>
#include <QRectF>
#include <QSet>
#include <QString>

#include <optional>

/// One layer of the map, as a list of layers shows it. A plain value.
struct AxMapLayer
{
    enum class Kind
    {
        Image,     ///< pictures on the ground
        Elevation, ///< heights of the ground
        Features   ///< lines, areas and names of the map file
    };

    int id = 0; ///< unique in the process
    Kind kind = Kind::Image;
    QString name;
    bool isVisible = true;
    double opacity = 1.0; ///< from 0 to 1; only pictures and features fade
    bool isAdded = false; ///< since the map was loaded: it can be removed
    QString fault;        ///< why it shows nothing, in words; empty when it does
    /// West, south, width and height of its data, degrees; nothing where that is not known.
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
    AxMapLayers() = default;
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
    /// the globe. Heights count as the map's own do.
    int AddImage(const QString& file, QString* why = nullptr);
    int AddElevation(const QString& file, QString* why = nullptr);
    /// False for a layer that was not added here.
    bool Remove(int id);

signals:
    /// A layer was added, removed, shown, hidden or faded.
    void changed();
    /// Heights were added: the layer's name and its file.
    void elevationAdded(const QString& name, const QString& file);

private:
    osg::ref_ptr<osgEarth::Map> map;
    QSet<int> added;
};
