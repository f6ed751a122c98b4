// The viewer as the place of outlines: which models a block meets, and national boundaries.
#include "viewer/AxModelOutlines.h"
#include "viewer/AxSceneStartup.h"
#include "viewer/AxViewerPrivate.h"

#include <QDir>
#include <QFileInfo>

void CAxEarthViewer::IntersectionModelLayer(CAxHandleAdapter* adapter)
{
    d->objects.IntersectModelLayers(adapter);
}

void CAxEarthViewer::slotRequestIntersection(QString strHandleID)
{
    d->modelOutlines->Ask(strHandleID);
}

bool CAxEarthViewer::AddBoundaries(const QString& file, QString* why)
{
    const QString path = file.isEmpty() ? AxSceneStartup::BoundariesFile() : file;
    QString fault;
    if (!d->map)
        fault = tr("The map is not open.");
    else if (!QFileInfo(path).isFile())
        fault = tr("There is no file %1.").arg(QDir::toNativeSeparators(path));
    if (why)
        *why = fault;
    if (fault.isEmpty())
        d->initBoundaries(d->map, path);
    return fault.isEmpty();
}
