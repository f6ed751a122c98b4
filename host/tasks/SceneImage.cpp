#include "host/tasks/SceneImage.h"

#include <QImage>

#include <algorithm>

osg::ref_ptr<osg::Image> SceneImageOf(const QImage& picture)
{
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(picture.width(), picture.height(), 1, GL_RGBA, GL_UNSIGNED_BYTE);
    for (int row = 0; row < picture.height(); ++row)
        std::copy_n(picture.constScanLine(picture.height() - 1 - row), 4 * picture.width(),
                    image->data(0, row));
    return image;
}
