#pragma once

#include <AxData/geofiles/AxGeoFile.h>
#include <AxData/geofiles/AxGeoSystem.h>

#include <limits>
#include <optional>

class OGRGeometry;
class OGRLineString;
class OGRPolygon;

/// A feature as messages name it, and what its shapes have in common.
struct AxGeoFeature
{
    QString where; ///< for people
    QString name;
    QString layer; ///< where the file has several
    QMap<QString, QString> attributes;
    bool isClosedLineArea = false;
    /// What the heights of its geometry are.
    enum class Heights
    {
        Unsaid,     ///< taken as those of the coordinate system
        OfDatum,    ///< those of the coordinate system
        UnlessZero, ///< the same, but 0 says nothing
        OverGround, ///< metres above the ground, wherever that is
        Unused      ///< it lies on the ground
    };
    Heights heights = Heights::Unsaid;
    double altitude = std::numeric_limits<double>::quiet_NaN(); ///< of a point that has none, metres
};

/// Makes shapes of geometries, and notes of what they are not. One thread.
class AxGeoCollector
{
public:
    /// All outlive it. `goesOn` is asked now and then.
    AxGeoCollector(AxGeoContent& made, const AxGeoReadOptions& wanted, std::function<bool()> ask)
        : content(made), options(wanted), goesOn(std::move(ask))
    {
    }

    /// Null: a feature without a geometry. False: reading ends, with the fault in the content.
    bool Add(const OGRGeometry* geometry, const AxGeoSystem& system, const AxGeoFeature& feature);
    /// Tells what was only counted. To be called once, at the end.
    void Finish();

private:
    struct Part
    {
        AxGeoShape::Kind kind;
        const OGRLineString* line = nullptr;
        const OGRPolygon* polygon = nullptr;
        std::optional<QPointF> point;
        double altitude = 0.0;
    };
    void split(const OGRGeometry& geometry, int depth, std::vector<Part>& parts);
    bool add(const Part& part, const QString& name, const AxGeoSystem& system, const AxGeoFeature& feature);
    std::optional<QList<QPointF>> places(const OGRLineString& line, bool isRing, const AxGeoSystem& system,
                                         const AxGeoFeature& feature);
    std::optional<std::vector<QPointF>> onGlobe(std::vector<double> x, std::vector<double> y,
                                                const AxGeoSystem& system, const AxGeoFeature& feature);
    void leaveOut(const AxGeoFeature& feature, const QString& why);
    void note(const QString& text);
    bool end(const QString& fault);

    AxGeoContent& content;
    const AxGeoReadOptions& options;
    std::function<bool()> goesOn;
    int points = 0;
    int notesLeftOut = 0;
    int empty = 0;
    int curved = 0;
    int measured = 0;
    int uneven = 0;
    int overGround = 0;
    int nested = 0;
    int cutNames = 0;
    int holed = 0;
    bool isOver = false;
};
