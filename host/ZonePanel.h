#pragma once
#include "analysis/CAxAncillaryProcess.h"

#include <osgEarth/Viewpoint>

#include <QWidget>

class CAxEarthViewer;
class CameraRest;
class QAction;
class QLabel;
class QModelIndex;
class QTreeView;
class ZoneListModel;

/**
 * The no-fly zones around the middle of the view, the nearest first. A click on
 * one flies there and makes it blink. Rows stay where they are while the mouse
 * is over them.
 */
class ZonePanel : public QWidget
{
    Q_OBJECT
public:
    /// The viewer outlives the panel.
    ZonePanel(CAxEarthViewer* viewer, const CameraRest* camera, QWidget* parent = nullptr);

    /// Begins to list; the viewer has its map and its zones.
    void Start();

    /// Shows and hides the zones on the map, in step with the button of the map.
    QAction* ShowAction() const { return showAction; }

    bool eventFilter(QObject* object, QEvent* event) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void BuildList();
    void ShowZones(bool visible);
    void OnRested(const osgEarth::Viewpoint& newView);
    void ListZones();
    void ShowRows(const QList<AxNoflyZoneNear>& zones);
    void Fly(const QModelIndex& index);

    CAxEarthViewer* viewer;
    ZoneListModel* model;
    QTreeView* list;
    QLabel* summary;
    QAction* showAction;
    osgEarth::Viewpoint view; ///< where the camera rests; not valid before it did
};
