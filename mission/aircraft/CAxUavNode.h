#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <AxAlgorthm/AxMissionTypes.h>
#include <AxAlgorthm/CAxVector3D.h>

#include <osg/MatrixTransform>
#include <osg/ref_ptr>
#include <osg/Vec4f>
#include <osgEarth/GeoData>

#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class CAxEarthViewer;
namespace osgEarth {
class MapNode;
}

/// A photo of a flight of the past: its number as the camera counts, and where it was taken, as the places of
/// CAxUavNode are.
struct AxReplayPhoto
{
    int index = 0;     ///< the camera's number
    CAxVector3D place; ///< where it was taken
};

/**
 * One aircraft on the globe: its model, the panel with its place, the trail that it leaves, the points where
 * it took photos, the line of a flight that is replayed, and what its video camera sees of the ground.
 *
 * Places are longitude and latitude in degrees and altitude in metres in the heights of the map, as picks
 * and routes have them; CAxEarthViewer::GetHAE() makes them from heights above the ellipsoid. What is no
 * finite place on the globe changes nothing. Between messages the model is drawn on its way from the place
 * before to the newest one, and on the ground where that is known and higher; trail, photos and GetPosition()
 * take what was received.
 *
 * Made by CAxEarthViewer::AddAircraft(), whose child it is; who deletes it earlier takes it off the map. It
 * may outlive the viewer's scene and its signal object. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxUavNode : public QObject
{
    Q_OBJECT
public:
    /// `signalObject` is where its data come from, not owned; the viewer connects it. `hasPanel`: whether the
    /// information panel is shown.
    CAxUavNode(CAxEarthViewer* viewer, QObject* signalObject, bool hasPanel);
    /// Everything it has drawn leaves the scene.
    ~CAxUavNode() override;

    /// Makes the model, at a place, and returns the node that the caller puts into the scene. A model that
    /// cannot be read is replaced by a plain marker, and one line of the log says so. A further call
    /// makes the aircraft anew, where its node hangs; who follows it goes on. Null without a map.
    osg::Node* CreatePlane(EPlaneType type, const osgEarth::GeoPoint& point, osgEarth::MapNode* mapNode);
    EPlaneType GetPlaneType() const;
    osg::Node* GetNode() const; ///< what CreatePlane() returned; null before
    osg::Node*
    GetFollowedNode() const; ///< its middle is where the aircraft is drawn; null before CreatePlane()
    /// A lamp for models without shading of their own: a transform at a place, with the light of that number,
    /// which shines in a direction from there. The caller puts it into the scene and switches GL_LIGHT0 +
    /// number on where it is to shine. In the coordinates of the group that it is put into.
    static osg::ref_ptr<osg::MatrixTransform> CreateLightSource(int number, const osg::Vec3d& position,
                                                                const osg::Vec3& direction);

    /// Degrees, degrees, metres above the ellipsoid. What is no place on the globe changes nothing, nor does
    /// a place before CreatePlane().
    void SetPosition(double longitude, double latitude, double altitude);
    CAxVector3D GetPosition() const;      ///< as set last; null before
    bool HasPosition() const;             ///< whether a place was set since CreatePlane()
    CAxVector3D GetDrawnPosition() const; ///< where the model is drawn at the moment
    double GetDrawnHeading() const;       ///< of the model as drawn, degrees clockwise from north

    /// Shows or hides the model and its panel; the panel alone; trail and replayed line.
    void SetPlaneVisbled(bool visible);
    void SetPanelVisible(bool visible);
    void SetTrailVisible(bool visible);
    bool IsTrailVisible() const;
    /// Puts the model over lines and areas on the map, and the panel over all of them.
    void ResetRenderSort();
    /// In flight mode each place lengthens the trail. Off until set.
    void SetFlightMode(bool flying);
    bool GetFlightMode() const;
    /// The kind of block that is flown, as CAxBlock::EBlockType. In a video block the footprint is drawn.
    void SetBlockType(int type);
    int GetBlockType() const;
    void SetSignalObject(QObject* object);
    QObject* GetSignalObject() const; ///< null also after it was destroyed

    /// A landed aircraft stands on the ground wherever that is known, and goes on standing on it as finer
    /// ground is loaded.
    void SetLanded(bool landed);
    /// Without a link the model is grey, and the panel says for how many seconds.
    void SetLinkLost(bool lost, double seconds);
    /// Likewise where it is heard, but does not tell its place.
    void SetPositionLost(bool lost, double seconds);
    /// Where the video camera looks, degrees clockwise from north; none: ahead of the aircraft.
    void SetCameraHeading(std::optional<double> degrees);
    /// Whether the model is drawn between places; on from the start.
    void SetInterpolation(bool interpolated);
    bool IsInterpolation() const;
    /// The model is drawn where it was told last, not on its way there.
    void Jump();
    /// The panel of one that is lost is shown also where the others are hidden, with its title alone. Off
    /// until set.
    void SetLostLabel(bool shown);
    /// The mouse is no longer over the map: no photo point is under it.
    void ForgetPointer();
    /// A line over the place in the panel, to tell several aircraft apart; empty for none.
    void SetTitle(const QString& title);

    /// Draws a flight of the past as a line and takes away all trails before it.
    void CreateReplayFlightLine(const std::vector<CAxVector3D>& points);
    /// Its photo points, in place of those before; each "index,longitude,latitude,altitude", in the C locale.
    /// An entry that is none is left out, and one line of the log says how many were.
    void CreateReplayPicPoint(const QStringList& points);
    /// The same of a long flight whose place is moved to and fro: takes all of its photos at once, and shows
    /// none. Then so many are shown as ShowReplayPhotosTo() says; a photo that is told shows the next one
    /// with its number. RemovePicPoint() ends that.
    void SetReplayPhotos(const std::vector<AxReplayPhoto>& photos);
    void ShowReplayPhotosTo(int count);
    /// The line is drawn up to the point before this one.
    void SetPathIndexMask(int index);
    int GetPathIndexMask() const;

    /// Photo points: removes them all; shows every one; shows or hides them.
    void RemovePicPoint();
    void VisibleAllPicPoint();
    void SetShootPointVisible(bool visible);
    int GetPicPointCount() const; ///< as far as the replay has come
    /// Trail and replayed line: empties them; takes them out of the scene.
    void ClearAllTrailLine();
    void RemoveAllTrailLine();
    int GetTrailVertexCount() const;

signals:
    /// The replayed line is drawn up to another point.
    void CurIndexChanged(int index);

private slots:
    void slotPositionChanged(double longitude, double latitude, double altitude, quint64 time);
    void slotAttitudeChanged(double roll, double pitch, double yaw, quint64 time);
    void slotAddPicPoint(int index, double longitude, double latitude);
    void slotVideoData(quint16 angle, qint8 zoom, quint8 reserved, quint8 flag);
    void slotMouseMoved(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);

private:
    struct State;
    class Motion;

    void SetAttitude(double roll, double pitch, double yaw);
    void AddCurrPicPoint(int index, double longitude, double latitude);
    void CreateFlightPath(float width, const osg::Vec4f& color);

    void advance();
    void place();
    void lookAtGround();
    void turn();
    void updateText();
    void showLost();
    void tellFootprint();
    void updateFootprint();
    void addPhoto(int index, const CAxVector3D& place);
    void apply() const;
    bool isLostLabelShown() const;

    const std::unique_ptr<State> d;
};
