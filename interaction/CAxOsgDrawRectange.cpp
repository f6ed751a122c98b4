#include "interaction/CAxOsgDrawRectange.h"
#include "viewer/CAxEarthViewer.h"

CAxOsgDrawRectange::CAxOsgDrawRectange(CAxEarthViewer* earthViewer, QObject* parent)
    : CAxHandleAdapter(earthViewer, parent)
{
    blockType = CAxBlock::RectangleBlock;
    JoinScene();
}

CAxOsgDrawRectange::~CAxOsgDrawRectange() = default;

void CAxOsgDrawRectange::SetAdapterVisible(bool, QString) {}

int CAxOsgDrawRectange::CheckGeometry()
{
    return -1;
}

void CAxOsgDrawRectange::ImportGeometry(const std::vector<osg::Vec3d>&, bool) {}

void CAxOsgDrawRectange::HandleEnd() {}

void CAxOsgDrawRectange::ClearPoints() {}

void CAxOsgDrawRectange::ResponseHandlePointMoved(osg::Vec3d, osg::Vec3d) {}

void CAxOsgDrawRectange::ResponseHandleMoved(osg::Vec3d, osg::Vec3d) {}

void CAxOsgDrawRectange::slotMoving(osg::Vec3d, osg::Vec3d) {}

void CAxOsgDrawRectange::slotPicked(osg::Vec3d, osg::Vec3d) {}
