#include "mission/aircraft/ModelNodeMaterialVisitor.h"
#include "scene/base/AxViewerLog.h"

#include <osg/Geode>
#include <osg/Material>
#include <osg/observer_ptr>
#include <osg/Program>
#include <osg/Transform>

#include <QCoreApplication>
#include <QFile>

#include <utility>

namespace {
// Towards the light in the frame of the place: up, a little to the south-west.
const osg::Vec3d lightFrom(-0.35, -0.35, 0.87);

osg::ref_ptr<osg::Shader> ReadShader(osg::Shader::Type type, const char* name)
{
    QFile file(QCoreApplication::applicationDirPath() + QLatin1String(name));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    return new osg::Shader(type, file.readAll().toStdString());
}

// One for all models, for as long as there are any.
osg::ref_ptr<osg::Program> ModelProgram()
{
    static osg::observer_ptr<osg::Program> shared;
    osg::ref_ptr<osg::Program> program;
    if (shared.lock(program))
        return program;
    const osg::ref_ptr<osg::Shader> vertex = ReadShader(osg::Shader::VERTEX, "/ModelMaterial.vert");
    const osg::ref_ptr<osg::Shader> fragment = ReadShader(osg::Shader::FRAGMENT, "/ModelMaterial.frag");
    if (!vertex || !fragment) {
        static bool isTold = false;
        if (!std::exchange(isTold, true))
            qCWarning(axViewerLog) << "no ModelMaterial.vert and ModelMaterial.frag in"
                                   << QCoreApplication::applicationDirPath()
                                   << "- aircraft are drawn without their shading";
        return nullptr;
    }
    program = new osg::Program;
    program->setName("ModelMaterial");
    program->addShader(vertex);
    program->addShader(fragment);
    shared = program.get();
    return program;
}

/// Turns the light against the model, so that it goes on coming from above.
class LightFromAbove : public osg::NodeCallback
{
public:
    explicit LightFromAbove(osg::Uniform* direction) : uniform(direction) {}

    void operator()(osg::Node* node, osg::NodeVisitor* visitor) override
    {
        // The transform next above the model turns it; the ones over that place it, upright.
        const osg::NodePath& path = visitor->getNodePath();
        osg::Matrixd turned;
        for (auto one = path.rbegin(); one != path.rend(); ++one)
            if (const osg::PositionAttitudeTransform* attitude =
                    (*one)->asTransform() ? (*one)->asTransform()->asPositionAttitudeTransform() : nullptr) {
                turned.makeRotate(attitude->getAttitude().inverse());
                break;
            }
        const osg::Vec3 direction(lightFrom * turned);
        osg::Vec3 before;
        uniform->get(before);
        constexpr float hardlySeen = 1e-3f;
        if ((direction - before).length() > hardlySeen)
            uniform->set(direction);
        traverse(node, visitor);
    }

private:
    const osg::ref_ptr<osg::Uniform> uniform;
};
} // namespace

ModelNodeMaterialVisitor::ModelNodeMaterialVisitor() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}

void ModelNodeMaterialVisitor::apply(osg::Node& node)
{
    shade(node);
    traverse(node);
}

void ModelNodeMaterialVisitor::apply(osg::Geode& geode)
{
    shade(geode);
    for (unsigned i = 0; i < geode.getNumDrawables(); ++i)
        shade(*geode.getDrawable(i));
}

// A drawable that is no child of a geode is a node like others.
void ModelNodeMaterialVisitor::apply(osg::Drawable& drawable)
{
    shade(drawable);
}

void ModelNodeMaterialVisitor::shade(osg::Node& node) const
{
    osg::StateSet* state = node.getStateSet();
    const auto* material =
        state ? dynamic_cast<const osg::Material*>(state->getAttribute(osg::StateAttribute::MATERIAL))
              : nullptr;
    if (!material)
        return;
    const osg::ref_ptr<osg::Program> program = ModelProgram();
    if (!program)
        return;
    constexpr osg::Material::Face face = osg::Material::FRONT;
    state->setAttributeAndModes(program);
    state->addUniform(new osg::Uniform("ambientColor", material->getAmbient(face)));
    state->addUniform(new osg::Uniform("diffuseColor", material->getDiffuse(face)));
    // Highlights are white whatever the material says.
    state->addUniform(new osg::Uniform("specularColor", osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f)));
    state->addUniform(new osg::Uniform("uShininess", material->getShininess(face)));
    const bool areColored = material->getColorMode() != osg::Material::OFF;
    state->addUniform(new osg::Uniform("vertexColors", areColored ? 1.0f : 0.0f));
    osg::ref_ptr<osg::Uniform> direction = new osg::Uniform("lightDirection", osg::Vec3(lightFrom));
    state->addUniform(direction);
    node.addUpdateCallback(new LightFromAbove(direction));
}
