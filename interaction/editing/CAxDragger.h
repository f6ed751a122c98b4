#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Geode>
#include <osg/ref_ptr>
#include <osg/Vec4f>
#include <osgEarthAnnotation/Draggers>

#include <QObject>

/**
 * The handle of one vertex on the globe, drawn on top of the ground in pixels.
 * What the mouse does to it is decided by the editor that it belongs to, which
 * sees all handles at once.
 *
 * The user values "IntersectModel", "MoveAdapter", "ResetClampAlt" and "Hover"
 * (bool) tell CAxClampObjectCallback when to leave it alone.
 *
 * Reference-counted, held by its editor. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxDragger : public QObject, public osgEarth::Annotation::Dragger
{
    Q_OBJECT
public:
    /// What a handle looks like.
    enum DragType : int
    {
        DragSphere = 0, ///< of radius size
        DragBox = 1,    ///< of edge size
        DragNone = 2,   ///< shows nothing and is not taken by the mouse, as any other value
    };

    /// It stands on the globe of the map node, which may be null.
    CAxDragger(osgEarth::MapNode* mapNode, DragType type);

    /// Red, green, blue, alpha from 0 to 1, while the mouse is elsewhere.
    void setColor(const osg::Vec4f& value) override;
    const osg::Vec4f& GetColor() const { return color; }
    /// The same, while the mouse is on it or drags it.
    void setPickColor(const osg::Vec4f& value) override;
    const osg::Vec4f& GetPickColor() const { return pickColor; }
    /// Pixels: a sphere's radius, a box's edge.
    void SetSize(float pixels);
    float GetSize() const { return size; }
    /// A type that shows nothing has no shape.
    void SetDragType(DragType type);
    DragType GetDragType() const { return dragType; }
    bool HasShape() const { return shape.valid(); }
    /// The colour that it has at the moment.
    const osg::Vec4f& GetShownColor() const { return getHovered() || getDragging() ? pickColor : color; }
    /// The vertex that it stands for.
    void SetIndex(int vertex) { index = vertex; }
    int GetIndex() const { return index; }
    /// Geocentric metres.
    osg::Vec3d GetWorld() const { return getGeoTransform()->getMatrix().getTrans(); }
    /// Longitude, latitude and altitude; zeros before it has been placed.
    osg::Vec3d GetPlace() const;

    /// Told by the editor when the mouse comes and goes.
    void SetHovered(bool hovered) { setHover(hovered); }
    /// A drag begins and ends with signalDrag(); in between the place is told by signalPositionChanged().
    void BeginDrag();
    void DragTo(const osgEarth::GeoPoint& place);
    void EndDrag();

    void enter() override { updateShape(); }
    void leave() override { updateShape(); }
    void traverse(osg::NodeVisitor& nv) override;

signals:
    /// A drag begins (true) or ends.
    void signalDrag(bool bDrag);
    /// Moved by hand: degrees, degrees, metres, and the vertex.
    void signalPositionChanged(double dLng, double dLat, double dAlt, int nIndex);

protected:
    ~CAxDragger() override = default;

private:
    void updateShape();

    osg::Vec4f pickColor{1.0f, 1.0f, 0.0f, 1.0f};
    osg::Vec4f color{0.0f, 1.0f, 0.0f, 1.0f};
    float size = 5.0f;
    DragType dragType;
    int index = 0;
    osg::ref_ptr<osg::Geode> shape;
};
