#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Drawable>
#include <osg/Node>
#include <osg/ref_ptr>
#include <osg/Vec3d>
#include <osgEarth/GeoData>

#include <QObject>
#include <QString>

#include <memory>

class CAxEarthViewer;

/**
 * The label beside a route: a panel of fixed size on the screen with the task's name and three buttons for
 * the directions of a three-direction route, and a line that links it to the route. It is shown whatever
 * else is near it, all its parts or none. Owned by whoever made it; deleting it, in one of its signals too,
 * takes it out of the scene. It may outlive the viewer. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT CAxTaskLable : public QObject
{
    Q_OBJECT
public:
    /// `position` is where the panel hangs, `link` the place on the route it is linked to. Before the
    /// viewer has read its map the label is empty and stays so. Not in the scene before AddToScene().
    CAxTaskLable(CAxEarthViewer* viewer, const QString& name, const osgEarth::GeoPoint& position,
                 const osgEarth::GeoPoint& link);
    ~CAxTaskLable() override;

    /// Below the viewer's draw group. Again changes nothing.
    void AddToScene();
    void RemoveFromScene();
    /// Never null. Its name is the one that the label was made with, as PressedBtnSignal() tells it.
    osg::Node* GetRootNode() const;

    /// Leads the line to another place.
    void UpdateLinkLine(const osgEarth::GeoPoint& link);
    void SetLinkVisible(bool visible);
    /// Another text on the panel; the name of the node stays.
    void UpdateTxt(const QString& text);
    /// Shows or hides the three buttons, and the panel below them. Without buttons it tells of no click.
    void SetImgVisible(bool visible);
    /// Shows button 1, 2 or 3 as the one that was clicked.
    void ShowChosen(int button);
    /// Puts the panel, its name and buttons among what is drawn in pixels over the scene.
    void ResetRenderSort();

signals:
    /// A click on button 1, 2 or 3; on the rest of the panel it counts as 3.
    void PressedBtnSignal(int button, QString name);

private slots:
    void slotMouseHov(osg::Drawable* drawable);
    void slotMouseLeftBtnPress(osg::Drawable* drawable);
    void slotMouseLeftBtnRelease(osg::Drawable* drawable);
    void slotMouseMoving(osg::Vec3d lngLatPos, osg::Vec3d worldCoordPos);

private:
    struct Parts;

    /// 1 to 3; 0 for a drawable of something else.
    int buttonOf(const osg::Drawable* drawable) const;
    void drawPanel();
    /// The mark under the pointer goes to that button.
    void ResetMark(int button);
    /// Of pressed buttons and of those under the pointer; with a release also of the one chosen before.
    void ResetCheckMark(bool released);
    void showStates();

    const std::unique_ptr<Parts> d;
};
