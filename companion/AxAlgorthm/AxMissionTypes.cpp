#include <AxAlgorthm/AxMissionTypes.h>

bool AxIsSpecialCamera(ECameraType camera, EPlaneType plane)
{
    return camera == CameraOblique || (camera == CameraSwing && plane == PlaneObliqueCopter);
}

QString GetPlaneStringByType(EPlaneType type)
{
    switch (type) {
    case PlaneFixedWing:
    case PlaneTailSitter:
    case PlaneQuadPlane:
        return QStringLiteral("FixedWing");
    case PlaneQuadcopter:
    case PlaneHexacopter:
    case PlaneOctocopter:
    case PlaneObliqueCopter:
        return QStringLiteral("MultiRotor");
    }
    return {};
}
