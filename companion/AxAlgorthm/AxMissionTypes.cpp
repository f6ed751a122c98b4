#include <AxAlgorthm/AxMissionTypes.h>

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
