#pragma once
#include <QMenu>

class CAxEarthManipulator;

/// The menu of the camera's movements. Owned by its parent; GUI thread.
class NavigateMenu : public QMenu
{
    Q_OBJECT
public:
    /// The camera outlives the menu's actions.
    NavigateMenu(CAxEarthManipulator* camera, QWidget* parent);
};
