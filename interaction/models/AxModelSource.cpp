#include "interaction/models/AxModelSource.h"

#include <osgDB/Registry>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include <cmath>
#include <optional>

namespace {
const QString metadataName = QStringLiteral("metadata.xml");
const QString modelElement = QStringLiteral("ModelMetadata");
const QString dataName = QStringLiteral("Data");
// What a system takes up in words, with room to spare; a file that is larger holds something else.
constexpr qint64 longestDescription = 1 << 20;

QString SourceText(const char* text)
{
    return QCoreApplication::translate("AxModelLayers", text);
}

std::optional<osg::Vec3d> ThreeNumbers(const QString& text)
{
    static const QRegularExpression between(QStringLiteral("[\\s,;]+"));
    const QStringList parts = text.trimmed().split(between);
    if (parts.size() != 3)
        return std::nullopt;
    osg::Vec3d numbers;
    for (int i = 0; i < 3; ++i) {
        bool isNumber = false;
        numbers[i] = parts[i].toDouble(&isNumber);
        if (!isNumber || !std::isfinite(numbers[i]))
            return std::nullopt;
    }
    return numbers;
}

QByteArray DescriptionOf(const QString& path, QString& fault)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && file.size() <= longestDescription)
        return file.readAll();
    fault = file.isOpen()
                ? SourceText(QT_TRANSLATE_NOOP("AxModelLayers", "%1 is far too long for a description."))
                      .arg(path)
                : SourceText(QT_TRANSLATE_NOOP("AxModelLayers", "%1 cannot be read: %2"))
                      .arg(path, file.errorString());
    return {};
}

void ReadMetadata(const QString& path, AxModelSource& source)
{
    QXmlStreamReader xml(DescriptionOf(path, source.fault));
    if (!source.fault.isEmpty())
        return;
    source.systemSource = metadataName;
    if (xml.readNextStartElement() && xml.name() != modelElement)
        xml.raiseError(SourceText(QT_TRANSLATE_NOOP("AxModelLayers", "it does not describe a model")));
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("SRS")) {
            source.coordinateSystem = xml.readElementText().trimmed();
        } else if (xml.name() == QLatin1String("SRSOrigin")) {
            const QString text = xml.readElementText();
            const auto origin = ThreeNumbers(text);
            source.origin = origin.value_or(osg::Vec3d());
            if (!origin)
                source.fault = SourceText(QT_TRANSLATE_NOOP("AxModelLayers",
                                                            "%1: SRSOrigin \"%2\" is not three numbers."))
                                   .arg(path, text.simplified().left(80));
        } else {
            xml.skipCurrentElement();
        }
    }
    if (xml.hasError())
        source.fault = SourceText(QT_TRANSLATE_NOOP("AxModelLayers", "%1, line %2: %3"))
                           .arg(path)
                           .arg(xml.lineNumber())
                           .arg(xml.errorString());
}

void ReadSidecars(const QFileInfo& model, AxModelSource& source)
{
    const QString stem = model.dir().filePath(model.completeBaseName());
    for (const char* ending : {"_wkt.prj", ".prj"}) {
        const QString path = stem + QLatin1String(ending);
        if (!source.systemSource.isEmpty() || !QFileInfo(path).isFile())
            continue;
        source.coordinateSystem = QString::fromUtf8(DescriptionOf(path, source.fault)).trimmed();
        source.systemSource = QFileInfo(path).fileName();
    }
    const QString offset = stem + QStringLiteral("_offset.xyz");
    if (!source.fault.isEmpty() || !QFileInfo(offset).isFile())
        return;
    const auto origin = ThreeNumbers(QString::fromLatin1(DescriptionOf(offset, source.fault)));
    source.origin = origin.value_or(osg::Vec3d());
    if (!origin && source.fault.isEmpty())
        source.fault =
            SourceText(QT_TRANSLATE_NOOP("AxModelLayers", "%1 does not hold three numbers.")).arg(offset);
}

// Catalogues name their descriptions of any file in the same way.
bool IsOfModel(const QString& path)
{
    QFile file(path);
    QXmlStreamReader xml(&file);
    return file.open(QIODevice::ReadOnly) && xml.readNextStartElement() && xml.name() == modelElement;
}

// The metadata.xml of a folder that somebody has chosen, or of one around a tile.
QString MetadataAround(QDir folder, int floors, bool isOnlyOfModel)
{
    for (int i = 0; i <= floors; ++i) {
        const QString path = folder.absoluteFilePath(metadataName);
        if (QFileInfo(path).isFile() && (!isOnlyOfModel || IsOfModel(path)))
            return path;
        if (!folder.cdUp())
            break;
    }
    return {};
}

void ExamineTree(const QString& metadata, AxModelSource& source)
{
    const QDir folder = QFileInfo(metadata).dir();
    source.path = metadata;
    source.name = folder.dirName();
    source.isTree = true;
    ReadMetadata(metadata, source);
}

void ExamineFile(const QFileInfo& file, AxModelSource& source)
{
    const QString suffix = file.suffix().toLower();
    source.path = file.absoluteFilePath();
    source.name = file.completeBaseName();
    source.bytes = file.size();
    source.isYUp = AxIsModelYUp(source.path);
    if (!file.isReadable())
        source.fault = SourceText(QT_TRANSLATE_NOOP("AxModelLayers", "%1 may not be read.")).arg(source.path);
    else if (suffix.isEmpty() ||
             !osgDB::Registry::instance()->getReaderWriterForExtension(suffix.toStdString()))
        source.fault = SourceText(QT_TRANSLATE_NOOP("AxModelLayers",
                                                    "\"%1\": OpenSceneGraph has no reader for \".%2\" here."))
                           .arg(file.fileName(), suffix);
    if (!source.fault.isEmpty())
        return;
    const int floors = suffix == QLatin1String("osgb") ? 2 : 0;
    if (const QString metadata = MetadataAround(file.dir(), floors, true); !metadata.isEmpty())
        ReadMetadata(metadata, source);
    else
        ReadSidecars(file, source);
}

QStringList ModelsIn(const QDir& folder)
{
    const QStringList kinds = AxModelSuffixes();
    QStringList roots;
    for (const QString& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        for (const QString& kind : kinds) {
            const QString root =
                folder.absoluteFilePath(name + QLatin1Char('/') + name + QLatin1Char('.') + kind);
            if (QFileInfo(root).isFile()) {
                roots += root;
                break;
            }
        }
    if (!roots.isEmpty())
        return roots;
    QStringList patterns;
    for (const QString& kind : kinds)
        patterns += QStringLiteral("*.") + kind;
    for (const QString& name : folder.entryList(patterns, QDir::Files, QDir::Name))
        roots += folder.absoluteFilePath(name);
    return roots;
}
} // namespace

QStringList AxModelSuffixes()
{
    return {QStringLiteral("osgb"), QStringLiteral("ive"), QStringLiteral("osgt"), QStringLiteral("osg"),
            QStringLiteral("obj"),  QStringLiteral("dae"), QStringLiteral("gltf"), QStringLiteral("glb"),
            QStringLiteral("ply"),  QStringLiteral("3ds"), QStringLiteral("stl"),  QStringLiteral("fbx"),
            QStringLiteral("flt"),  QStringLiteral("lwo"), QStringLiteral("ac")};
}

bool AxIsModelYUp(const QString& file)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    return suffix == QLatin1String("gltf") || suffix == QLatin1String("glb");
}

AxModelSource AxExamineModel(const QString& path)
{
    AxModelSource source;
    const QFileInfo file(path);
    source.path = file.absoluteFilePath();
    source.name = file.completeBaseName();
    if (file.isDir()) {
        const QString metadata =
            MetadataAround(QDir(file.absoluteFilePath()),
                           file.fileName().compare(dataName, Qt::CaseInsensitive) == 0 ? 1 : 0, false);
        if (metadata.isEmpty())
            source.fault =
                SourceText(
                    QT_TRANSLATE_NOOP("AxModelLayers",
                                      "The folder %1 has no metadata.xml. Choose the folder of the export "
                                      "that has it; models without it are loaded as files."))
                    .arg(source.path);
        else
            ExamineTree(metadata, source);
    } else if (!file.isFile()) {
        source.fault =
            SourceText(QT_TRANSLATE_NOOP("AxModelLayers", "%1: there is no such file.")).arg(source.path);
    } else if (file.fileName().compare(metadataName, Qt::CaseInsensitive) == 0) {
        ExamineTree(file.absoluteFilePath(), source);
    } else {
        ExamineFile(file, source);
    }
    return source;
}

QStringList AxModelRoots(const AxModelSource& source)
{
    if (!source.isTree)
        return {source.path};
    const QDir folder = QFileInfo(source.path).dir();
    const QStringList inData = ModelsIn(QDir(folder.filePath(dataName)));
    return inData.isEmpty() ? ModelsIn(folder) : inData;
}
