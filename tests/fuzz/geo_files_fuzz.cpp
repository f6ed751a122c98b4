// Files of areas and lines from anywhere: any bytes end in shapes that can be drawn, or in an error. The first
// byte of the input names the format.
#include <AxData/geofiles/AxGeoFile.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {
void Require(bool holds)
{
    if (!holds)
        std::abort();
}

const char* SuffixOf(char mark)
{
    switch (mark) {
    case 'k':
        return "kml";
    case 'z':
        return "kmz";
    case 'j':
        return "geojson";
    case 's':
        return "shp";
    case 'g':
        return "gpkg";
    case 'd':
        return "dxf";
    case 'c':
        return "csv";
    default:
        return nullptr;
    }
}

bool IsOnGlobe(const QPointF& place)
{
    return std::abs(place.x()) <= 180.0 && std::abs(place.y()) <= 90.0;
}

bool IsRing(const QList<QPointF>& ring)
{
    return ring.size() >= 3 && std::all_of(ring.begin(), ring.end(), IsOnGlobe);
}

bool CanBeDrawn(const AxGeoShape& shape)
{
    const auto isLength = [](double metres) { return std::isnan(metres) || metres >= 0.0; };
    if (!isLength(shape.leftWidth) || !isLength(shape.rightWidth) || !isLength(shape.radius))
        return false;
    if (shape.kind == AxGeoShape::Area)
        return IsRing(shape.points) && std::all_of(shape.holes.begin(), shape.holes.end(), IsRing);
    const int fewest = shape.kind == AxGeoShape::Line ? 2 : 1;
    return shape.points.size() >= fewest && shape.holes.isEmpty() &&
           std::all_of(shape.points.begin(), shape.points.end(), IsOnGlobe);
}
} // namespace

// What GDAL does not give back is GDAL's.
extern "C" const char* __asan_default_options()
{
    return "detect_leaks=0";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const char* suffix = size > 0 ? SuffixOf(char(data[0])) : nullptr;
    if (!suffix)
        return -1; // says nothing new
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.") + QLatin1String(suffix));
    QFile file(path);
    file.remove(); // truncated files are brought to the disk when they are closed
    Require(file.open(QIODevice::WriteOnly));
    file.write(reinterpret_cast<const char*>(data) + 1, qint64(size) - 1);
    file.close();
    AxGeoReadOptions options;
    options.mostPoints = 20; // so that simplifying is tried
    options.mostShapes = 500;
    for (const char* system : {"", "EPSG:32632"}) {
        options.assumedSystem = QLatin1String(system);
        const AxGeoContent read = AxReadGeoFile(path, options);
        Require(read.fault.isEmpty() != read.shapes.isEmpty());
        Require(std::all_of(read.shapes.begin(), read.shapes.end(), CanBeDrawn));
        if (!read.isSystemMissing)
            break;
    }
    return 0;
}
