#pragma once
#include <osg/Vec2d>
#include <osgGA/GUIEventHandler>

#include <QPointer>
#include <QString>

class CAxOsgDrawPointSet;
struct AxViewRay;

/**
 * The mouse on the icons of a set of mark points: a click selects, with Ctrl several, a drag moves, a double
 * click opens the information. It sees an event before the camera and the tool in hand do, and leaves them
 * what is none of its own. What it starts is done when the scene is not walked any more. GUI thread.
 */
class AxMarkMouse : public osgGA::GUIEventHandler
{
public:
    explicit AxMarkMouse(CAxOsgDrawPointSet* marks);

    bool handle(const osgGA::GUIEventAdapter& ea, osgGA::GUIActionAdapter& aa, osg::Object* node,
                osg::NodeVisitor* visitor) override;
    /// The mark whose icon the mouse is over; empty without.
    const QString& Hovered() const { return hovered; }

private:
    bool push(const osgGA::GUIEventAdapter& ea, const AxViewRay& ray);
    bool drag(const osgGA::GUIEventAdapter& ea, const osg::Camera& camera);
    bool release(const osgGA::GUIEventAdapter& ea);
    bool isFree() const;
    bool mayDrag(const QString& id) const;

    const QPointer<CAxOsgDrawPointSet> set;
    QString hovered;
    QString pressed;      // the mark on which the button went down
    osg::Vec2d pressedAt; // pixels
    osg::Vec2d grip;      // from the mark's foot to the mouse, pixels
    bool isHeld = false;  // the press and what follows is this one's own
    bool isDragged = false;
    bool isToggle = false;   // a click joins the mark to the selected ones, or takes it from them
    bool isOfDouble = false; // the release of a double click is still to come
};
