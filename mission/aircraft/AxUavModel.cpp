#include "mission/aircraft/AxUavModel.h"
#include "mission/aircraft/ModelNodeMaterialVisitor.h"
#include "scene/base/AxViewerLog.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Material>
#include <osgDB/ReadFile>
#include <osgDB/Registry>

#include <QCoreApplication>
#include <QFileInfo>

namespace {
// An arrowhead that points ahead, with a ridge, as long as an aircraft.
osg::ref_ptr<osg::Node> PlainMarker()
{
    const osg::Vec3 tip(0.0f, 1.0f, 0.0f), left(-0.7f, -0.8f, 0.0f), right(0.7f, -0.8f, 0.0f),
        notch(0.0f, -0.4f, 0.0f), ridge(0.0f, -0.3f, 0.35f);
    osg::ref_ptr<osg::Vec3Array> places = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array;
    const auto add = [&](const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c) {
        osg::Vec3 across = (b - a) ^ (c - a);
        across.normalize();
        for (const osg::Vec3& place : {a, b, c}) {
            places->push_back(place);
            normals->push_back(across);
        }
    };
    add(tip, left, ridge);
    add(tip, ridge, right);
    add(left, notch, ridge);
    add(ridge, notch, right);
    add(tip, notch, left);
    add(tip, right, notch);
    osg::ref_ptr<osg::Geometry> surface = new osg::Geometry;
    surface->setUseDisplayList(false);
    surface->setUseVertexBufferObjects(true);
    surface->setVertexArray(places);
    surface->setNormalArray(normals, osg::Array::BIND_PER_VERTEX);
    surface->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, static_cast<int>(places->size())));
    osg::ref_ptr<osg::Material> material = new osg::Material;
    const osg::Vec4 color(1.0f, 0.45f, 0.1f, 1.0f);
    material->setDiffuse(osg::Material::FRONT_AND_BACK, color);
    material->setAmbient(osg::Material::FRONT_AND_BACK, color * 0.5f);
    osg::ref_ptr<osg::Geode> marker = new osg::Geode;
    marker->addDrawable(surface);
    marker->getOrCreateStateSet()->setAttributeAndModes(material);
    return marker;
}
} // namespace

osg::ref_ptr<osg::Node> AxReadUavModel(EPlaneType type)
{
    const QString file = QCoreApplication::applicationDirPath() + QLatin1Char('/') +
                         GetPlaneStringByType(type) + QStringLiteral(".osgb");
    osg::ref_ptr<osg::Node> model;
    if (QFileInfo::exists(file)) {
        // The pseudo-loader multiplies each axis by its factor.
        const QByteArray name = (file + QStringLiteral(".1,1,1.scale")).toLocal8Bit();
        model = osgDB::readNodeFile(name.toStdString(), osgDB::Registry::instance()->getOptions());
    }
    // What is read of a broken file may have nothing in it.
    if (!model || !model->getBound().valid()) {
        qCWarning(axViewerLog).noquote()
            << "no model of an aircraft in" << file << "- a plain marker stands for it";
        model = PlainMarker();
    }
    model->setName("UavModel");
    ModelNodeMaterialVisitor visitor;
    model->accept(visitor);
    return model;
}
