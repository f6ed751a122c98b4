#include "host/NavigateMenu.h"
#include "interaction/CAxEarthManipulator.h"

NavigateMenu::NavigateMenu(CAxEarthManipulator* camera, QWidget* parent) : QMenu(tr("&Navigate"), parent)
{
    // The keys behind a tab belong to the globe and only stand there to be learnt.
    addAction(tr("&Home\tHome"), camera, [camera] { camera->home(0.0); });
    addAction(tr("&North up"), camera, [camera] { camera->slotHeading(0.0); });
    addAction(tr("Straight &down"), camera, &CAxEarthManipulator::slotResetPitch);
    addSeparator();
    // A fifth nearer, and exactly back.
    addAction(tr("Zoom &in\t+"), camera, [camera] { camera->slotZoom(400.0); });
    addAction(tr("Zoom &out\t-"), camera, [camera] { camera->slotZoom(-500.0); });
}
