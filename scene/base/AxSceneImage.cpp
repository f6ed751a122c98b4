#include "scene/base/AxSceneImage.h"

#include <osg/observer_ptr>

#include <QHash>
#include <QImage>

#include <cstring>

osg::ref_ptr<osg::Image> AxSceneImage(const QString& path)
{
    osg::ref_ptr<osg::Image> image = AxSceneImage(QImage(path));
    if (image)
        image->setFileName(path.toStdString());
    return image;
}

osg::ref_ptr<osg::Image> AxSceneImage(const QImage& painted)
{
    const QImage picture = painted.convertToFormat(QImage::Format_RGBA8888).mirrored();
    if (picture.isNull())
        return {};
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(picture.width(), picture.height(), 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (int row = 0; row < picture.height(); ++row)
        std::memcpy(image->data(0, row), picture.constScanLine(row), image->getRowSizeInBytes());
    return image;
}

osg::ref_ptr<osg::Image> AxSharedSceneImage(const QString& path)
{
    static QHash<QString, osg::observer_ptr<osg::Image>> known;
    osg::ref_ptr<osg::Image> image;
    if (!known.value(path).lock(image)) {
        image = AxSceneImage(path);
        known[path] = image.get();
    }
    return image;
}
