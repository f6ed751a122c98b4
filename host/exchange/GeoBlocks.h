#pragma once
#include <AxData/CAxBlock.h>
#include <AxData/geofiles/AxGeoFile.h>

#include <QCoreApplication>
#include <QStringList>

#include <memory>
#include <vector>

/// How the pilot wants shapes to become blocks.
struct GeoChoice
{
    bool areHolesFilled = true; ///< otherwise areas with holes are left out
    double leftWidth = 50.0;    ///< metres, of lines without widths of their own
    double rightWidth = 50.0;
};

/// Shapes of files and blocks of the map. GUI thread.
class GeoBlocks
{
    Q_DECLARE_TR_FUNCTIONS(GeoBlocks)
public:
    static constexpr double leastBand = 3.0; ///< metres, both widths of a strip together

    /// What the shape becomes; points are video blocks.
    static CAxBlock::EBlockType TypeOf(const AxGeoShape& shape);
    /// Whether the widths of the choice make a strip.
    static bool MakeStrip(const GeoChoice& choice);
    /// Why no block can be made of a shape; empty when one can.
    static QString ReasonToLeaveOut(const AxGeoShape& shape, const GeoChoice& choice);
    /// Whether a line has no widths, or such as make no strip, so that those of the choice are taken.
    static bool LacksWidth(const AxGeoShape& shape);
    /// What the pilot should know of a shape that becomes a block; mostly empty.
    static QString NoteOf(const AxGeoShape& shape);
    /// Records with IDs; shapes that have to be left out are passed over.
    static std::vector<std::unique_ptr<CAxBlock>> RecordsOf(const QVector<AxGeoShape>& shapes,
                                                            const GeoChoice& choice);
    /// Of blocks by their IDs, without those that have no vertices.
    static QVector<AxGeoShape> ShapesOf(const QStringList& ids);
    /// Why blocks are not among them, for the pilot; mostly none.
    static QStringList NotesOf(const QStringList& ids);

    /// Metres or square metres, as the pilot reads them; empty for a point.
    static QString SizeOf(const AxGeoShape& shape);
};
