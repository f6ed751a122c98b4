#include <AxAlgorthm/AxMissionTypes.h>

bool AxIsSpecialCamera(ECameraType camera, EPlaneType plane)
{
    return camera == CameraOblique || (camera == CameraSwing && plane == PlaneObliqueCopter);
}

QString GetPlaneStringByType(EPlaneType type)
{
    switch (type) {
    case PlaneFixedWing:
        return QStringLiteral("FixedWing");
    case PlaneTailSitter:
        return QStringLiteral("TailSitter");
    case PlaneQuadPlane:
        return QStringLiteral("QuadPlane");
    case PlaneQuadcopter:
        return QStringLiteral("Quadcopter");
    case PlaneHexacopter:
        return QStringLiteral("Hexacopter");
    case PlaneOctocopter:
        return QStringLiteral("Octocopter");
    case PlaneObliqueCopter:
        return QStringLiteral("ObliqueCopter");
    }
    return {};
}
