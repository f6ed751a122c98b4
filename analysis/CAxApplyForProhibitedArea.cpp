#include "analysis/CAxApplyForProhibitedArea.h"
#include "viewer/CAxEarthViewer.h"

CAxApplyForProhibitedArea::CAxApplyForProhibitedArea(CAxEarthViewer* earthViewer, QObject* parent)
    : CAxOsgDrawRectange(earthViewer, parent)
{
}

int CAxApplyForProhibitedArea::CheckGeometry()
{
    return viewer ? CAxOsgDrawRectange::CheckGeometry() : -1;
}

void CAxApplyForProhibitedArea::Apply() {}

void CAxApplyForProhibitedArea::ResponseDoubleClickOnBlock()
{
    Apply();
}
