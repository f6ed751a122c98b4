#pragma once

#include <AxAlgorthm/AxAlgorthmExport.h>

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// The height in metres of mean sea level (the geoid of EGM96) above the WGS84 ellipsoid at a place in
/// degrees; any longitude will do. Altitude above the ellipsoid = altitude above the sea + this. It comes
/// from PROJ's grid, which is looked for and read once. Nothing where there is no grid, for latitudes beyond
/// a pole and for what is no number. Any thread.
AXALGORTHM_EXPORT std::optional<double> AxGeoidHeight(double latitude, double longitude);

/// For people: why AxGeoidHeight() answers nothing anywhere; empty when it has its grid. Any thread.
AXALGORTHM_EXPORT QString AxGeoidFault();

/// The folders in which AxGeoidHeight() looks, first to last: those that the environment names (PROJ_DATA,
/// PROJ_LIB), "proj" beside the program, and PROJ's own among the shared data of the system.
AXALGORTHM_EXPORT QStringList AxGeoidFolders();

/// PROJ's EGM96 grid (`egm96_15.gtx`: a node every quarter of a degree, 4 MB), bilinear between its nodes as
/// PROJ interpolates. Immutable once made; any thread.
class AXALGORTHM_EXPORT AxGeoidGrid
{
public:
    /// Reads the file in the first of the folders that has it.
    explicit AxGeoidGrid(const QStringList& folders);

    /// As AxGeoidHeight().
    std::optional<double> HeightAt(double latitude, double longitude) const;
    /// As AxGeoidFault().
    const QString& Fault() const { return m_fault; }

private:
    QString read(const QString& path);

    std::vector<float> m_nodes; // metres, row by row from the south, each from the west
    int m_rows = 0;
    int m_columns = 0;
    double m_west = 0.0; // degrees
    double m_step = 0.0; // degrees between columns; rows are spread from pole to pole
    QString m_fault;
};
