#pragma once
#include "interaction/models/AxModelPlacement.h"
#include "interaction/models/AxModelSource.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Group>
#include <osg/ref_ptr>
#include <osg/Vec3d>

#include <QList>
#include <QObject>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <memory>
#include <optional>
#include <vector>

class AxViewerParts;

/// No model is lifted or lowered farther than this, metres.
constexpr double axMostModelLift = 10000.0;

/// How a model is to be loaded.
struct AxModelOptions
{
    QString name;                     ///< for people; empty: AxModelSource::name
    QString coordinateSystem;         ///< as in AxModelSource, and in its place; empty: that one
    std::optional<osg::Vec3d> origin; ///< likewise
    std::optional<bool> isYUp;        ///< likewise
    AxModelHeights heights = AxModelHeights::OfSystem; ///< what its heights are counted from
    double lift = 0.0;                                 ///< metres that it is raised; below 0 lowered
    bool isVisible = true;                             ///< once it is there
};

/// One model on the map, or on its way there. A plain value.
struct AxModelLayer
{
    QString id;             ///< unique; also the name of its node
    QString name;           ///< for people
    QString path;           ///< AxModelSource::path
    QStringList files;      ///< AxModelRoots(), those that could be read
    AxModelOptions options; ///< as they are now, filled from the source; isVisible and lift change
    bool isLoading = false; ///< more of it may come
    int percent = 0;        ///< of the loading
    /// West, south, width and height of what is there, degrees; east of the antimeridian beyond 180. Nothing
    /// before there is any of it.
    std::optional<QRectF> extent;
    double lowest = 0.0;  ///< metres as the map has them, of what is there
    double highest = 0.0; ///< the same
    QString note; ///< what is amiss with it, for people: pictures that are missing and the like; else empty
};

/**
 * Models in the scene: photogrammetry exports (metadata.xml with Data/TILE/TILE.osgb, loaded level by level
 * as they are looked at) and any file that OpenSceneGraph reads. They are read beside the GUI thread and
 * shown piece by piece.
 *
 * The scene has "ModelRoot" from the first one on, below "SceneData"; below it a group "ModelLayer", in which
 * each layer has a node with its ID for a name, and below that each piece one with the name of its file.
 * Nodes of layers and pieces have the node mask 0x123, and 0 while the layer is hidden.
 *
 * Owned by the viewer, CAxEarthViewer::GetModelLayers(). GUI thread. A listener may do anything but delete
 * it.
 */
class AXEARTHVIEWER_EXPORT AxModelLayers : public QObject
{
    Q_OBJECT
public:
    /// For the viewer, which outlives it.
    explicit AxModelLayers(AxViewerParts& viewer);
    /// Calls loading off and waits for the file that is read just now.
    ~AxModelLayers() override;

    /// Begins to load what AxExamineModel() finds at the path; loaded() or failed() tells of the end. The new
    /// layer's ID; empty, with the reason in `why`, for what cannot be read or placed, and before the map is
    /// loaded. A path that is there already is shown, and its ID given, whatever the options say.
    QString Add(const QString& path, const AxModelOptions& options = {}, QString* why = nullptr);
    /// In the order in which they were added, those on their way among them.
    QList<AxModelLayer> All() const;
    std::optional<AxModelLayer> Find(const QString& id) const;
    /// These are false for an unknown ID. To remove one that is on its way calls its loading off.
    bool SetVisible(const QString& id, bool visible);
    bool SetLift(const QString& id, double metres); ///< false, too, beyond axMostModelLift and for no number
    bool Remove(const QString& id);
    void Clear(); ///< removes all

    /// The node of a layer, in world coordinates, with what is there of it; null for an unknown ID. Of an
    /// export each piece is an osg::PagedLOD, with the coarsest level at least or its file to read it from.
    osg::Group* NodeOf(const QString& id) const;
    /// For the viewer: the map counts its heights from the ellipsoid or, as it did first, from the sea. Puts
    /// each layer where it belongs.
    void PlaceAgain(bool isAboveEllipsoid);

signals:
    void added(QString id);   ///< it begins to be loaded
    void loaded(QString id);  ///< all pieces are there
    void changed(QString id); ///< it was shown, hidden, lifted, has another note, more pieces or percent
    void removed(QString id); ///< called off, too
    /// It could not be loaded; `why` is for people. It is removed right after, of which removed() tells.
    void failed(QString id, QString why);

private:
    struct Layer;
    struct Piece;
    struct Load;

    Layer* find(const QString& id) const;
    void run(Load& load);
    void hang(Layer& layer);
    void place(Layer& layer);
    void take(const QString& id, const Piece& piece, int percent);
    void end(const QString& id, const QString& fault);
    void note(const QString& id);

    AxViewerParts& viewer;
    std::vector<std::unique_ptr<Layer>> layers;
    osg::ref_ptr<osg::Group> root;  ///< "ModelRoot"
    osg::ref_ptr<osg::Group> group; ///< "ModelLayer"
    QThreadPool thread;
    bool isMapAboveEllipsoid = false;
};
