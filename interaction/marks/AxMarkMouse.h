#pragma once
#include <osg/Vec2d>
#include <osgGA/GUIEventHandler>

#include <QPointer>
#include <QString>

#include <optional>

class CAxOsgDrawPointSet;
struct AxViewRay;

/**
 * The mouse on the icons of a set of mark points: a click selects, with Ctrl several, a drag moves. It sees
 * an event before the camera and the tool in hand do, and leaves them what is none of its own; a double click
 * is the manipulator's. What it starts is done when the scene is not walked any more. GUI thread.
 */
class AxMarkMouse : public osgGA::GUIEventHandler
{
public:
    explicit AxMarkMouse(CAxOsgDrawPointSet* marks);

    bool handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, osg::Object* node,
                osg::NodeVisitor* visitor) override;
    /// The mark whose icon is under the mouse, where that was last, in the picture as it is now; empty
    /// without.
    QString Hovered() const;
    /// Whether the tool in hand leaves the mouse to marks.
    bool IsFree() const;
    /// The mouse has left the map; `at` in the time of its events, of which older ones may still come.
    void ForgetPointer(double at)
    {
        pointer.reset();
        leftAt = at;
    }

private:
    bool push(const osgGA::GUIEventAdapter& ea, const AxViewRay& ray);
    bool drag(const osgGA::GUIEventAdapter& ea, const osg::Camera& camera);
    bool release(const osgGA::GUIEventAdapter& ea);
    bool mayDrag(const QString& id) const;

    const QPointer<CAxOsgDrawPointSet> set;
    std::optional<osg::Vec2d> pointer; // in the picture, -1 to 1
    double leftAt = -1.0;
    QString pressed;      // the mark on which the button went down
    osg::Vec2d pressedAt; // pixels
    osg::Vec2d grip;      // from the mark's foot to the mouse, pixels
    bool isHeld = false;  // the press and what follows is this one's own
    bool isDragged = false;
    bool isToggle = false; // a click joins the mark to the selected ones, or takes it from them
};
