#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Image>
#include <osg/ref_ptr>

#include <QString>

class QImage;

/// A picture of Qt's resources, or a file, for the scene: rows from below, red, green, blue, alpha, with the
/// path as its file name. Null when it cannot be read.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Image> AxSceneImage(const QString& path);
/// The same of a picture that somebody has painted; no file name. Null for a null one.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Image> AxSceneImage(const QImage& picture);

/// The same picture for everybody who asks for it while somebody has it: not to be changed. GUI thread.
AXEARTHVIEWER_EXPORT osg::ref_ptr<osg::Image> AxSharedSceneImage(const QString& path);
