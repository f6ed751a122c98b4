#pragma once
#include <osg/ref_ptr>
#include <osgText/Font>

#include <QString>

/// Family of the overlay widgets' texts. Where the machine has no such font,
/// Qt is told which installed CJK fonts stand in for it.
QString AxOverlayFontFamily();

/// Font of texts drawn in the scene: "msyh.ttc" where osg finds it, else the
/// first installed CJK font, else osg's built-in one (null is never returned).
osg::ref_ptr<osgText::Font> AxSceneFont();
