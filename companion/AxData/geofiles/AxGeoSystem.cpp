#include <AxData/geofiles/AxGeoSystem.h>
#include <AxData/geofiles/AxGeoText.h>

#include <cpl_error.h>
#include <ogr_spatialref.h>

#include <cmath>
#include <limits>

AxGeoSystem::AxGeoSystem(const OGRSpatialReference* system) : isGuessed(!system)
{
    if (!system)
        return;
    OGRSpatialReference own(*system);
    prepare(own);
}

AxGeoSystem::AxGeoSystem(const QString& wanted)
{
    OGRSpatialReference system;
    const QByteArray text = wanted.toUtf8();
    if (system.SetFromUserInput(text.constData(), OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS) !=
        OGRERR_NONE)
        fault = AX_GEO_TEXT("\"%1\" is no coordinate system.").arg(wanted.left(100));
    else
        prepare(system);
}

AxGeoSystem::~AxGeoSystem() = default;

void AxGeoSystem::prepare(OGRSpatialReference& system)
{
    const char* known = system.GetName();
    name = known ? QString::fromUtf8(known) : QString();
    if (system.IsLocal()) {
        fault =
            AX_GEO_TEXT("The coordinate system \"%1\" does not say where on the globe it lies.").arg(name);
        return;
    }
    system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRSpatialReference degrees;
    degrees.SetWellKnownGeogCS("WGS84");
    degrees.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (system.IsSame(&degrees))
        return;
    OGRCoordinateTransformationOptions exact;
    exact.SetBallparkAllowed(false);
    CPLPushErrorHandler(CPLQuietErrorHandler); // one that is not exact is told in other words
    toDegrees.reset(OGRCreateCoordinateTransformation(&system, &degrees, exact));
    CPLPopErrorHandler();
    if (!toDegrees) {
        isRough = true;
        toDegrees.reset(OGRCreateCoordinateTransformation(&system, &degrees));
    }
    if (!toDegrees)
        fault = AX_GEO_TEXT("The coordinate system \"%1\" cannot be converted to degrees.").arg(name);
}

void AxGeoSystem::ToDegrees(std::vector<double>& x, std::vector<double>& y) const
{
    if (!toDegrees || x.empty())
        return;
    std::vector<int> isDone(x.size());
    toDegrees->Transform(int(x.size()), x.data(), y.data(), nullptr, isDone.data());
    for (std::size_t i = 0; i < x.size(); ++i)
        if (!isDone[i])
            x[i] = y[i] = std::numeric_limits<double>::infinity();
}
