#pragma once
#include "scene/AxTaskRoute.h"
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxAlgorthm/CAxPoint2D.h>
#include <AxAlgorthm/CAxVector3D.h>

#include <osg/Array>
#include <osg/Geode>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osg/Vec4f>
#include <osgEarth/GeoData>
#include <osgEarthAnnotation/LabelNode>
#include <osgEarthAnnotation/PlaceNode>
#include <osgEarthSymbology/Geometry>
#include <osgEarthSymbology/Style>

#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QString>
#include <QTimer>

#include <memory>
#include <string>
#include <vector>

class AxViewerParts;
class AxWorldGeometry;
class CAxBlock;
class CAxEarthViewer;
class CAxTask;
class CAxTaskLable;
namespace AxRouteRules {
struct Segments;
}

/**
 * The route of one task of a block, drawn on the globe: its line, the legs from and to home, up to four
 * markers of entry points, home, and the numbers of its points. The points themselves are the task's.
 *
 * Places are longitude and latitude in degrees and altitude in metres above the ellipsoid, unless they are
 * called geocentric. Owned by whoever made it; its object lets go of it with RemoveTask(), or when it is
 * destroyed. It may outlive its viewer and its object: without them it draws nothing. While its object is
 * gone it is not shown; AddTask() of the object that comes in its place shows it again. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxTaskPolygon : public QObject, public AxTaskRoute
{
    Q_OBJECT
public:
    /// Of the viewer that it draws into and the object of the block; neither is owned.
    CAxTaskPolygon(CAxEarthViewer* viewer, CAxHandleAdapter* adapter);
    /// Its nodes leave the scene.
    ~CAxTaskPolygon() override;

    QObject& AsObject() override { return *this; }
    void SetMapObject(CAxHandleAdapter* object) override;

    /// Which task of the block; unique from the start. Before it is added to a map object, which finds it by
    /// that ID.
    void SetTaskID(const QString& id) { taskID = id; }
    const QString& GetTaskID() const override { return taskID; }

    /// Draws the area of the task: its outline as longitude and latitude.
    void CreateNode(const std::vector<CAxPoint2D>& outline);
    /// Asks the task for its route and draws it, with its markers. Nothing without the block or the task.
    /// When the parameters allow no route, the one before goes and the operator is told by a box, during
    /// which events run.
    void ComputerAirLine();
    /// Draws these points as the route. None, or one that is no finite place: nothing changes.
    void CreateAirLine(const std::vector<CAxVector3D>& points);

    /// Routes of variable height, one for each entry point: AddAirLineFlying() replaces the one of that
    /// index, CreateAirLineFlying() draws the one of the entry point that is chosen, if there is one.
    void CreateAirLineFlying();
    void AddAirLineFlying(int index, const std::vector<CAxVector3D>& points);
    void ClearAirLineFlying();
    /// Geocentric places of their markers: replaces or inserts one; moves the markers there.
    void AddAirLineMarkerFlying(int index, const osg::Vec3d& world);
    void UpdateLineMarkerFlying();
    /// Makes the markers' places anew from those points that are markers.
    void CheckLineMarker(const QList<CAxVector3D>& points, const QList<QPair<int, CAxVector3D>>& markers);
    /// Moves markers to geocentric places.
    void UpdateLineMarker(const QMap<int, osg::Vec3d>& markers);

    /// How the route is drawn: 0 as one line; otherwise by what has been flown of it, see SetLastPt() and
    /// SetStartIndex().
    void UpdateAirLine(int mode);
    /// Where an interrupted flight stopped; 0, 0, 0 for none. What lies before it is grey.
    void SetLastPt(const osg::Vec3d& place) { lastPoint = place; }
    /// Without such a place: indices of the points between which the route is flown.
    void SetStartIndex(int index) { startIndex = index; }
    void SetEndIndex(int index) { endIndex = index; }
    /// Whether home has no marker.
    void SetHomeMarkerHidden(bool hidden) { homeMarkerHidden = hidden; }

    /// Colours of the numbers of the points from `first` to `last`, and of their rims.
    void UpdatePointColor(int first, int last, const osg::Vec4f& text, const osg::Vec4f& rim);
    /// Those of one point; nothing when it has none.
    void GetPointColor(int index, osg::Vec4f& text, osg::Vec4f& rim) const;
    /// Numbers the points of a geometry in place of those before, as many as the view has room for.
    void UpdatePointTxt(const osgEarth::Symbology::Geometry& points);

    /// Shows or hides the route with all that belongs to it; the area of the task.
    void SetAirLineVisible(bool visible);
    void SetVisible(bool visible);

    /// Index of the entry point, 0 to 3, -1 when none was chosen. Computes the route anew.
    void SetEntryPoint(int index) override;
    int GetEntryPoint() const { return entryPoint; }
    /// Draws the line wider, in orange, and over other routes.
    void SetHighlighted(bool wanted) override;
    bool IsHighlighted() const { return highlighted; }
    /// Whether a node is what the line is drawn with.
    bool IsLine(const osg::Node* node) const { return node && node == airLineNode; }
    /// Where the aircraft takes off and lands, moved onto the ground where that is known; null until set.
    /// Draws the route anew.
    void SetHomePoint(const CAxVector3D& position) override;
    const CAxVector3D& GetHomePoint() const override { return homePoint; }
    /// Whether it glides down to its landing point.
    void SetLandingMethod(bool downhill) override;
    bool GetLandingMethod() const { return landsDownhill; }

    /// The points of the route that is drawn; null until there is one.
    osgEarth::Symbology::Geometry* GetGeometry() const { return airLine.get(); }
    osg::Geode* GetAirLineNode() const { return airLineNode.get(); } ///< null until a route was drawn
    osg::Geode* GetFeatureNode() const { return featureNode.get(); } ///< null until CreateNode()
    CAxTaskLable* GetTaskLable() const; ///< null until ComputerAirLine() has drawn a route

    /// Takes all its nodes out of the scene.
    virtual void ClearFeatureNodeContained();

private slots:
    /// A button of the label chooses the direction: 1, 2, any other the third.
    void slotAirLineOmniDirectional(int button, QString name);

protected:
    /// Which points a line joins: all in a ring, each with the next, or pair by pair.
    enum EdgeMode
    {
        LineLoop = 0,
        LineStrip = 1,
        Lines = 2
    };
    /// Geocentric points with a line along them in one colour and, if `filled` and `fill` can be seen, the
    /// area inside. The width is in pixels.
    static osg::ref_ptr<AxWorldGeometry> CreateGeom(const osg::Vec4f& edge, const osg::Vec4f& fill,
                                                    float width, const std::vector<osg::Vec3d>& points,
                                                    bool filled, EdgeMode mode, osg::Array::Binding binding);
    /// A line along the points from `first` to the one before `last`, in one colour. Nothing where the
    /// colours of the geometry are no osg::Vec4Array.
    static void AddEdgePrimitiveSet(osg::Geometry& geometry, unsigned first, unsigned last,
                                    const osg::Vec4f& color, EdgeMode mode);
    /// One line for each pair of points, with a colour for each point. There may be fewer colours than
    /// points: the others are drawn in `missing`. Nothing without a binding for each vertex.
    static void AddEdgePrimitiveSet(osg::Geometry& geometry, int first, int count,
                                    const std::vector<osg::Vec4f>& colors, const osg::Vec4f& missing);
    /// The area that the points enclose, below lines that are there already; the points of the fill are
    /// added. What a ring that crosses itself winds round twice stays open.
    static void AddFillPrimitiveSet(AxWorldGeometry& geometry, const std::vector<osg::Vec3d>& ring,
                                    const osg::Vec4f& edge, const osg::Vec4f& fill);

    /// The drawn line through those points of the route, geocentric, with the ways from and to home.
    std::vector<osg::Vec3d> ComputerAirLineNormalPoint(const std::vector<int>& kept) const;
    /// Gives a drawable those points of the route in the colours of the drawing mode.
    void UpdateAirLinePoint(AxWorldGeometry& drawable, const std::vector<int>& kept) const;
    /// Adds the segment that leads to point i, coloured by the two indices, or by where the flight stopped,
    /// in the segment of that number; moves on to the point.
    void ComputerAirLineStartAndEnd(int i, osg::Vec3d& previous, const osg::Vec3d& current,
                                    AxRouteRules::Segments& segments) const;
    void ComputerAirLineContinueLastFlight(int i, osg::Vec3d& previous, const osg::Vec3d& current,
                                           int stoppedIn, AxRouteRules::Segments& segments) const;
    /// Adds the ways from the last point to home and from there to the first one. Nothing without a home.
    void ComputerAirLineHomePoint(const osg::Vec3d& first, const osg::Vec3d& last, double height,
                                  AxRouteRules::Segments& segments) const;
    /// Draws another part of the route, with its markers where they are.
    void ResetAirLine(const std::vector<CAxVector3D>& points);
    /// Puts markers at places of (longitude, latitude) and that altitude. None: nothing changes.
    void CreateLineMarker(const QList<QPair<int, CAxVector3D>>& markers, double height);
    /// Numbers these geocentric places in place of those before.
    void CreateTxts(const std::vector<osg::Vec3d>& points);
    /// The number of a point on its plate, and its dot; null beyond the map.
    osg::ref_ptr<osg::Node> AddPointTxt(int index) const;
    osg::ref_ptr<osgEarth::Annotation::LabelNode> CreateNameTxt(const std::string& text,
                                                                const osgEarth::GeoPoint& place,
                                                                const osg::Vec4f& fill,
                                                                const osg::Vec4f& rim) const;
    /// The dark plate behind a text of that style.
    static void CreateBgGeom(osgEarth::Symbology::Style& style, const osg::Vec4f& color);
    /// A round area of so many pixels round the place where it hangs, on top of those before.
    static void RenderCircleFan(osg::Geometry& geometry, float radius, const osg::Vec4f& color);
    /// Markers, numbers and the label's line are in the way of a route that is small on the screen.
    void HideMarkerPointTxt(bool hidden) const;
    /// Puts the label beside the beginning of the route. Nothing without one.
    void DrawLineLable();

private:
    struct State;

    static void setPoints(AxWorldGeometry& geometry, const std::vector<osg::Vec3d>& points,
                          osg::Array::Binding binding);
    CAxBlock* block() const;
    osg::Vec3d world(const osg::Vec3d& place) const;
    /// Where the points of a route are drawn, geocentric.
    std::vector<osg::Vec3d> worldOf(const osgEarth::Symbology::Geometry& points) const;
    double flightHeight() const;
    ETaskType taskType() const;
    void showHome();
    void dropRoute();
    void applyVisible() const;
    void lookAgain();
    void showDetail(const std::vector<int>& levels);
    std::vector<int> allPoints() const;
    void addToScene(osg::Node* node) const;
    std::vector<osg::Node*> routeNodes() const;

    CAxEarthViewer* viewer; // while `parts` is there
    QPointer<QObject> adapterAlive;
    CAxHandleAdapter* adapter; // while `adapterAlive` is there
    osg::ref_ptr<osg::Geode> featureNode;
    osg::Vec4f fillColor{0.3450980f, 0.0f, 0.3450980f, 0.4f};
    osg::Vec4f outlineColor;
    osg::Vec4f lineColor;
    osg::ref_ptr<osg::Geode> airLineNode;
    osg::ref_ptr<osgEarth::Symbology::Geometry> airLine;
    QString taskID;
    CAxVector3D homePoint;
    osg::ref_ptr<osgEarth::Annotation::PlaceNode> markerNodes[4];
    osg::ref_ptr<osgEarth::Annotation::PlaceNode> homeMarker;
    int entryPoint = -1;
    bool landsDownhill = false;
    int startIndex = 0;
    int endIndex = 0;
    osg::Vec3d lastPoint;
    int drawingMode = 0;
    bool homeMarkerHidden = false;
    QMap<int, std::vector<CAxVector3D>> flyingRoutes;
    QMap<int, osg::Vec3d> flyingMarkers; // geocentric

    QPointer<AxViewerParts> parts;
    QMetaObject::Connection adapterEnd;
    const std::unique_ptr<State> d; // AxTaskPolygonState.h
    QTimer look;                    // until numbers and detail are chosen for a view that has moved
    QPointer<CAxTaskLable> label;
    std::vector<osg::Vec3d> labelledPoints; // geocentric: the first two when it was made
    bool airLineVisible = true;
    bool areaVisible = true;
    bool highlighted = false;
};
