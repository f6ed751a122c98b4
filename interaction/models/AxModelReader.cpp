#include "interaction/models/AxModelReader.h"
#include "interaction/models/AxModelGeometry.h"
#include "scene/base/AxReaderNotices.h"

#include <osgDB/FileNameUtils>
#include <osgDB/ReadFile>
#include <osgDB/Registry>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace {
QString ReaderText(const char* text)
{
    return QCoreApplication::translate("AxModelLayers", text);
}

// What a reader remarks of materials that a file names and nobody has; without a name it means none.
QSet<QString> MissingMaterials(const QStringList& remarks)
{
    static const QRegularExpression material(QStringLiteral("unable to find material '([^']+)'"));
    QSet<QString> names;
    for (const QString& remark : remarks)
        if (const QRegularExpressionMatch match = material.match(remark); match.hasMatch())
            names += match.captured(1);
    return names;
}

// Each drive of the same picture names it otherwise.
QString PictureName(const std::string& file)
{
    return QFile::decodeName(osgDB::getSimpleFileName(osgDB::convertFileNameToUnixStyle(file)).c_str());
}
} // namespace

AxModelReader::AxModelReader(std::function<void()> toTell) : told(std::move(toTell)) {}

void AxModelReader::Close()
{
    const std::lock_guard<std::mutex> lock(mutex);
    told = nullptr;
}

void AxModelReader::amend(const std::function<bool()>& change)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (change() && told)
        told();
}

void AxModelReader::Miss(const QString& file, const QString& why)
{
    amend([this, &file, &why] {
        missingFiles.insert(QFileInfo(file).fileName(), why);
        return missingFiles.size() == 1;
    });
}

void AxModelReader::KeepGathered(const QString& file)
{
    const std::lock_guard<std::mutex> lock(mutex);
    gathered.insert(QFile::encodeName(file).toStdString());
}

osg::ref_ptr<osgDB::Options> AxModelReader::NewOptions()
{
    osg::ref_ptr<osgDB::Options> options = new osgDB::Options("noRotation");
    options->setReadFileCallback(this);
    options->setObjectCacheHint(osgDB::Options::CACHE_NONE);
    return options;
}

osg::ref_ptr<osg::Node> AxModelReader::Read(const QString& file, QString* why)
{
    const osg::ref_ptr<osgDB::Options> options = NewOptions();
    osgDB::ReaderWriter::ReadResult result =
        osgDB::Registry::instance()->readNode(QFile::encodeName(file).toStdString(), options);
    const osg::ref_ptr<osg::Node> node = result.getNode();
    if (node && AxIsDrawable(*node))
        return node;
    if (why) {
        const QString reason = QString::fromLocal8Bit(result.message().c_str()).simplified();
        *why = node || reason.isEmpty()
                   ? ReaderText(QT_TRANSLATE_NOOP("AxModelLayers", "\"%1\" holds nothing that can be drawn."))
                         .arg(QFileInfo(file).fileName())
                   : ReaderText(QT_TRANSLATE_NOOP("AxModelLayers", "\"%1\" cannot be read: %2"))
                         .arg(QFileInfo(file).fileName(), reason);
    }
    return nullptr;
}

osgDB::ReaderWriter::ReadResult AxModelReader::readNode(const std::string& file,
                                                        const osgDB::Options* options)
{
    const AxReaderNotices notices;
    osgDB::ReaderWriter::ReadResult result =
        osgDB::Registry::instance()->readNodeImplementation(file, options);
    amend([this, &notices] {
        const bool had = !missingMaterials.isEmpty();
        missingMaterials += MissingMaterials(notices.Lines());
        return had == missingMaterials.isEmpty();
    });
    if (!result.validNode()) {
        Miss(QFile::decodeName(file.c_str()));
        return result;
    }
    // The pager's own options hold this, too, and are given on to what is paged below.
    const qint64 lost = AxPrepareModel(*result.getNode(), const_cast<osgDB::Options*>(options));
    bool isGathered = false;
    amend([this, lost, &file, &isGathered] {
        isGathered = gathered.count(file) > 0;
        const bool isFirst = lost > 0 && dropped.empty();
        if (lost > 0)
            dropped[file] = lost;
        return isFirst;
    });
    if (isGathered) {
        osg::ref_ptr<osg::Node> node = result.takeNode();
        AxGatherModel(node);
        return node.get();
    }
    return result;
}

osgDB::ReaderWriter::ReadResult AxModelReader::readImage(const std::string& file,
                                                         const osgDB::Options* options)
{
    const AxReaderNotices notices;
    osgDB::ReaderWriter::ReadResult result =
        osgDB::Registry::instance()->readImageImplementation(file, options);
    amend([this, &file, &result] {
        // Readers try more than one folder.
        const bool had = !missingPictures.isEmpty();
        if (result.validImage())
            missingPictures.remove(PictureName(file));
        else
            missingPictures.insert(PictureName(file));
        return had == missingPictures.isEmpty();
    });
    return result;
}

QString AxModelReader::Note() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    QStringList notes;
    if (!missingPictures.isEmpty())
        notes += ReaderText(QT_TRANSLATE_NOOP("AxModelLayers",
                                              "Pictures that are missing: %1, for one \"%2\"; drawn plain."))
                     .arg(missingPictures.size())
                     .arg(*missingPictures.begin());
    if (!missingMaterials.isEmpty())
        notes +=
            ReaderText(QT_TRANSLATE_NOOP("AxModelLayers",
                                         "Materials that are missing: %1, for one \"%2\"; drawn without."))
                .arg(missingMaterials.size())
                .arg(*missingMaterials.begin());
    qint64 lost = 0;
    for (const auto& [file, triangles] : dropped)
        lost += triangles;
    if (lost > 0)
        notes += ReaderText(QT_TRANSLATE_NOOP("AxModelLayers",
                                              "Triangles with corners that are nowhere: %1, left out."))
                     .arg(lost);
    const auto withReason = std::find_if(missingFiles.begin(), missingFiles.end(),
                                         [](const QString& why) { return !why.isEmpty(); });
    if (withReason != missingFiles.end())
        notes += ReaderText(QT_TRANSLATE_NOOP("AxModelLayers", "Files that are left out: %1. %2"))
                     .arg(QString::number(missingFiles.size()), *withReason);
    else if (!missingFiles.isEmpty())
        notes +=
            ReaderText(QT_TRANSLATE_NOOP("AxModelLayers", "Files that cannot be read: %1, for one \"%2\"."))
                .arg(missingFiles.size())
                .arg(missingFiles.firstKey());
    return notes.join(QLatin1Char(' '));
}
