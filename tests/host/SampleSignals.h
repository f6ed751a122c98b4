#pragma once
#include <osg/Drawable>
#include <osg/Vec3d>

#include <QObject>
#include <QStringList>
#include <QVariant>

class SampleSignals : public QObject
{
    Q_OBJECT
signals:
    void nothing();
    void several(QString text, double number, bool flag);
    void lists(QStringList names, QVariant any);
    void places(osg::Vec3d place, osg::Drawable* drawable, osg::Drawable* none);
};
