// The viewer as the place of the magnifier and of pictures in any size.
#include "interaction/magnifier/AxMagnifier.h"
#include "viewer/AxViewerPrivate.h"
#include "viewer/capture/AxPictureCapture.h"

AxMagnifier* CAxEarthViewer::GetMagnifier() const
{
    return d->magnifier.get();
}

AxPictureCapture* CAxEarthViewer::GetPictureCapture() const
{
    return d->capture.get();
}
