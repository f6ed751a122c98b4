#pragma once
#include "interaction/editing/AxEditedShape.h"
#include "interaction/editing/CAxDragger.h"
#include "scene/base/AxEarthViewerExport.h"

#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <osg/Vec2d>
#include <osg/Vec3d>
#include <osg/Vec4f>
#include <osgEarthAnnotation/AnnotationEditing>

#include <QObject>

#include <map>
#include <memory>
#include <optional>
#include <vector>

class AxEdgeHandles;
class AxSnapTargets;
class CAxClampObjectCallback;
class CAxHandleAdapter;
struct AxViewRay;

namespace osgEarth {
class MapNode;
}

/**
 * The vertex handles of one map object, and the further ones that its kind has. It gives each a dragger,
 * leads the one that the mouse holds over the ground or over models, writes its places into the object's
 * vertices, and keeps the others on the terrain.
 *
 * Of all handles within 8 pixels of the mouse only the nearest is taken. A push
 * and the drags on a handle are marked as handled, so that they reach no one
 * else; moves, releases and double clicks are not. A drag ends with its
 * release, with CancelDrag(), or with the first move of the mouse without a
 * button. The object must be idle and neither hidden nor locked.
 *
 * Where the viewer's edit aids ask for it, polygons and strips have a fainter
 * handle in the middle of each edge: dragging it puts a vertex there.
 *
 * Reference-counted; the object holds it and whoever shows it adds it to the
 * scene. It outlives its object without harm. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxHandleAdapterEditor : public QObject,
                                                    public osgEarth::Annotation::AnnotationEditor
{
    Q_OBJECT
public:
    /// The draggers are those of the adapter's vertices. Without a map node
    /// nothing leads or clamps them. index, srsFlag and position are kept.
    explicit CAxHandleAdapterEditor(CAxHandleAdapter* adapter, osgEarth::MapNode* mapNode = nullptr,
                                    int index = 0, bool srsFlag = true,
                                    CAxDragger::DragType dragType = CAxDragger::DragSphere,
                                    osg::Vec3d position = osg::Vec3d());

    /// Brings the handles in step with the adapter's vertices. A drag goes on
    /// as long as its vertex is there.
    void Update();

    /// Whether a handle is held: the camera then stays where it is, and no new
    /// shape is begun.
    bool GetDrag() const { return dragging; }
    void SetDragState(bool drag) { dragging = drag; }
    /// Ends a drag that is going on with its vertex back where it was, or gone
    /// when the drag had put it there. False when there is none. The rest of
    /// the mouse's way until its release leads nowhere.
    bool CancelDrag();

    /// In the order of the vertices, and behind them the object's further handles. They stay the editor's.
    const std::vector<CAxDragger*>& GetDraggerList() const { return draggers; }
    /// The handle that the mouse is on: its longitude, latitude and altitude,
    /// and in `index` its vertex. Zeros, with `index` as it was, when there is none.
    osg::Vec3d GetHoveredPoint(int& index) const;
    /// Its vertex alone, or -1.
    int HoveredVertex() const;

    /// Of the handle that the mouse is on: red, green, blue, alpha from 0 to 1.
    const osg::Vec4f& GetPickColor() const { return pickColor; }
    void SetPickColor(const osg::Vec4f& value);
    /// Of the others.
    const osg::Vec4f& GetColor() const { return color; }
    void SetColor(const osg::Vec4f& value);
    /// Pixels: a sphere's radius, a box's edge.
    float GetSize() const { return size; }
    void SetSize(float value);
    /// What all handles look like.
    CAxDragger::DragType GetDragType() const { return dragType; }
    void SetDragType(CAxDragger::DragType type);
    /// These are stored for the host.
    int GetIndex() const { return index; }
    bool GetSrs() const { return srsFlag; }
    void SetSrs(bool flag) { srsFlag = flag; }
    const osg::Vec3d& getPlaneCenter() const { return planeCenter; }
    void setPlaneCenter(const osg::Vec3d& center) { planeCenter = center; }

    /// A colour of its own for the handle of one vertex, until it is removed.
    void SetDraggerColor(int vertex, osg::Vec4f own);
    void RemoveColorDragger(int vertex);
    void RemoveAllColorDragger();

    /// While on, a drag follows the models under the mouse, and handles are not clamped to the ground.
    void SetIntersectModelLayer(bool intersect);
    /// While on, the whole object is being moved and its handles are not clamped.
    void SetMoveAdapter(bool move);
    /// The handles will take the height of the next but one tile that arrives, however coarse.
    void ResetClampAlt();

    void traverse(osg::NodeVisitor& nv) override;

signals:
    /// A handle has been moved by hand: degrees, degrees, metres, and its vertex.
    void PositionChanged(double dLng, double dLat, double dAlt, int nIndex);

public slots:
    /// What its draggers tell: a drag begins or ends, and each place of it in degrees, degrees, metres.
    void slotDrag(bool bDrag);
    void slotPositionChanged(double dLng, double dLat, double dAlt, int nIndex);

protected:
    ~CAxHandleAdapterEditor() override;

private:
    // Handles (CAxHandleAdapterEditor.cpp)
    void _initEditor();
    void addDragger();
    void removeDraggersFrom(std::size_t first);
    void paint(CAxDragger& dragger);
    CAxDragger::DragType typeOf(std::size_t handle) const;
    void setUserValueOnAll(const char* name, bool value);
    void takeHeight(double lng, double lat, double alt, int vertex);
    bool isClosed() const;
    bool mayEdit() const;
    bool hasEdgeHandles() const;
    std::optional<double> groundAt(double lng, double lat) const;
    void setEdges() const;
    void draw(osgUtil::CullVisitor& cv);

    // Mouse (CAxHandleAdapterEditorMouse.cpp)
    struct Handle
    {
        int vertex = -1;
        int edge = -1; ///< index of the edge's first vertex
    };
    bool handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    Handle handleUnder(const AxViewRay& ray) const;
    bool hover(const Handle& under);
    bool push(const AxViewRay& ray);
    void drag(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa);
    bool beginMoving();
    bool endDrag();
    void finishLater(void (CAxHandleAdapterEditor::*finish)());
    void commit();
    void giveUp();
    std::optional<osg::Vec3d> placeUnder(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa,
                                         const AxViewRay& target) const;
    std::optional<osg::Vec3d> placeOnModel(const AxViewRay& target) const;
    osg::Vec3d aided(const osg::Vec3d& wanted, const AxViewRay& target) const;
    void gatherSnapTargets();

    AxEditedShapeRef shape;
    osg::observer_ptr<osgEarth::MapNode> mapNode;
    osg::Vec4f pickColor{1.0f, 1.0f, 0.0f, 1.0f};
    osg::Vec4f color{0.0f, 1.0f, 0.0f, 1.0f};
    float size = 5.0f;
    const int index;
    std::vector<CAxDragger*> draggers; // owned as children
    std::size_t vertices = 0;          // of them, the further handles follow
    std::vector<AxFurtherHandle> further;
    std::vector<osg::ref_ptr<CAxClampObjectCallback>> clamps;
    bool dragging = false;
    std::map<int, osg::Vec4f> colorDraggers;
    CAxDragger::DragType dragType;
    bool srsFlag;
    osg::Vec3d planeCenter;
    bool intersectModel = false;
    bool moveAdapter = false;

    // What the mouse holds, from its push to its release.
    struct Grip
    {
        Handle handle;
        osg::ref_ptr<CAxDragger> dragger;
        osg::Vec2d pushed; ///< window position of the push
        osg::Vec2d offset; ///< from the handle's place to the mouse, pixels
        osg::Vec3d before; ///< the vertex at the push
        bool inserted = false;
        bool moved = false;
    };
    std::optional<Grip> grip;
    bool swallowDrag = false; ///< the drag was given up, its button is still held
    const std::unique_ptr<AxSnapTargets> snapTargets;
    const std::unique_ptr<AxEdgeHandles> edges;
};
