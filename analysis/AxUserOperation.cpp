#include "analysis/AxUserOperation.h"
#include "analysis/CAxDrapeableNode.h"
#include "analysis/zones/AxZoneDrawing.h"
#include "scene/AxScene.h"
#include "scene/AxViewerParts.h"
#include "scene/base/AxProcessLocale.h"
#include "scene/base/AxViewerLog.h"

#include <OpenThreads/ScopedLock>
#include <osg/Geometry>
#include <osg/LineWidth>
#include <osg/MatrixTransform>
#include <osg/Program>
#include <osgDB/ReadFile>
#include <osgDB/Registry>
#include <osgEarth/DrapeableNode>
#include <osgEarth/MapNode>
#include <osgViewer/View>

#include <QCoreApplication>
#include <QFile>
#include <QPolygonF>
#include <QVector3D>

#include <cmath>

using osgEarth::DrapeableNode;
using osgEarth::MapNode;
using osgEarth::SpatialReference;
using osgEarth::Symbology::LineString;
using osgEarth::Symbology::Polygon;

namespace {
const char modelName[] = "Model";
const char zoneGroupName[] = "NoFlyGroup";
const char shapeGroupName[] = "Operation_GeomLoad";
const char drapeName[] = "DrapeableNode";
const char blendName[] = "bBlend";
const osg::Vec4f opaqueGreen(0.0f, 1.0f, 0.0f, 1.0f);
constexpr float shapeLineWidth = 2.0f;

/// The first node of that name, depth first.
osg::Node* FindNode(osg::Node* from, const std::string& wanted)
{
    struct Finder : osg::NodeVisitor
    {
        explicit Finder(const std::string& nodeName) : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN), name(nodeName)
        {
            setNodeMaskOverride(~0u); // what is hidden is found as well
        }
        void apply(osg::Node& node) override
        {
            if (found)
                return;
            if (node.getName() == name)
                found = &node;
            else
                traverse(node);
        }
        const std::string& name;
        osg::Node* found = nullptr;
    } finder(wanted);
    if (from)
        from->accept(finder);
    return finder.found;
}

osg::Group* FindGroup(osg::Node* from, const std::string& wanted)
{
    osg::Node* node = FindNode(from, wanted);
    return node ? node->asGroup() : nullptr;
}

void RemoveChildNamed(osg::Group& parent, const std::string& wanted)
{
    for (unsigned i = 0; i < parent.getNumChildren(); ++i)
        if (parent.getChild(i)->getName() == wanted) {
            parent.removeChild(i);
            return;
        }
}

bool HasProgram(const osg::Node& node)
{
    return node.getStateSet() && node.getStateSet()->getAttribute(osg::StateAttribute::PROGRAM);
}

// Null, with a line in the log, when there is no such file or it is empty.
osg::ref_ptr<osg::Shader> ReadShader(osg::Shader::Type type, const QString& path)
{
    QFile file(path);
    const QByteArray source = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    if (source.trimmed().isEmpty()) {
        qCWarning(axViewerLog).noquote()
            << "cannot read the shader" << path << "-"
            << (file.error() == QFileDevice::NoError ? QStringLiteral("the file is empty")
                                                     : file.errorString());
        return {};
    }
    return new osg::Shader(type, source.toStdString());
}

// Nothing for what is no point or has a part that is no finite number.
bool ToPoint(const QVariant& variant, osg::Vec3d& point)
{
    if (variant.userType() == QMetaType::QVector3D) {
        const QVector3D vector = variant.value<QVector3D>();
        point.set(vector.x(), vector.y(), vector.z());
    } else if (variant.userType() == QMetaType::QPointF || variant.userType() == QMetaType::QPoint) {
        const QPointF place = variant.toPointF();
        point.set(place.x(), place.y(), 0.0);
    } else if (variant.canConvert<QVariantList>()) {
        const QVariantList parts = variant.toList();
        if (parts.size() < 2 || parts.size() > 3)
            return false;
        point.set(0.0, 0.0, 0.0);
        for (int i = 0; i < parts.size(); ++i) {
            bool isNumber = false;
            point[i] = parts[i].toDouble(&isNumber);
            if (!isNumber)
                return false;
        }
    } else {
        return false;
    }
    return std::isfinite(point.x()) && std::isfinite(point.y()) && std::isfinite(point.z());
}

osg::ref_ptr<LineString> ToLine(const QVariant& value)
{
    osg::ref_ptr<LineString> line = new LineString;
    osg::Vec3d point;
    if (value.userType() == QMetaType::QPolygonF || value.userType() == QMetaType::QPolygon)
        for (const QPointF& place : value.value<QPolygonF>()) {
            if (ToPoint(place, point))
                line->push_back(point);
        }
    else if (value.canConvert<QVariantList>())
        for (const QVariant& part : value.toList())
            if (ToPoint(part, point))
                line->push_back(point);
    return line;
}
} // namespace

AxUserOperation::AxUserOperation(User_Operation userOperation)
    : osg::Referenced(true), osg::Operation("View Operation", false), kind(userOperation)
{
}

AxUserOperation::~AxUserOperation() = default;

void AxUserOperation::setEarthViewer(CAxEarthViewer* earthViewer)
{
    viewer = AxPartsOf(earthViewer);
}

void AxUserOperation::setUserPolygon(const Polygon& userPolygon)
{
    polygon = new Polygon(userPolygon);
}

void AxUserOperation::setUserMultiGeometry(const osgEarth::Symbology::MultiGeometry& userGeometry)
{
    multiGeometry = new osgEarth::Symbology::MultiGeometry(userGeometry);
}

void AxUserOperation::block()
{
    const OpenThreads::ScopedLock<OpenThreads::Mutex> lock(gate);
    while (!released)
        opened.wait(&gate);
}

void AxUserOperation::release()
{
    const OpenThreads::ScopedLock<OpenThreads::Mutex> lock(gate);
    released = true;
    opened.broadcast();
}

void AxUserOperation::operator()(osg::Object* object)
{
    auto* view = dynamic_cast<osgViewer::View*>(object);
    if (!view)
        return;
    osg::Group* scene = view->getSceneData() ? view->getSceneData()->asGroup() : nullptr;
    if (scene)
        Act(*scene);
    release();
}

void AxUserOperation::Act(osg::Group& scene)
{
    const std::string wanted = name.toStdString();
    switch (kind) {
    case LoadModel:
        LoadModelFile(scene);
        break;
    case RemoveModel:
        RemoveChildNamed(scene, modelName);
        break;
    case AddNoFlyZone:
        AddZone(scene);
        break;
    case RemoveNoFlyZone:
        if (osg::Group* zones = FindGroup(&scene, zoneGroupName))
            RemoveChildNamed(*zones, wanted);
        break;
    case DrawGeometry:
        DrawShape(scene);
        break;
    case ApplyLighting:
        Light(scene);
        break;
    case RemoveLighting:
        if (osg::Node* node = FindNode(&scene, wanted))
            if (HasProgram(*node))
                node->getStateSet()->removeAttribute(osg::StateAttribute::PROGRAM);
        break;
    }
}

const SpatialReference* AxUserOperation::MapSRS(osg::Group* scene) const
{
    if (viewer && viewer->Scene().MapSRS())
        return viewer->Scene().MapSRS();
    const MapNode* mapNode = scene ? MapNode::findMapNode(scene) : nullptr;
    return mapNode ? mapNode->getMapSRS() : nullptr;
}

void AxUserOperation::LoadModelFile(osg::Group& scene) const
{
    // File names are taken in the language of the process.
    AxSetProcessLocale();
    const QString path = value.toString();
    const osg::ref_ptr<osg::Node> model = osgDB::readRefNodeFile(QFile::encodeName(path).toStdString(),
                                                                 osgDB::Registry::instance()->getOptions());
    if (!model) {
        qCWarning(axViewerLog).noquote() << "cannot read the model file" << path;
        return;
    }
    model->setName(modelName);
    scene.addChild(model);
}

void AxUserOperation::Prepare()
{
    const SpatialReference* srs = kind == AddNoFlyZone ? MapSRS(nullptr) : nullptr;
    if (srs && polygon)
        prepared = AxDrawZone(name.toStdString(), position, *polygon, multiGeometry.get(), *srs);
}

void AxUserOperation::AddZone(osg::Group& scene)
{
    osg::Group* zones = FindGroup(&scene, zoneGroupName);
    const SpatialReference* srs = MapSRS(&scene);
    if (!zones || !srs || !polygon)
        return;
    if (!prepared)
        prepared = AxDrawZone(name.toStdString(), position, *polygon, multiGeometry.get(), *srs);
    RemoveChildNamed(*zones, prepared->getName());
    zones->addChild(prepared);
    prepared = nullptr;
}

void AxUserOperation::DrawShape(osg::Group& scene) const
{
    osg::Group* drawn = FindGroup(&scene, "Draw Group");
    const SpatialReference* srs = MapSRS(&scene);
    if (!drawn || !srs)
        return;
    osg::ref_ptr<osg::Node> shape;
    if (polygon && !polygon->empty())
        shape = AxDrawArea(*polygon, *srs, {opaqueGreen, opaqueGreen, shapeLineWidth});
    else
        shape = AxDrawLine(*ToLine(value), *srs, opaqueGreen, shapeLineWidth);
    if (!shape->getBound().valid()) {
        qCWarning(axViewerLog) << "nothing to draw: the operation has no points that make a shape";
        return;
    }
    osg::ref_ptr<osg::Group> shapes = FindGroup(drawn, shapeGroupName);
    if (!shapes) {
        shapes = new DrapeableNode;
        shapes->setName(shapeGroupName);
        drawn->addChild(shapes);
    }
    shapes->addChild(shape);
}

void AxUserOperation::Light(osg::Group& scene) const
{
    osg::ref_ptr<MapNode> mapNode = viewer ? viewer->Scene().MapNode() : nullptr;
    if (!mapNode)
        mapNode = MapNode::findMapNode(&scene);
    osg::Node* node = mapNode ? FindNode(mapNode, name.toStdString()) : nullptr;
    if (!node || HasProgram(*node))
        return;
    const QString folder = QCoreApplication::applicationDirPath();
    const osg::ref_ptr<osg::Shader> vertex =
        ReadShader(osg::Shader::VERTEX, folder + QStringLiteral("/lighting.vert"));
    const osg::ref_ptr<osg::Shader> fragment =
        ReadShader(osg::Shader::FRAGMENT, folder + QStringLiteral("/lighting.frag"));
    if (!vertex || !fragment)
        return;
    osg::ref_ptr<osg::Program> program = new osg::Program;
    program->setName("lightingShader");
    program->addShader(vertex);
    program->addShader(fragment);
    osg::StateSet* state = node->getOrCreateStateSet();
    state->setAttributeAndModes(program, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state->getOrCreateUniform(blendName, osg::Uniform::INT)->set(1);

    // A node that was lit before has its drape already.
    osg::Group* const drawn = viewer ? viewer->Scene().DrawGroup() : nullptr;
    osg::Group* home = drawn ? drawn : &scene;
    for (unsigned i = 0; i < home->getNumChildren(); ++i)
        if (home->getChild(i)->getName() == drapeName && home->getChild(i)->getStateSet() == state)
            return;
    osg::ref_ptr<CAxDrapeableNode> drape = new CAxDrapeableNode;
    drape->setName(drapeName);
    drape->setStateSet(state);
    drape->SetUpCamera(*mapNode->getMapSRS());
    home->addChild(drape);
}
