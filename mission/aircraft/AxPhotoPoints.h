#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/AutoTransform>
#include <osg/Camera>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/NodeCallback>
#include <osg/Vec3d>
#include <osgText/Text>

#include <QString>

#include <optional>
#include <string>
#include <vector>

/// Points in geocentric coordinates, drawn as AxGeocentric says.
class AXEARTHVIEWER_EXPORT AxPhotoGeometry : public osg::Geometry
{
public:
    AxPhotoGeometry();
    const char* libraryName() const override { return "ax"; }
    const char* className() const override { return "AxPhotoGeometry"; }
    void Append(const osg::Vec3d& world);
    using osg::Geometry::accept;
    void accept(osg::NodeVisitor& visitor) override;
    bool supports(const osg::PrimitiveFunctor&) const override { return false; }
    bool supports(const osg::PrimitiveIndexFunctor&) const override { return false; }
    void drawImplementation(osg::RenderInfo& info) const override;

private:
    osg::ref_ptr<osg::Vec3Array> points;
    osg::ref_ptr<osg::Vec4bArray> rest;
};

/// Which photo points are shown: the first so many, or none. It keeps the index of each as the camera counts,
/// and makes the primitives of their geometry anew, with the update traversal, when there are other ones to
/// be shown.
class AXEARTHVIEWER_EXPORT CAxPicPointCallback : public osg::NodeCallback
{
public:
    /// It is shown if all before it are.
    void Add(int index);
    void ShowFirst(std::size_t count);
    /// Of the points that are shown.
    std::size_t Shown() const { return shown; }
    void SetVisible(bool visible);
    bool IsVisible() const { return isVisible; }
    /// Has the primitives built anew, over all points.
    void Rebuild() { isBuilt = false; }
    int Index(std::size_t point) const { return indices[point]; }
    std::size_t Count() const { return indices.size(); }

    void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;

private:
    std::vector<int> indices;
    std::size_t shown = 0;
    bool isVisible = true;
    bool isBuilt = false;
};

/// Where an aircraft took photos: green points, with the number of the one under the mouse. GUI thread.
class AXEARTHVIEWER_EXPORT AxPhotoPoints
{
public:
    /// Null until a point was added.
    osg::Geode* Node() const { return geode; }
    /// The first point makes the node, of that name. Returns whether it did.
    bool Add(int index, const osg::Vec3d& world, const std::string& name);
    /// All points are shown that there are.
    void ShowAll();
    /// The first so many are shown, the others kept.
    void ShowFirst(std::size_t count);
    /// Of those that are not shown, up to the next one with that number as the camera counts; none without
    /// it.
    void ShowThrough(int index);
    void SetVisible(bool visible);
    /// Takes them out of the scene; the next one begins anew.
    void Remove();
    /// Of the points that are shown.
    int Count() const { return callback ? static_cast<int>(callback->Shown()) : 0; }

    /// The shown point next to a geocentric place on the screen of a camera, if it is within a few pixels.
    std::optional<std::size_t> Near(const osg::Vec3d& world, const osg::Camera& camera) const;
    /// Shows the number of that one, or of none.
    void Hover(std::optional<std::size_t> point, const QString& text);
    bool IsHovered() const { return hovered.has_value(); }
    /// The number of a point as the camera counts.
    int Index(std::size_t point) const { return callback->Index(point); }
    /// The label of the hovered point, for the scene; never null.
    osg::Node* Label() const { return label; }

    AxPhotoPoints();

private:
    osg::ref_ptr<osg::Geode> geode;
    osg::ref_ptr<AxPhotoGeometry> geometry;
    osg::ref_ptr<CAxPicPointCallback> callback;
    std::vector<osg::Vec3d> places; // geocentric
    std::optional<std::size_t> hovered;
    bool isVisible = true;
    const osg::ref_ptr<osg::AutoTransform> label;
    const osg::ref_ptr<osgText::Text> letters;
};
