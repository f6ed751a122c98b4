#pragma once
#include <osg/ref_ptr>
#include <osgText/Font>

#include <QString>

/// Family of the overlay widgets' texts. Where the machine has no such font,
/// Qt is told which installed CJK fonts stand in for it.
QString AxOverlayFontFamily();

/// Font of texts drawn in the scene, the same as that of the map's names: "msyh.ttc", or what the machine has
/// for Latin and Chinese, or else osg's own Latin letters. Never null.
osg::ref_ptr<osgText::Font> AxSceneFont();
