#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Vec3d>

#include <QString>
#include <QStringList>

/// What a file of a 3-D model says of itself, before it is read. A plain value.
struct AxModelSource
{
    QString path; ///< of the model, or of the metadata.xml of an export; absolute
    QString name; ///< for people: that of the file, of an export that of its folder
    /// In which its coordinates are meant: what AxCoordinateSystem::Of() takes, "EPSG:32650+5773" and WKT
    /// with heights among it, or "ENU:39.9,116.3" (latitude, longitude) for metres to the east, north and up
    /// of that place on the ellipsoid. Empty where nothing tells it: the model cannot be placed then.
    QString coordinateSystem;
    osg::Vec3d origin;    ///< to be added to its coordinates, in that system
    bool isTree = false;  ///< the tiles of an export, which are loaded as they are looked at
    bool isYUp = false;   ///< its second axis points up, as in glTF; else the third does
    qint64 bytes = 0;     ///< of the model's file; 0 for an export
    QString fault;        ///< why it cannot be loaded, for people; else empty
    QString systemSource; ///< the name of the file that tells the system; empty for none
};

/// Looks at a model file, at the metadata.xml of a photogrammetry export, or at the folder which has one. The
/// system comes from metadata.xml beside the file or, of an OSGB, in one of the two folders above (of a file
/// only one with ModelMetadata counts), NAME_wkt.prj or NAME.prj; the origin from metadata.xml or
/// NAME_offset.xyz. The model itself is not read. Any thread.
AXEARTHVIEWER_EXPORT AxModelSource AxExamineModel(const QString& path);

/// What the names of model files end with, in small letters and without the dot; of several files of one name
/// the earlier kind counts. OpenSceneGraph need not have a reader for each.
AXEARTHVIEWER_EXPORT QStringList AxModelSuffixes();

/// Whether files of this kind have their second axis upwards.
bool AxIsModelYUp(const QString& file);

/// The files in which the levels of an export begin: Data/NAME/NAME.osgb, or all models in Data where there
/// are none of these; of a model file, that one. Absolute, by their names. Any thread.
AXEARTHVIEWER_EXPORT QStringList AxModelRoots(const AxModelSource& source);
