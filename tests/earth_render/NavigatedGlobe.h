#pragma once

#include "OffscreenGlobe.h"
#include "WindowEvents.h"

#include <optional>
#include <osgEarth/GeoData>
#include <osgEarthUtil/EarthManipulator>
#include <vector>

/// A drawn map with a manipulator that gets its events by hand, with a clock
/// of its own: each frame is 25 ms.
class NavigatedGlobe : public WindowEvents
{
public:
    using Adapter = osgGA::GUIEventAdapter;

    explicit NavigatedGlobe(osgEarth::Map* map);

    /// Degrees and metres. Stands there until all tiles that this view wants are drawn.
    void showAt(double longitude, double latitude, double height, double heading, double pitch, double range);
    /// The same without waiting.
    void goTo(double longitude, double latitude, double height, double heading, double pitch, double range,
              double seconds = 0.0);

    bool send(Adapter* event) override;
    /// Window pixels, y upwards.
    void mouse(Adapter::EventType type, double x, double y, int button = Adapter::LEFT_MOUSE_BUTTON)
    {
        WindowEvents::mouse(type, button, x, y);
    }
    /// The manipulator's part of a frame, without drawing.
    void tick(double seconds = 0.025);
    /// A whole frame.
    void draw(double seconds = 0.025);

    /// The drawn surface under a pixel; none over space.
    std::optional<osg::Vec3d> surfaceAt(double x, double y);
    osg::Vec3d pixelOf(const osg::Vec3d& world) const;
    osg::Vec3d eye() const { return manipulator->getMatrix().getTrans(); }
    /// Metres of the eye above what is known of the ground.
    double eyeAboveKnownGround() const;
    /// Metres of the eye above what is known of the ground and what is drawn of it, the higher of the two.
    double eyeAboveGround() const;
    osgEarth::GeoPoint eyePlace() const;
    double pitch() const { return manipulator->getViewpoint().getPitch(); }
    bool isSound() const;

    /// Drawing and asking do not change what is asked about.
    mutable OffscreenGlobe globe;
    osg::ref_ptr<osgEarth::Util::EarthManipulator> manipulator;

private:
    osgEarth::MapNode& mapNode() const { return globe.mapNode(); }
    void takeView();
};

/// The shipped heights of the world and of the mountains around 105 W, 37.4 N:
/// valleys at 2400 m, Blanca Peak at 4370 m. No pictures.
osg::ref_ptr<osgEarth::Map> mapOfMountains();

/// What a camera did from frame to frame.
class Footage
{
public:
    /// Adds the present view as a frame.
    void shoot(const NavigatedGlobe& nav);
    /// The largest step between two frames as the eye feels it: metres over
    /// metres of range, plus radians of turn.
    double fastest() const;
    /// The largest change of that step from one frame to the next.
    double jerkiest() const;

private:
    std::vector<double> _steps;
    std::optional<osg::Matrixd> _last;
};
