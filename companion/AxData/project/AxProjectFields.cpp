#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectValues.h>

#include <cmath>
#include <limits>

using namespace AxProjectValues;

namespace {
using Block = AxProjectBlock;
using Task = AxProjectTask;

constexpr double notKnown = std::numeric_limits<double>::quiet_NaN();

// A home that is not set is three nulls; its altitude alone may be unknown.
QVariant HomePart(const Block& block, double part)
{
    return block.home.isNull() ? QVariant() : QVariant(part);
}

// They come one after the other; a longitude that is not set is NaN until the altitude comes.
QString TakeHomeLongitude(const QVariant& value, CAxVector3D& home)
{
    double longitude = notKnown;
    const QString reason = value.isNull() ? QString() : Take(value, longitude, -180.0, 180.0);
    home = CAxVector3D(longitude, 0.0, 0.0);
    return reason;
}

QString TakeHomeLatitude(const QVariant& value, CAxVector3D& home)
{
    if (std::isnan(home.x()))
        return value.isNull() ? QString() : AxProjectText::tr("it has no longitude");
    double latitude = 0.0;
    const QString reason = Take(value, latitude, -90.0, 90.0);
    home.setY(latitude);
    return reason;
}

QString TakeHomeAltitude(const QVariant& value, CAxVector3D& home)
{
    if (std::isnan(home.x())) {
        home = CAxVector3D();
        return value.isNull() ? QString() : AxProjectText::tr("it has no longitude");
    }
    double altitude = notKnown;
    const QString reason = value.isNull() ? QString() : Take(value, altitude, -farthest, farthest);
    home.setZ(altitude);
    return reason;
}

QString NotPossible(bool isTaken)
{
    return isTaken ? QString() : AxProjectText::tr("this value is not possible");
}

double Left(const CAxTaskPara& para)
{
    double left = 0.0;
    double right = 0.0;
    para.GetBandingOffset(left, right);
    return left;
}

double Right(const CAxTaskPara& para)
{
    double left = 0.0;
    double right = 0.0;
    para.GetBandingOffset(left, right);
    return right;
}

// Reads a number and hands it to what takes it into a record.
template <typename SetIt> QString TakeWith(const QVariant& value, SetIt setIt)
{
    double number = 0.0;
    const QString reason = Take(value, number, -farthest, farthest);
    return reason.isEmpty() ? NotPossible(setIt(number)) : reason;
}
template <typename SetIt> QString TakeSwitch(const QVariant& value, SetIt setIt)
{
    bool isOn = false;
    const QString reason = Take(value, isOn);
    setIt(isOn);
    return reason;
}
} // namespace

const std::vector<AxProjectField<AxProjectBlock>>& AxBlockFields()
{
    // clang-format off
    static const std::vector<AxProjectField<Block>> fields{
        {"id", "TEXT PRIMARY KEY", 1,
         [](const Block& b) { return QVariant(b.id); },
         [](Block& b, const QVariant& v) { return TakeID(v, b.id); }},
        {"name", "TEXT", 1,
         [](const Block& b) { return QVariant(b.name); },
         [](Block& b, const QVariant& v) { return Take(v, b.name); }},
        {"type", "INTEGER", 1,
         [](const Block& b) { return QVariant(static_cast<int>(b.type)); },
         [](Block& b, const QVariant& v) { return TakeEnum(v, b.type, CAxBlock::MarkPointBlock); }},
        {"anchors", "TEXT", 1,
         [](const Block& b) { return RingText(b.anchors); },
         [](Block& b, const QVariant& v) { return TakeRing(v, b.anchors); }},
        {"home_longitude", "REAL", 1,
         [](const Block& b) { return HomePart(b, b.home.x()); },
         [](Block& b, const QVariant& v) { return TakeHomeLongitude(v, b.home); }},
        {"home_latitude", "REAL", 1,
         [](const Block& b) { return HomePart(b, b.home.y()); },
         [](Block& b, const QVariant& v) { return TakeHomeLatitude(v, b.home); }},
        {"home_altitude", "REAL", 1,
         [](const Block& b) { return std::isnan(b.home.z()) ? QVariant() : HomePart(b, b.home.z()); },
         [](Block& b, const QVariant& v) { return TakeHomeAltitude(v, b.home); }},
        {"enter_direction", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.enterDirection); },
         [](Block& b, const QVariant& v) { return Take(v, b.enterDirection, -1, 3); }},
        {"downhill_landing", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.isDownhillLanding); },
         [](Block& b, const QVariant& v) { return Take(v, b.isDownhillLanding); }},
        {"video_radius", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.videoRadius); },
         [](Block& b, const QVariant& v) { return Take(v, b.videoRadius, 0, static_cast<int>(farthest)); }},
        {"average_altitude", "REAL", 1,
         [](const Block& b) { return QVariant(b.averageAltitude); },
         [](Block& b, const QVariant& v) { return Take(v, b.averageAltitude, -farthest, farthest); }},
        {"intersections", "TEXT", 1,
         [](const Block& b) { return NamesText(b.intersections); },
         [](Block& b, const QVariant& v) { return TakeNames(v, b.intersections); }},
        {"locked", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.isLocked); },
         [](Block& b, const QVariant& v) { return Take(v, b.isLocked); }},
        {"visible", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.isVisible); },
         [](Block& b, const QVariant& v) { return Take(v, b.isVisible); }},
        {"plane_type", "INTEGER", 1,
         [](const Block& b) { return QVariant(static_cast<int>(b.parameters.GetPlaneType())); },
         [](Block& b, const QVariant& v) {
             EPlaneType type = PlaneFixedWing;
             const QString reason = TakeEnum(v, type, PlaneObliqueCopter);
             b.parameters.SetPlaneType(type);
             return reason;
         }},
        {"camera_type", "INTEGER", 1,
         [](const Block& b) { return QVariant(static_cast<int>(b.parameters.GetCameraType())); },
         [](Block& b, const QVariant& v) {
             ECameraType type = CameraFullFrame;
             const QString reason = TakeEnum(v, type, CameraSwing);
             b.parameters.SetCameraType(type);
             return reason;
         }},
        {"expected_routes", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.parameters.GetExpectedRouteCount()); },
         [](Block& b, const QVariant& v) {
             int count = 0;
             const QString reason = Take(v, count, std::numeric_limits<int>::min(), mostVertices);
             b.parameters.SetExpectedRouteCount(count);
             return reason;
         }},
        {"changes_height", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.parameters.IsChangeHighFlying()); },
         [](Block& b, const QVariant& v) {
             return TakeSwitch(v, [&b](bool on) { b.parameters.SetChangeHighFlying(on); });
         }},
        {"home_legs_round_zones", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.parameters.IsHomeLegRoundZones()); },
         [](Block& b, const QVariant& v) {
             return TakeSwitch(v, [&b](bool on) { b.parameters.SetHomeLegRoundZones(on); });
         }},
        {"zones_are_holes", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.parameters.AreZonesHoles()); },
         [](Block& b, const QVariant& v) {
             return TakeSwitch(v, [&b](bool on) { b.parameters.SetZonesAsHoles(on); });
         }},
        {"band_left", "REAL", 1,
         [](const Block& b) { return QVariant(Left(b.parameters)); },
         [](Block& b, const QVariant& v) {
             double left = 0.0;
             const QString reason = Take(v, left, -farthest, farthest);
             b.parameters.SetBandingOffset(left, Right(b.parameters));
             return reason;
         }},
        {"band_right", "REAL", 1,
         [](const Block& b) { return QVariant(Right(b.parameters)); },
         [](Block& b, const QVariant& v) {
             double right = 0.0;
             const QString reason = Take(v, right, -farthest, farthest);
             b.parameters.SetBandingOffset(Left(b.parameters), right);
             return reason;
         }},
        {"fly_height", "REAL", 1,
         [](const Block& b) { return QVariant(b.parameters.GetAirLineParam()->GetRelativeFlyHeight()); },
         [](Block& b, const QVariant& v) {
             return TakeWith(v, [&b](double n) { return b.parameters.GetAirLineParam()->SetRelativeFlyHeight(n); });
         }},
        {"side_overlap", "REAL", 1,
         [](const Block& b) { return QVariant(b.parameters.GetAirLineParam()->GetSideOverlap()); },
         [](Block& b, const QVariant& v) {
             CAxAirLineParam& line = *b.parameters.GetAirLineParam();
             return TakeWith(v, [&line](double n) { return line.SetOverlap(n, line.GetForwardOverlap()); });
         }},
        {"forward_overlap", "REAL", 1,
         [](const Block& b) { return QVariant(b.parameters.GetAirLineParam()->GetForwardOverlap()); },
         [](Block& b, const QVariant& v) {
             CAxAirLineParam& line = *b.parameters.GetAirLineParam();
             return TakeWith(v, [&line](double n) { return line.SetOverlap(line.GetSideOverlap(), n); });
         }},
        {"heading", "REAL", 1,
         [](const Block& b) {
             const std::optional<double> heading = b.parameters.GetAirLineParam()->GetHeading();
             return heading ? QVariant(*heading) : QVariant();
         },
         [](Block& b, const QVariant& v) {
             CAxAirLineParam& line = *b.parameters.GetAirLineParam();
             if (v.isNull())
                 return NotPossible(line.SetHeading({}));
             return TakeWith(v, [&line](double n) { return line.SetHeading(n); });
         }},
        {"clearance", "REAL", 1,
         [](const Block& b) { return QVariant(b.parameters.GetAirLineParam()->GetClearance()); },
         [](Block& b, const QVariant& v) {
             return TakeWith(v, [&b](double n) { return b.parameters.GetAirLineParam()->SetClearance(n); });
         }},
        {"flying_mode", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.parameters.GetExtendedTaskParam()->GetFlyingMode()); },
         [](Block& b, const QVariant& v) {
             int mode = 0;
             const QString reason = Take(v, mode, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
             b.parameters.GetExtendedTaskParam()->SetFlyingMode(mode);
             return reason;
         }},
        {"task_type", "INTEGER", 1,
         [](const Block& b) { return QVariant(static_cast<int>(b.parameters.GetExtendedTaskParam()->GetTaskType())); },
         [](Block& b, const QVariant& v) {
             ETaskType type = TaskOrthophoto;
             const QString reason = TakeEnum(v, type, TaskVideo);
             b.parameters.GetExtendedTaskParam()->SetTaskType(type);
             return reason;
         }},
        {"camera_name", "TEXT", 1,
         [](const Block& b) { return QVariant(b.parameters.GetExtendedTaskParam()->GetCameraName()); },
         [](Block& b, const QVariant& v) {
             QString name;
             const QString reason = Take(v, name);
             b.parameters.GetExtendedTaskParam()->SetCameraName(name);
             return reason;
         }},
        {"keeps_overlap", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.parameters.GetExtendedTaskParam()->KeepsOverlap()); },
         [](Block& b, const QVariant& v) {
             return TakeSwitch(v, [&b](bool on) { b.parameters.GetExtendedTaskParam()->SetKeepsOverlap(on); });
         }},
        {"direction", "INTEGER", 1,
         [](const Block& b) { return QVariant(b.parameters.GetExtendedTaskParam()->direction); },
         [](Block& b, const QVariant& v) {
             return Take(v, b.parameters.GetExtendedTaskParam()->direction, 0, 2);
         }},
        {"wind_speed", "REAL", 2,
         [](const Block& b) { return QVariant(b.parameters.GetExtendedTaskParam()->GetWindSpeed()); },
         [](Block& b, const QVariant& v) {
             CAxExtendedTaskParam& more = *b.parameters.GetExtendedTaskParam();
             return TakeWith(v, [&more](double n) { return more.SetWind(n, more.GetWindFrom()); });
         }},
        {"wind_from", "REAL", 2,
         [](const Block& b) { return QVariant(b.parameters.GetExtendedTaskParam()->GetWindFrom()); },
         [](Block& b, const QVariant& v) {
             CAxExtendedTaskParam& more = *b.parameters.GetExtendedTaskParam();
             return TakeWith(v, [&more](double n) { return more.SetWind(more.GetWindSpeed(), n); });
         }},
        {"endurance", "REAL", 2,
         [](const Block& b) { return QVariant(b.parameters.GetExtendedTaskParam()->GetEndurance()); },
         [](Block& b, const QVariant& v) {
             return TakeWith(v, [&b](double n) { return b.parameters.GetExtendedTaskParam()->SetEndurance(n); });
         }},
    };
    // clang-format on
    return fields;
}

const std::vector<AxProjectField<AxProjectTask>>& AxTaskFields()
{
    // clang-format off
    static const std::vector<AxProjectField<Task>> fields{
        {"id", "TEXT", 1,
         [](const Task& t) { return QVariant(t.id); },
         [](Task& t, const QVariant& v) { return TakeID(v, t.id); }},
        {"name", "TEXT", 1,
         [](const Task& t) { return QVariant(t.name); },
         [](Task& t, const QVariant& v) { return Take(v, t.name); }},
        {"anchors", "TEXT", 1,
         [](const Task& t) { return RingText(t.anchors); },
         [](Task& t, const QVariant& v) { return TakeRing(v, t.anchors); }},
        {"direction", "INTEGER", 1,
         [](const Task& t) { return QVariant(t.direction); },
         [](Task& t, const QVariant& v) { return Take(v, t.direction, 0, 2); }},
        {"variable_heights", "TEXT", 1,
         [](const Task& t) { return HeightsText(t.variableHeights); },
         [](Task& t, const QVariant& v) { return TakeHeights(v, t.variableHeights); }},
        {"route", "TEXT", 1,
         [](const Task& t) { return t.route ? QVariant(QString::fromUtf8(AxKeptRouteText(*t.route))) : QVariant(); },
         [](Task& t, const QVariant& v) {
             QString reason;
             t.route = v.isNull() ? nullptr : AxKeptRouteOf(v.toString().toUtf8(), reason);
             return reason;
         }},
    };
    // clang-format on
    return fields;
}

const std::vector<AxProjectField<AxProjectMark>>& AxMarkFields()
{
    using Mark = AxProjectMark;
    // clang-format off
    static const std::vector<AxProjectField<Mark>> fields{
        {"id", "TEXT PRIMARY KEY", 1,
         [](const Mark& m) { return QVariant(m.id); },
         [](Mark& m, const QVariant& v) { return TakeID(v, m.id); }},
        {"name", "TEXT", 1,
         [](const Mark& m) { return QVariant(m.name); },
         [](Mark& m, const QVariant& v) { return Take(v, m.name); }},
        {"longitude", "REAL", 1,
         [](const Mark& m) { return QVariant(m.longitude); },
         [](Mark& m, const QVariant& v) { return Take(v, m.longitude, -180.0, 180.0); }},
        {"latitude", "REAL", 1,
         [](const Mark& m) { return QVariant(m.latitude); },
         [](Mark& m, const QVariant& v) { return Take(v, m.latitude, -90.0, 90.0); }},
        {"altitude", "REAL", 1,
         [](const Mark& m) { return QVariant(m.altitude); },
         [](Mark& m, const QVariant& v) { return Take(v, m.altitude, -farthest, farthest); }},
        {"description", "TEXT", 2,
         [](const Mark& m) { return QVariant(m.description); },
         [](Mark& m, const QVariant& v) { return Take(v, m.description, longestText); }},
        {"follows_ground", "INTEGER", 3,
         [](const Mark& m) { return QVariant(m.followsGround); },
         [](Mark& m, const QVariant& v) { return Take(v, m.followsGround); }},
    };
    // clang-format on
    return fields;
}

const std::vector<AxProjectField<AxProjectView>>& AxViewFields()
{
    using View = AxProjectView;
    // clang-format off
    static const std::vector<AxProjectField<View>> fields{
        {"longitude", "REAL", 1,
         [](const View& w) { return QVariant(w.longitude); },
         [](View& w, const QVariant& v) { return Take(v, w.longitude, -180.0, 180.0); }},
        {"latitude", "REAL", 1,
         [](const View& w) { return QVariant(w.latitude); },
         [](View& w, const QVariant& v) { return Take(v, w.latitude, -90.0, 90.0); }},
        {"altitude", "REAL", 1,
         [](const View& w) { return QVariant(w.altitude); },
         [](View& w, const QVariant& v) { return Take(v, w.altitude, -farthest, farthest); }},
        {"heading", "REAL", 1,
         [](const View& w) { return QVariant(w.heading); },
         [](View& w, const QVariant& v) { return Take(v, w.heading, -360.0, 360.0); }},
        {"pitch", "REAL", 1,
         [](const View& w) { return QVariant(w.pitch); },
         [](View& w, const QVariant& v) { return Take(v, w.pitch, -90.0, 90.0); }},
        {"range", "REAL", 1,
         [](const View& w) { return QVariant(w.range); },
         [](View& w, const QVariant& v) { return Take(v, w.range, 0.0, 1e9); }},
    };
    // clang-format on
    return fields;
}
