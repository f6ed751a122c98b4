#pragma once
#include <osg/Image>
#include <osg/ref_ptr>

class QImage;

/// A picture of QImage::Format_RGBA8888 as OSG takes it, whose rows go upwards.
osg::ref_ptr<osg::Image> SceneImageOf(const QImage& picture);
