#pragma once
#include <AxData/exchange/AxMissionTask.h>
#include <AxData/project/AxProject.h>

#include <limits>
#include <memory>
#include <random>

inline std::shared_ptr<const AxKeptRoute> aRoute()
{
    AxKeptRoute route;
    route.mission.name = QStringLiteral("Read \"here\"");
    route.mission.home = {37.4, -105.0, std::numeric_limits<double>::quiet_NaN()};
    route.mission.items.resize(3);
    route.mission.items[1].params = {1.0, std::numeric_limits<double>::quiet_NaN(), 0.1, -0.0};
    route.mission.items[2].isContinued = false;
    route.mission.surveyEnd = 2;
    route.mission.leftOut += QStringLiteral("a fence");
    route.points = {{-105.0, 37.4, std::numeric_limits<double>::quiet_NaN(), AxPlanPoint::Role::PassStart, 0},
                    {-105.1, 37.4, 1520.1, AxPlanPoint::Role::PassEnd, 0}};
    return std::make_shared<const AxKeptRoute>(route);
}

/// No field is what it is at first, and no two blocks are alike.
inline AxProject aProject(unsigned seed)
{
    std::mt19937 random(seed);
    const auto real = [&](double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random);
    };
    const auto whole = [&](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    };
    const auto ring = [&] {
        QList<QPointF> points;
        for (int i = whole(3, 12); i > 0; --i)
            points += QPointF(real(-180.0, 180.0), real(-90.0, 90.0));
        return points;
    };
    const QStringList names{QString::fromUtf8("采石场 🚁 \"A\"\nB'; DROP TABLE block"),
                            QString(1000, QLatin1Char('x')), QString(), QStringLiteral("Block 1")};
    AxProject project;
    for (int i = 0; i < 4; ++i) {
        AxProjectBlock block;
        block.id = QStringLiteral("block %1-%2").arg(seed).arg(i);
        block.name = names[i];
        block.type = static_cast<CAxBlock::EBlockType>(i + 1);
        block.anchors = ring();
        block.home = CAxVector3D(real(-180.0, 180.0), real(-90.0, 90.0),
                                 i == 2 ? std::numeric_limits<double>::quiet_NaN() : real(0.0, 4000.0));
        block.enterDirection = i;
        block.isDownhillLanding = true;
        block.videoRadius = whole(51, 500);
        block.averageAltitude = real(1.0, 3000.0);
        block.intersections = QStringList{QStringLiteral("a,b"), QStringLiteral("\"c\"")};
        CAxTaskPara& para = block.parameters;
        para.SetPlaneType(PlaneObliqueCopter);
        para.SetCameraType(CameraSwing);
        para.SetExpectedRouteCount(whole(1, 40));
        para.SetChangeHighFlying(true);
        para.SetHomeLegRoundZones(true);
        para.SetZonesAsHoles(true);
        para.SetBandingOffset(real(4.0, 50.0), real(51.0, 90.0));
        CAxAirLineParam& line = *para.GetAirLineParam();
        line.SetRelativeFlyHeight(real(10.0, 290.0));
        line.SetOverlap(real(0.1, 0.6), real(0.81, 0.9));
        line.SetClearance(real(1.0, 40.0));
        line.SetHeading(real(0.0, 360.0));
        CAxExtendedTaskParam& more = *para.GetExtendedTaskParam();
        more.SetFlyingMode(CAxExtendedTaskParam::ThreeDirections);
        more.SetTaskType(TaskOblique);
        more.SetCameraName(QStringLiteral("A7R"));
        more.SetKeepsOverlap(true);
        more.SetWind(real(1.0, 9.0), real(1.0, 359.0));
        more.SetEndurance(real(60.0, 3600.0));
        more.direction = 1;
        for (int t = 0; t < 3; ++t) {
            AxProjectTask task{QStringLiteral("task %1").arg(t), names[t], ring(), t, {},
                               t == 1 ? aRoute() : nullptr};
            task.variableHeights[t + 2] = {CAxVector3D(37.1, -105.2, real(1.0, 900.0)),
                                           CAxVector3D(37.2, -105.1, 0.0)};
            block.tasks += task;
        }
        block.isLocked = true;
        block.isVisible = false;
        project.blocks += block;
    }
    project.blocks[3].home = CAxVector3D();
    project.blocks[3].parameters.GetAirLineParam()->SetHeading({});
    project.marks = {{QStringLiteral("m1"), names[0], real(-180.0, 180.0), real(-90.0, 90.0), -3.5,
                      QStringLiteral("a\nb")},
                     {QStringLiteral("m2"), names[1], 180.0, -90.0, 0.0, QString()}};
    project.view =
        AxProjectView{real(-180.0, 180.0), real(-90.0, 90.0), 1520.25, -12.5, -45.0, real(1.0, 1e7)};
    project.values[names[0]] = QStringLiteral("one");
    return project;
}
