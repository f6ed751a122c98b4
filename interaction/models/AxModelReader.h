#pragma once
#include "scene/base/AxEarthViewerExport.h"

#include <osg/Node>
#include <osg/ref_ptr>
#include <osgDB/Callbacks>
#include <osgDB/Options>

#include <QMap>
#include <QSet>
#include <QString>

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>

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

    /// What is amiss, for people: pictures and materials that are missing, triangles that were dropped, files
    /// that could not be read. Empty for nothing.
    QString Note() const;
    /// A piece could not be read, or shown for a reason that names it.
    void Miss(const QString& file, const QString& why = QString());
    /// What this file holds was put together and moved (AxGatherModel()); so is it whenever it is read anew.
    void KeepGathered(const QString& file);

    osgDB::ReaderWriter::ReadResult readNode(const std::string& file, const osgDB::Options* options) override;
    osgDB::ReaderWriter::ReadResult readImage(const std::string& file,
                                              const osgDB::Options* options) override;

private:
    ~AxModelReader() override = default;
    void amend(const std::function<bool()>& change);

    mutable std::mutex mutex;
    std::function<void()> told;
    QSet<QString> missingPictures;
    QSet<QString> missingMaterials;
    QMap<QString, QString> missingFiles;   ///< why, or nothing
    std::map<std::string, qint64> dropped; ///< triangles, by the file
    std::set<std::string> gathered;
};
