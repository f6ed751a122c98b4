#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class OGRCoordinateTransformation;
class OGRSpatialReference;

/// The coordinate system of a layer, and the way from it to degrees. One thread.
class AxGeoSystem
{
public:
    /// Null: the layer has none, and its coordinates are taken for degrees.
    explicit AxGeoSystem(const OGRSpatialReference* system);
    /// By name, as AxGeoReadOptions says.
    explicit AxGeoSystem(const QString& name);
    ~AxGeoSystem();
    AxGeoSystem(const AxGeoSystem&) = delete;
    AxGeoSystem& operator=(const AxGeoSystem&) = delete;

    const QString& Fault() const { return fault; } ///< empty when it can be used
    const QString& Name() const { return name; }
    bool IsGuessed() const { return isGuessed; } ///< there is none
    bool IsRough() const { return isRough; }     ///< how its datum lies to WGS 84 is not known
    /// Longitudes and latitudes in degrees, in place; infinite where a place cannot be converted.
    void ToDegrees(std::vector<double>& x, std::vector<double>& y) const;

private:
    void prepare(OGRSpatialReference& system);

    QString fault;
    QString name;
    bool isGuessed = false;
    bool isRough = false;
    std::unique_ptr<OGRCoordinateTransformation> toDegrees; // null: they are degrees
};
