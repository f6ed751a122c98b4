#include "scene/base/AxFonts.h"
#include "scene/base/AxViewerLog.h"

#include <osg/observer_ptr>
#include <osgDB/FileUtils>
#include <osgDB/Options>

#include <QDirIterator>
#include <QFont>
#include <QStandardPaths>

namespace {
// Font files that carry Chinese, best first.
const char* const standInFiles[] = {"msyh.ttc",
                                    "msyh.ttf",
                                    "NotoSansCJK-Regular.ttc",
                                    "wqy-microhei.ttc",
                                    "wqy-zenhei.ttc",
                                    "DroidSansFallbackFull.ttf",
                                    "DroidSansFallback.ttf"};

QString FindStandInFile()
{
    const int wanted = static_cast<int>(std::size(standInFiles));
    int best = wanted;
    QString path;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::FontsLocation)) {
        QDirIterator files(folder, {QStringLiteral("*.ttc"), QStringLiteral("*.ttf")}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            for (int i = 0; i < best; ++i) {
                if (files.fileName().compare(QLatin1String(standInFiles[i]), Qt::CaseInsensitive) == 0) {
                    best = i;
                    path = file;
                }
            }
        }
    }
    return path;
}
} // namespace

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
    // Kept by the texts that use it, and not beyond: it must be gone before the libraries that read it are.
    // With options of its own it is not kept among OSG's files either.
    static osg::observer_ptr<osgText::Font> known;
    osg::ref_ptr<osgText::Font> font;
    if (known.lock(font))
        return font;
    // Asked first, because osg complains about each font file it fails to read.
    std::string file = osgText::findFontFile("msyh.ttc");
    if (file.empty())
        file = FindStandInFile().toLocal8Bit().toStdString();
    if (!file.empty())
        font = osgText::readRefFontFile(file, osg::ref_ptr<osgDB::Options>(new osgDB::Options));
    if (!font) {
        qCWarning(axViewerLog) << "no font with Chinese letters found; texts in the scene use osg's own font";
        font = osgText::Font::getDefaultFont();
    }
    known = font;
    return font;
}
