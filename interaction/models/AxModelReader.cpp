#include "interaction/models/AxModelReader.h"
#include "interaction/models/AxModelGeometry.h"

#include <osgDB/FileNameUtils>
#include <osgDB/ReadFile>
#include <osgDB/Registry>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace {
QString ReaderText(const char* text)
{
    return QCoreApplication::translate("AxModelLayers", text);
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

void AxModelReader::Miss(const QString& file)
{
    amend([this, &file] {
        missingFiles.insert(QFileInfo(file).fileName());
        return missingFiles.size() == 1;
    });
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
    osgDB::ReaderWriter::ReadResult result =
        osgDB::Registry::instance()->readNodeImplementation(file, options);
    if (!result.validNode()) {
        Miss(QFile::decodeName(file.c_str()));
        return result;
    }
    // The pager's own options hold this, too, and are given on to what is paged below.
    const qint64 lost = AxPrepareModel(*result.getNode(), const_cast<osgDB::Options*>(options));
    if (lost > 0)
        amend([this, lost] {
            const bool isFirst = dropped == 0;
            dropped += lost;
            return isFirst;
        });
    return result;
}

osgDB::ReaderWriter::ReadResult AxModelReader::readImage(const std::string& file,
                                                         const osgDB::Options* options)
{
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
    if (dropped > 0)
        notes += ReaderText(QT_TRANSLATE_NOOP("AxModelLayers",
                                              "Triangles with corners that are nowhere: %1, left out."))
                     .arg(dropped);
    if (!missingFiles.isEmpty())
        notes +=
            ReaderText(QT_TRANSLATE_NOOP("AxModelLayers", "Files that cannot be read: %1, for one \"%2\"."))
                .arg(missingFiles.size())
                .arg(*missingFiles.begin());
    return notes.join(QLatin1Char(' '));
}
