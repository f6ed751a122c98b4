#include <AxData/geofiles/AxGeoCollector.h>
#include <AxData/geofiles/AxGeoFields.h>
#include <AxData/geofiles/AxGeoFile.h>
#include <AxData/geofiles/AxGeoOpen.h>
#include <AxData/geofiles/AxGeoTable.h>
#include <AxData/geofiles/AxGeoText.h>

#include <QDir>
#include <QFileInfo>

#include <ogrsf_frmts.h>

#include <exception>

namespace {
/// One call of AxReadGeoFile().
class Reading
{
public:
    Reading(const QString& wantedFile, const AxGeoReadOptions& wanted, const AxGeoProgress& told)
        : file(wantedFile), options(wanted), progress(told)
    {
    }

    AxGeoContent Read()
    {
        AxGeoOpened opened = AxOpenGeoFile(file, options, session);
        content.notes = opened.notes;
        content.fault = opened.fault;
        if (!content.fault.isEmpty())
            return content;
        for (OGRLayer* layer : opened.data->GetLayers())
            all += int(qMax<GIntBig>(0, qMin<GIntBig>(layer->GetFeatureCount(FALSE), options.mostShapes)));
        AxGeoCollector collector(content, options, [this] { return goesOn(); });
        for (OGRLayer* layer : opened.data->GetLayers()) {
            const bool isRead = opened.isTable
                                    ? AxReadGeoTable(*layer, QFileInfo(file).completeBaseName(), options,
                                                     content, collector, [this] { return step(); })
                                    : ReadLayer(*layer, opened, collector);
            if (!isRead)
                break;
        }
        collector.Finish();
        return content;
    }

    void TellErrors(AxGeoContent& told)
    {
        for (const QString& error : session.TakeErrors())
            told.notes += AX_GEO_TEXT("The reader says: %1").arg(error);
    }
    bool IsCancelled() const { return isCancelled; }

private:
    bool goesOn()
    {
        isCancelled = isCancelled || (progress && !progress(done, all));
        return !isCancelled;
    }
    bool step()
    {
        constexpr int featuresBetweenQuestions = 16;
        ++done;
        all = all > 0 ? qMax(all, done) : 0;
        return done % featuresBetweenQuestions != 1 || goesOn();
    }

    std::unique_ptr<AxGeoSystem> SystemOf(OGRLayer& layer, const AxGeoOpened& opened) const
    {
        if (const OGRSpatialReference* own = layer.GetSpatialRef())
            return std::make_unique<AxGeoSystem>(own);
        const QString named = options.assumedSystem.isEmpty() ? opened.system : options.assumedSystem;
        if (!named.isEmpty())
            return std::make_unique<AxGeoSystem>(named);
        return std::make_unique<AxGeoSystem>(nullptr);
    }

    bool ReadLayer(OGRLayer& layer, const AxGeoOpened& opened, AxGeoCollector& collector)
    {
        bool isForeign = false;
        bool isCut = false;
        const QString layerName = AxGeoOneLine(AxGeoDecoded(layer.GetName(), opened.codec, isForeign), isCut);
        const std::unique_ptr<AxGeoSystem> system = SystemOf(layer, opened);
        if (!system->Fault().isEmpty()) {
            content.fault = system->Fault();
            return false;
        }
        if (content.coordinateSystem.isEmpty())
            content.coordinateSystem = system->Name();
        AxGeoFields fields(*layer.GetLayerDefn(), opened.codec);
        const int before = content.shapes.size();
        layer.ResetReading();
        for (int number = 1; const auto read = OGRFeatureUniquePtr(layer.GetNextFeature()); ++number) {
            if (!step())
                return false;
            AxGeoFeature feature = fields.Of(*read);
            if (opened.data->GetLayerCount() > 1)
                feature.layer = layerName;
            feature.isClosedLineArea = opened.isDrawing;
            if (opened.isKml && feature.heights == AxGeoFeature::Heights::Unsaid)
                feature.heights = AxGeoFeature::Heights::UnlessZero; // its places lie on the ground then
            if (opened.isDrawing)
                feature.name = AxGeoUnescaped(feature.name);
            if (feature.name.trimmed().isEmpty())
                feature.name =
                    QFileInfo(file).completeBaseName() + QLatin1Char(' ') + QString::number(number);
            feature.where =
                AX_GEO_TEXT("Layer \"%1\", feature %2 (%3)")
                    .arg(layerName, QString::number(number), AxGeoOneLine(feature.name, isCut).left(40));
            if (!collector.Add(read->GetGeometryRef(), *system, feature))
                return false;
        }
        NoteLayer(layerName, *system, fields.IsForeign() ? opened.codec : QByteArray(),
                  content.shapes.size() > before);
        return true;
    }

    void NoteLayer(const QString& layer, const AxGeoSystem& system, const QByteArray& codec, bool hasShapes)
    {
        if (!hasShapes)
            return;
        if (!codec.isEmpty())
            content.notes += AX_GEO_TEXT("Layer \"%1\": its texts are not in UTF-8 and are read as %2.")
                                 .arg(layer, QString::fromLatin1(codec));
        if (system.IsGuessed())
            content.notes +=
                AX_GEO_TEXT("The file does not say which coordinate system it uses; WGS 84 is assumed.");
        if (system.IsRough())
            content.notes +=
                AX_GEO_TEXT("How the coordinate system \"%1\" lies to WGS 84 is not known: shapes "
                            "may lie some hundred metres beside their place.")
                    .arg(system.Name());
    }

    QString file;
    const AxGeoReadOptions& options;
    const AxGeoProgress& progress;
    AxGeoSession session; // before what it outlives
    AxGeoContent content;
    int done = 0;
    int all = 0;
    bool isCancelled = false;
};
} // namespace

AxGeoContent AxReadGeoFile(const QString& path, const AxGeoReadOptions& options,
                           const AxGeoProgress& progress)
{
    AxGeoContent content;
    try {
        Reading reading(path, options, progress);
        content = reading.Read();
        reading.TellErrors(content);
        content.isCancelled = reading.IsCancelled();
    } catch (const std::exception& failure) {
        content = {};
        content.fault = AX_GEO_TEXT("It cannot be read: %1").arg(QString::fromLocal8Bit(failure.what()));
    }
    if (content.isCancelled)
        content.fault = AX_GEO_TEXT("Reading was cancelled.");
    else if (content.fault.isEmpty() && content.shapes.isEmpty())
        content.fault = options.arePointsWanted ? AX_GEO_TEXT("There is no point in it.")
                                                : AX_GEO_TEXT("There is no area, line or point in it.");
    if (!content.fault.isEmpty()) {
        content.shapes.clear();
        content.fault = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), content.fault);
    }
    return content;
}
