#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Camera>
#include <osgText/Text>

#include <QSize>
#include <QString>

/**
 * The two texts drawn flat over the map: "Subtitles" in the upper left corner
 * and "Prompt" in the lower right one.
 *
 * One for the whole process, made on first use. Its camera is handed to the
 * scene of the viewer that starts up; its nodes live no longer than a scene shows
 * them, because no node may be left when the process ends. GUI thread only.
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
    osg::Camera* GetCamera();
    /// Lets the nodes go, unless a scene still shows them. Size and texts are kept.
    void Release();

private:
    AxHeadUpText() = default;
    void Make();
    void Arrange();

    QSize size{1, 1};
    QString subtitlesText;
    QString promptText;
    osg::ref_ptr<osg::Camera> camera;
    osg::ref_ptr<osgText::Text> subtitles;
    osg::ref_ptr<osgText::Text> prompt;
};
