#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Node>
#include <osg/ref_ptr>
#include <osgDB/Callbacks>
#include <osgDB/Options>

#include <QSet>
#include <QString>

#include <functional>
#include <mutex>

/**
 * Reads the files of one model, those as well that the pager asks for later, and makes them fit to be drawn:
 * triangles with vertices that are no numbers are dropped, what has no picture gets shades, all is kept in
 * buffers. It counts what is amiss.
 *
 * Reference counted, as the paged nodes that it has read hold it. Any thread.
 */
class AXEARTHVIEWER_EXPORT AxModelReader : public osgDB::ReadFileCallback
{
public:
    /// `told` is called, on any thread and soon to return, when something of another kind is amiss.
    explicit AxModelReader(std::function<void()> told);
    /// Ends the telling; whoever tells now is waited for.
    void Close();

    /// What a file holds; null, with the reason for people in `why`, where that is nothing to draw.
    osg::ref_ptr<osg::Node> Read(const QString& file, QString* why);
    /// With which the pager is to read this model's files.
    osg::ref_ptr<osgDB::Options> NewOptions();

    /// What is amiss, for people: pictures that are missing, triangles that were dropped, files that could
    /// not be read. Empty for nothing.
    QString Note() const;
    void Miss(const QString& file); ///< a piece could not be read

    osgDB::ReaderWriter::ReadResult readNode(const std::string& file, const osgDB::Options* options) override;
    osgDB::ReaderWriter::ReadResult readImage(const std::string& file,
                                              const osgDB::Options* options) override;

private:
    ~AxModelReader() override = default;
    void amend(const std::function<bool()>& change);

    mutable std::mutex mutex;
    std::function<void()> told;
    QSet<QString> missingPictures;
    QSet<QString> missingFiles;
    qint64 dropped = 0; ///< triangles
};
