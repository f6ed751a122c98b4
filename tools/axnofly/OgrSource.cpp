#include "OgrSource.h"

#include "ToolText.h"

#include <QFileInfo>

#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

#include <array>
#include <mutex>

namespace {
bool IsCsv(const QString& path)
{
    return path.endsWith(QStringLiteral(".csv"), Qt::CaseInsensitive) ||
           path.endsWith(QStringLiteral(".csv.gz"), Qt::CaseInsensitive);
}

/// Quoted fields may hold line ends, so records are no lines. OGR passes empty lines over.
std::vector<qint64> RecordLines(const QByteArray& path)
{
    std::vector<qint64> lines;
    VSILFILE* const file = VSIFOpenL(path.constData(), "rb");
    if (!file)
        return lines;
    std::array<char, 65536> block{};
    qint64 line = 1;
    bool isQuoted = false;
    bool isAtStart = true;
    for (;;) {
        const std::size_t size = VSIFReadL(block.data(), 1, block.size(), file);
        for (std::size_t i = 0; i < size; ++i) {
            const char c = block[i];
            if (isAtStart && c != '\n' && c != '\r') {
                lines.push_back(line);
                isAtStart = false;
            }
            if (c == '"')
                isQuoted = !isQuoted;
            if (c == '\n') {
                ++line;
                isAtStart = !isQuoted;
            }
        }
        if (size < block.size())
            break;
    }
    VSIFCloseL(file);
    return lines;
}
} // namespace

void OgrSource::Close::operator()(GDALDataset* dataset) const
{
    GDALClose(dataset);
}

OgrSource::OgrSource()
{
    static std::once_flag once;
    std::call_once(once, [] { GDALAllRegister(); });
}

OgrSource::~OgrSource() = default;

bool OgrSource::Open(const QString& path, QString& error)
{
    m_path = path;
    if (!QFileInfo(path).isFile()) {
        error = ToolText::tr("There is no file \"%1\".").arg(path);
        return false;
    }
    QByteArray name = QFileInfo(path).absoluteFilePath().toUtf8();
    if (path.endsWith(QStringLiteral(".gz"), Qt::CaseInsensitive))
        name.prepend("/vsigzip/");
    if (IsCsv(path))
        m_recordLines = RecordLines(name);
    CPLErrorReset();
    CPLPushErrorHandler(CPLQuietErrorHandler);
    m_dataset.reset(static_cast<GDALDataset*>(
        GDALOpenEx(name.constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY, nullptr, nullptr, nullptr)));
    CPLPopErrorHandler();
    if (m_dataset)
        return true;
    const QString reason = QString::fromUtf8(CPLGetLastErrorMsg());
    error = reason.isEmpty() ? ToolText::tr("\"%1\" is in no known format.").arg(path)
                             : ToolText::tr("\"%1\" cannot be read: %2").arg(path, reason);
    return false;
}

int OgrSource::LayerCount() const
{
    return m_dataset->GetLayerCount();
}

OGRLayer* OgrSource::Layer(int index) const
{
    return m_dataset->GetLayer(index);
}

QString OgrSource::PlaceOf(const OGRLayer* layer, const OGRFeature& feature, qint64 ordinal) const
{
    const QString file = QFileInfo(m_path).fileName();
    // Number 0 is the header.
    if (feature.GetFID() > 0 && std::size_t(feature.GetFID()) < m_recordLines.size())
        return QStringLiteral("%1:%2").arg(file).arg(m_recordLines[std::size_t(feature.GetFID())]);
    if (LayerCount() < 2)
        return ToolText::tr("%1, feature %2").arg(file).arg(ordinal);
    return ToolText::tr("%1, layer %2, feature %3")
        .arg(file, QString::fromUtf8(const_cast<OGRLayer*>(layer)->GetName()))
        .arg(ordinal);
}

int OgrSource::FieldOf(OGRLayer* layer, const QStringList& names)
{
    for (const QString& name : names) {
        const int index = layer->GetLayerDefn()->GetFieldIndex(name.toUtf8().constData());
        if (index >= 0)
            return index;
    }
    return -1;
}
