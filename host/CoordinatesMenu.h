#pragma once
#include <QMenu>

class CAxEarthViewer;
class KeptState;
class QActionGroup;

/// In which coordinates the read-out and the status bar show places, and in which they may be typed; the
/// choice is kept. The viewer outlives it; GUI thread.
class CoordinatesMenu : public QMenu
{
    Q_OBJECT
public:
    /// `kept` may be null.
    CoordinatesMenu(CAxEarthViewer* viewer, KeptState* kept, QWidget* parent);

private:
    void AskForSystem();
    void Follow();

    CAxEarthViewer* viewer;
    QActionGroup* group;
    QAction* other; ///< a system of PROJ
};
