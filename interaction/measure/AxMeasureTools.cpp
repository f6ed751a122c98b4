// Which object each measuring tool draws, and who computes volumes.
#include "analysis/volume/AxVolumeAnalysis.h"
#include "interaction/measure/AxMeasurements.h"
#include "interaction/measure/CAxMearsureToolHandler.h"
#include "interaction/measure/CAxMeasureAltitudeHandler.h"
#include "interaction/measure/CAxMeasureArea.h"
#include "interaction/measure/CAxMeasureVolume.h"
#include "interaction/measure/CAxProjCoordsToolHandler.h"
#include "interaction/objects/AxShapeFactories.h"

namespace {
template <typename Tool> AxShapeFactories::Factory Measuring(AxMeasurements& measurements)
{
    return [&measurements](CAxEarthViewer* viewer, QObject* parent) -> CAxHandleAdapter* {
        return new Tool(viewer, parent, measurements);
    };
}

AxMeasuredValues ValuesOf(const AxMeasuredValues& outline, const AxVolumeResult& result)
{
    AxMeasuredValues values;
    values.isCrossed = outline.isCrossed;
    values.whole = {{AxQuantity::Area, outline.Of(AxQuantity::Area)},
                    {AxQuantity::Perimeter, outline.Of(AxQuantity::Perimeter)}};
    if (const AxVolume* volume = result.volume.get()) {
        values.step = volume->question.cell;
        values.whole += {{AxQuantity::Cut, volume->cut},
                         {AxQuantity::Fill, volume->fill},
                         {AxQuantity::Net, volume->Net()},
                         {AxQuantity::CellError, volume->cellError},
                         {AxQuantity::MeanAbove, volume->mean},
                         {AxQuantity::HighestAbove, volume->highest},
                         {AxQuantity::LowestAbove, volume->deepest},
                         {AxQuantity::Unknown, volume->unknown}};
    }
    values.note = AxVolumeAnalysis::NotesOf(result).join(QLatin1Char('\n'));
    return values;
}

void ComputeVolumes(AxMeasurements& measurements, AxVolumeAnalysis& volumes)
{
    QObject::connect(&measurements, &AxMeasurements::added, &volumes, [&](const QString& id) {
        const AxMeasurement* one = measurements.Find(id);
        if (!one || one->tool != ToolMeasureVolume)
            return;
        // That of a project is computed by now, or waits.
        const AxVolumeResult known = volumes.GetResult(id);
        if (!known.id.isEmpty()) {
            measurements.SetValues(id, ValuesOf(one->values, known), known.isPending);
            return;
        }
        AxVolumeQuestion question = volumes.Next();
        for (const osg::Vec3d& point : one->points)
            question.ring += QPointF(point.x(), point.y());
        volumes.Ask(id, one->name, question);
    });
    QObject::connect(&measurements, &AxMeasurements::removed, &volumes, &AxVolumeAnalysis::Remove);
    QObject::connect(&volumes, &AxVolumeAnalysis::removed, &measurements, &AxMeasurements::Remove);
    const auto tell = [&](const QString& id) {
        const AxVolumeResult result = volumes.GetResult(id);
        if (const AxMeasurement* one = measurements.Find(id))
            measurements.SetValues(id, ValuesOf(one->values, result), result.isPending);
    };
    QObject::connect(&volumes, &AxVolumeAnalysis::added, &measurements, tell);
    QObject::connect(&volumes, &AxVolumeAnalysis::changed, &measurements, tell);
}
} // namespace

void AxAddMeasureTools(AxShapeFactories& factories, AxMeasurements& measurements, AxVolumeAnalysis& volumes)
{
    factories.SetOwn(ToolMeasureVolume, Measuring<CAxMeasureVolume>(measurements));
    ComputeVolumes(measurements, volumes);
    factories.SetOwn(ToolMeasureDistance, Measuring<CAxMearsureToolHandler>(measurements));
    factories.SetOwn(ToolMeasureArea, Measuring<CAxMeasureArea>(measurements));
    factories.SetOwn(ToolProjCoords, Measuring<CAxProjCoordsToolHandler>(measurements));
    factories.SetOwn(ToolMeasureAltitude, Measuring<CAxMeasureAltitudeHandler>(measurements));
}
