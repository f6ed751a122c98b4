#include "scene/base/AxFonts.h"

#include <osgEarth/Registry>

#include <QFont>

QString AxOverlayFontFamily()
{
    static const QString family = [] {
        const QString name = QStringLiteral("微软雅黑");
        QFont::insertSubstitutions(name,
                                   {QStringLiteral("Microsoft YaHei"), QStringLiteral("Noto Sans CJK SC"),
                                    QStringLiteral("WenQuanYi Micro Hei"),
                                    QStringLiteral("Droid Sans Fallback"), QStringLiteral("DejaVu Sans")});
        return name;
    }();
    return family;
}

osg::ref_ptr<osgText::Font> AxSceneFont()
{
    if (osgText::Font* font = osgEarth::Registry::instance()->getDefaultFont())
        return font;
    return osgText::Font::getDefaultFont();
}
