#pragma once
#include "viewer/AxKeptPicture.h"
#include "viewer/capture/AxSideView.h"

#include <osgViewer/GraphicsWindow>
#include <osgViewer/Viewer>

#include <QRect>

class AxMagnifier;

/**
 * What a magnifier shows, drawn by the viewer's scene into its frames: before the frame into its corner, from
 * where it is copied, and over the frame when that is drawn. The copy costs its own pixels, and the frame
 * after it leaves everything as a frame without it does.
 *
 * GUI thread, the context current, within AxFrame's saved state.
 */
class AxLensPicture
{
public:
    AxLensPicture(const AxMagnifier& magnifier, osgViewer::Viewer& viewer,
                  osgViewer::GraphicsWindowEmbedded& window);

    /// Differs when the lens would show something else with everything else as it is; 0 without one.
    std::size_t Fingerprint() const;
    void DrawBefore();
    void ShowAfter();
    /// Gives back what the last picture needed.
    void Release();

private:
    QRect frame() const;

    const AxMagnifier& magnifier;
    osgViewer::Viewer& viewer;
    osgViewer::GraphicsWindowEmbedded& window;
    AxSideView eye;
    AxKeptPicture picture;
};
