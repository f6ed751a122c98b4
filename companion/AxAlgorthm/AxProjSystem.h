#pragma once

#include <AxAlgorthm/PointLatLng.h>

#include <QString>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

/// A coordinate system as PROJ has it, with the way to it from WGS84: what AxCoordinateSystem is made of.
/// Movable; any thread.
class AxProjSystem
{
public:
    /// Nothing, with the reason for people, for what is unknown or no system of places.
    static std::optional<AxProjSystem> Of(const QString& text, QString& fault);
    AxProjSystem(AxProjSystem&&) noexcept;
    ~AxProjSystem();

    /// The unit of coordinates.
    struct AxisUnit
    {
        bool isAngle = false; ///< degrees or their like, not a length
        int decimals = 2;     ///< about a centimetre
        QString sign;         ///< "m", "ft"
    };

    const QString& Name() const;                     ///< as PROJ calls it
    const AxisUnit& Unit() const;                    ///< of both coordinates
    const QString& AxisName(std::size_t axis) const; ///< 0 for the easting or longitude, 1 for the other
    /// Metres of one unit of heights: of the system's own heights where it has some, else of its lengths.
    double MetresOfHeight() const;
    /// Its area of use for people: "108°W to 102°W, 0°N to 84°N"; empty where it names none.
    const QString& AreaText() const;
    /// Whether PROJ has no accurate way between its datum and WGS84.
    bool IsRough() const;

    /// Degrees to easting before northing, or longitude before latitude. `degreesBeyond` is how far the place
    /// lies outside the area of use. Nothing where the way leads nowhere or does not lead back.
    std::optional<std::array<double, 2>> Forward(double latitude, double longitude,
                                                 double& degreesBeyond) const;
    std::optional<PointLatLng> Inverse(const std::array<double, 2>& values) const;

private:
    struct Impl;
    explicit AxProjSystem(std::unique_ptr<Impl> made);
    std::unique_ptr<Impl> m;
};
