#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Camera>
#include <osgText/Text>

#include <QString>

/**
 * The two texts drawn flat over the map: "Subtitles" in the upper left corner
 * and "Prompt" in the lower right one.
 *
 * One for the whole process, made on first use. Its camera is handed to the
 * scene of the viewer that starts up. GUI thread only.
 */
class AXEARTHVIEWER_EXPORT AxHeadUpText
{
public:
    /// The one of the process.
    static AxHeadUpText& Instance();

    /// Fits the camera and the texts' corners to a widget of this size in pixels.
    void SetSize(int width, int height);
    /// Shows a text in its corner; an empty one hides it.
    void SetSubtitles(const QString& text);
    void SetPrompt(const QString& text);

    /// Draws the texts; it stays this object's.
    osg::Camera* GetCamera() const { return camera.get(); }

private:
    AxHeadUpText();

    osg::ref_ptr<osg::Camera> camera;
    osg::ref_ptr<osgText::Text> subtitles;
    osg::ref_ptr<osgText::Text> prompt;
};
