#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>
#include <AxAlgorthm/AxCoordinateText.h>

#include <QString>

#include <array>
#include <memory>
#include <optional>

/**
 * In which coordinates places are shown and typed: geographic ones of WGS84 in one of their forms, or those
 * of a system that PROJ knows. A value that is cheap to copy; any thread.
 */
class AXALGORTHM_EXPORT AxCoordinateSystem
{
public:
    /// Longitude and latitude of WGS84 in decimal degrees.
    AxCoordinateSystem();

    /// From an EPSG code ("EPSG:32613", "32613"), another authority's ("ESRI:102008"), WKT, a PROJ string or
    /// the exact name of a system; or "DMS", "UTM" or "MGRS", which are WGS84 in that form. An empty text is
    /// the default. Heights of a system are left out. Nothing for what is unknown or has no places on a plane
    /// or in degrees (heights, local, geocentric and celestial systems), with the reason for people in `why`.
    static std::optional<AxCoordinateSystem> Of(const QString& text, QString* why = nullptr);

    const QString& Text() const { return m_text; } ///< what Of() took, less outer blanks
    /// For people: "WGS 84 / UTM zone 13N"; empty for the default.
    QString Name() const;
    /// Of a system of PROJ, the area for which it is made, for people: "108°W to 102°W, 0°N to 84°N"; empty
    /// where it names none.
    QString AreaText() const;
    /// Metres of one unit of heights that are counted in the system: the unit of its own heights where it has
    /// some ("EPSG:2227+5703" has metres beside feet), else that of its lengths; 1 for degrees.
    double MetresOfHeight() const;
    /// Whether it is one that PROJ knows, rather than a form of WGS84's geographic coordinates.
    bool IsOfProj() const { return m_projected != nullptr; }
    /// The form of WGS84's coordinates; of a system of PROJ, Decimal.
    AxCoordinateText::Form Form() const { return m_form; }

    /// How a place lies to the area for which a system is made.
    enum class Reach
    {
        Inside, ///< within the area of use, or of a system that names none
        Near,   ///< up to 3 degrees beyond it: the numbers are good, and others may not expect them
        Outside ///< no numbers
    };
    /// Coordinates in the system: easting before northing, longitude before latitude; its own units.
    struct Point
    {
        Reach reach = Reach::Outside;   ///< of the place
        std::array<double, 2> values{}; ///< only unless Outside
    };
    /// Of a system of PROJ; Outside for the forms of WGS84 and for what is no place. Degrees.
    Point FromPlace(double latitude, double longitude) const;
    /// The place of such coordinates; nothing for those that would be Outside.
    std::optional<PointLatLng> ToPlace(const std::array<double, 2>& values) const;

    /// What is shown of a place.
    struct Shown
    {
        std::array<QString, 2>
            names; ///< "easting", "northing"; the second one empty where one text tells all
        std::array<QString, 2> values; ///< "500000.00 m"; empty: no numbers
        QString system; ///< its name, and whether the place is beyond its area; empty for the default
    };
    /// What a read-out shows of a place, degrees.
    Shown Show(double latitude, double longitude) const;
    /// The same in one line which Read() takes back: "500000.00, 4140000.00", "13N 500000.0 4140000.0"; where
    /// there are no numbers, why.
    QString Line(double latitude, double longitude) const;

    /// AxCoordinateText::Parse(), but two plain numbers belong to this system: easting and northing in its
    /// units and order, or its latitude and longitude. Numbers that can be degrees and metres are refused,
    /// and so are those beyond its area that can be degrees with the longitude first.
    AxCoordinateText::Typed Read(const QString& text) const;

private:
    struct Projected;

    QString m_text;
    AxCoordinateText::Form m_form = AxCoordinateText::Form::Decimal;
    std::shared_ptr<const Projected> m_projected;
};
