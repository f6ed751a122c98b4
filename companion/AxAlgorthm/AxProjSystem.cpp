#include <AxAlgorthm/AxProjSystem.h>

#include <proj.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace {
// How far a place may be from where it leads back to, degrees: a centimetre.
constexpr double wayBackTolerance = 1.0e-7;
constexpr int longestShown = 80;

QString ProjText(const char* text)
{
    return QCoreApplication::translate("AxCoordinateSystem", text);
}

struct ContextEnd
{
    void operator()(PJ_CONTEXT* context) const { proj_context_destroy(context); }
};
struct ObjectEnd
{
    void operator()(PJ* object) const { proj_destroy(object); }
};
using Context = std::unique_ptr<PJ_CONTEXT, ContextEnd>;
using Object = std::unique_ptr<PJ, ObjectEnd>;

void NoteLine(void* lines, int, const char* line)
{
    *static_cast<QString*>(lines) = QString::fromUtf8(line);
}

// What PROJ is asked for: a bare number is an EPSG code, and a PROJ string a system rather than a conversion.
QByteArray Asked(const QString& text)
{
    static const QRegularExpression code(QStringLiteral("^(?:EPSG)?[\\s:]*(\\d+)$"),
                                         QRegularExpression::CaseInsensitiveOption);
    if (const QRegularExpressionMatch found = code.match(text); found.hasMatch())
        return "EPSG:" + found.captured(1).toLatin1();
    if (text.startsWith(QLatin1Char('+')) && !text.contains(QLatin1String("+type=crs")))
        return text.toUtf8() + " +type=crs";
    return text.toUtf8();
}

// PROJ takes a name that is only like the one of a system.
bool IsMereName(const QByteArray& asked)
{
    return asked.indexOf(':') < 0 && asked.indexOf('[') < 0 && asked.indexOf('{') < 0 &&
           asked.indexOf('+') < 0;
}

QString Shortened(const QString& text)
{
    const QString line = text.simplified();
    return line.size() > longestShown ? line.left(longestShown) + QChar(0x2026) : line;
}

QString WithoutPlaces(PJ_TYPE type)
{
    switch (type) {
    case PJ_TYPE_VERTICAL_CRS:
        return ProjText(
            QT_TRANSLATE_NOOP("AxCoordinateSystem", "\"%1\" is a system of heights, not of places."));
    case PJ_TYPE_GEOCENTRIC_CRS:
        return ProjText(QT_TRANSLATE_NOOP(
            "AxCoordinateSystem",
            "\"%1\" is geocentric: its x, y, z are no easting and northing and no degrees."));
    case PJ_TYPE_ENGINEERING_CRS:
        return ProjText(QT_TRANSLATE_NOOP(
            "AxCoordinateSystem", "\"%1\" is a local system: where it lies on the earth is not known."));
    default:
        return ProjText(
            QT_TRANSLATE_NOOP("AxCoordinateSystem", "\"%1\" is no system of places on the earth."));
    }
}

// What tells kind, axes and area of a system: that of its places, without heights and without its shift.
Object Horizontal(PJ_CONTEXT* context, const PJ* system)
{
    Object part(proj_clone(context, system));
    while (part) {
        const PJ_TYPE type = proj_get_type(part.get());
        if (type == PJ_TYPE_COMPOUND_CRS)
            part.reset(proj_crs_get_sub_crs(context, part.get(), 0));
        else if (type == PJ_TYPE_BOUND_CRS)
            part.reset(proj_get_source_crs(context, part.get()));
        else
            break;
    }
    return part;
}

Object Unbound(PJ_CONTEXT* context, Object system)
{
    while (system && proj_get_type(system.get()) == PJ_TYPE_BOUND_CRS)
        system.reset(proj_get_source_crs(context, system.get()));
    return system;
}

double MetresOfHeightOf(PJ_CONTEXT* context, const PJ* system, const PJ* places)
{
    const Object whole = Unbound(context, Object(proj_clone(context, system)));
    Object heights;
    if (whole && proj_get_type(whole.get()) == PJ_TYPE_COMPOUND_CRS)
        heights = Unbound(context, Object(proj_crs_get_sub_crs(context, whole.get(), 1)));
    const Object axes(proj_crs_get_coordinate_system(context, heights ? heights.get() : places));
    const int last = axes ? proj_cs_get_axis_count(context, axes.get()) - 1 : -1;
    const bool isPlanar = !heights && last < 2;
    if (isPlanar && proj_get_type(places) != PJ_TYPE_PROJECTED_CRS)
        return 1.0;
    double factor = 1.0;
    const bool isKnown =
        last >= 0 && proj_cs_get_axis_info(context, axes.get(), isPlanar ? 0 : last, nullptr, nullptr,
                                           nullptr, &factor, nullptr, nullptr, nullptr);
    return isKnown && factor > 0.0 ? factor : 1.0;
}

QString UnitSign(const QString& name)
{
    const struct
    {
        const char* name;
        const char* sign;
    } rows[] = {{"metre", "m"},         {"kilometre", "km"}, {"foot", "ft"}, {"US survey foot", "ft (US)"},
                {"degree", "\302\260"}, {"grad", "gon"}};
    for (const auto& row : rows)
        if (name == QLatin1String(row.name))
            return QString::fromUtf8(row.sign);
    return name;
}

struct Area
{
    bool isKnown = false;
    double west = 0.0; // degrees; east of `east` where it holds the antimeridian
    double south = 0.0;
    double east = 0.0;
    double north = 0.0;

    double DegreesBeyond(double latitude, double longitude) const
    {
        if (!isKnown)
            return 0.0;
        const auto eastward = [](double from, double to) {
            const double turn = std::fmod(to - from, 360.0);
            return turn < 0.0 ? turn + 360.0 : turn;
        };
        const double width = east - west >= 360.0 ? 360.0 : eastward(west, east);
        const double at = eastward(west, longitude);
        const double beside = at <= width ? 0.0 : std::min(at - width, 360.0 - at);
        return std::max({beside, south - latitude, latitude - north, 0.0});
    }
};

QString DegreesText(double degrees, char positive, char negative)
{
    constexpr int digits = 5;
    return QString::number(std::abs(degrees), 'g', digits) + QChar(0x00b0) +
           QLatin1Char(degrees < 0.0 ? negative : positive);
}

QString TextOf(const Area& area)
{
    return ProjText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "%1 to %2, %3 to %4"))
        .arg(DegreesText(area.west, 'E', 'W'), DegreesText(area.east, 'E', 'W'),
             DegreesText(area.south, 'N', 'S'), DegreesText(area.north, 'N', 'S'));
}
} // namespace

struct AxProjSystem::Impl
{
    bool ReadAxes(const PJ* system);
    bool FindWay(const PJ* system);
    PJ_COORD Go(PJ_DIRECTION direction, double x, double y) const
    {
        const std::lock_guard<std::mutex> lock(mutex);
        proj_errno_reset(way.get());
        return proj_trans(way.get(), direction, proj_coord(x, y, 0.0, HUGE_VAL));
    }

    Context context;
    Object way; // from WGS84; ends before its context
    QString name;
    std::array<QString, 2> axes;
    AxisUnit unit;
    double metresOfHeight = 1.0;
    Area area;
    QString areaText;
    bool isRough = false;
    mutable std::mutex mutex;
};

bool AxProjSystem::Impl::ReadAxes(const PJ* system)
{
    const Object ordered(proj_normalize_for_visualization(context.get(), system));
    const Object axesOf(proj_crs_get_coordinate_system(context.get(), ordered ? ordered.get() : system));
    if (!axesOf)
        return false;
    for (const int axis : {0, 1}) {
        const char* axisName = nullptr;
        const char* unitName = nullptr;
        double factor = 1.0;
        if (!proj_cs_get_axis_info(context.get(), axesOf.get(), axis, &axisName, nullptr, nullptr, &factor,
                                   &unitName, nullptr, nullptr))
            return false;
        axes[static_cast<std::size_t>(axis)] = QString::fromUtf8(axisName);
        const PJ_TYPE type = proj_get_type(system);
        unit.isAngle = type == PJ_TYPE_GEOGRAPHIC_2D_CRS || type == PJ_TYPE_GEOGRAPHIC_3D_CRS;
        constexpr double metresOfKilometre = 1000.0;
        unit.decimals = factor >= metresOfKilometre ? 5 : 2;
        unit.sign = UnitSign(QString::fromUtf8(unitName));
    }
    return true;
}

bool AxProjSystem::Impl::FindWay(const PJ* system)
{
    const Object wgs84(proj_create(context.get(), "EPSG:4326"));
    if (!wgs84)
        return false;
    const char* const accurately[] = {"ALLOW_BALLPARK=NO", nullptr};
    Object found(proj_create_crs_to_crs_from_pj(context.get(), wgs84.get(), system, nullptr, accurately));
    isRough = !found;
    if (!found)
        found.reset(proj_create_crs_to_crs_from_pj(context.get(), wgs84.get(), system, nullptr, nullptr));
    if (found)
        way.reset(proj_normalize_for_visualization(context.get(), found.get()));
    return way != nullptr;
}

std::optional<AxProjSystem> AxProjSystem::Of(const QString& text, QString& fault)
{
    auto made = std::make_unique<Impl>();
    made->context.reset(proj_context_create());
    PJ_CONTEXT* const context = made->context.get();
    QString said;
    proj_log_func(context, &said, NoteLine);
    proj_context_use_proj4_init_rules(context, 1);

    const QByteArray asked = Asked(text);
    const Object system(proj_create(context, asked.constData()));
    const QString name = system ? QString::fromUtf8(proj_get_name(system.get())) : QString();
    const bool isAnother =
        system && IsMereName(asked) && name.compare(QString::fromUtf8(asked), Qt::CaseInsensitive) != 0;
    // What it says ends with this call.
    const auto refuse = [&fault, &text](const QString& reason) {
        fault = reason.arg(Shortened(text));
        return std::nullopt;
    };
    if (!system || isAnother) {
        const QString reason = ProjText(
            QT_TRANSLATE_NOOP("AxCoordinateSystem", "\"%1\" is no coordinate system that PROJ knows."));
        return refuse(reason + (said.isEmpty() || isAnother
                                    ? QString()
                                    : QLatin1String(" (") + Shortened(said) + QLatin1Char(')')));
    }
    if (!proj_is_crs(system.get()))
        return refuse(ProjText(QT_TRANSLATE_NOOP(
            "AxCoordinateSystem", "\"%1\" is no coordinate system, but something else that PROJ knows.")));
    const Object places = Horizontal(context, system.get());
    const PJ_TYPE type = places ? proj_get_type(places.get()) : PJ_TYPE_UNKNOWN;
    if (type != PJ_TYPE_PROJECTED_CRS && type != PJ_TYPE_GEOGRAPHIC_2D_CRS &&
        type != PJ_TYPE_GEOGRAPHIC_3D_CRS)
        return refuse(WithoutPlaces(type));
    if (!made->ReadAxes(places.get()) || !made->FindWay(system.get()))
        return refuse(
            ProjText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "No way is known from WGS 84 to \"%1\".")));
    made->metresOfHeight = MetresOfHeightOf(context, system.get(), places.get());
    made->name = name.isEmpty() || name == QLatin1String("unknown") ? Shortened(text) : Shortened(name);
    Area area;
    if (proj_get_area_of_use(context, places.get(), &area.west, &area.south, &area.east, &area.north,
                             nullptr)) {
        constexpr double unknown = -1000.0;
        area.isKnown = area.west != unknown && area.south != unknown;
        made->area = area;
        made->areaText = area.isKnown ? TextOf(area) : QString();
    }
    // The lines that are noted here live no longer.
    proj_log_func(context, nullptr, [](void*, int, const char*) {});
    return AxProjSystem(std::move(made));
}

AxProjSystem::AxProjSystem(std::unique_ptr<Impl> made) : m(std::move(made)) {}
AxProjSystem::AxProjSystem(AxProjSystem&&) noexcept = default;
AxProjSystem::~AxProjSystem() = default;

const QString& AxProjSystem::Name() const
{
    return m->name;
}

const AxProjSystem::AxisUnit& AxProjSystem::Unit() const
{
    return m->unit;
}

const QString& AxProjSystem::AxisName(std::size_t axis) const
{
    return m->axes[axis];
}

double AxProjSystem::MetresOfHeight() const
{
    return m->metresOfHeight;
}

const QString& AxProjSystem::AreaText() const
{
    return m->areaText;
}

bool AxProjSystem::IsRough() const
{
    return m->isRough;
}

std::optional<std::array<double, 2>> AxProjSystem::Forward(double latitude, double longitude,
                                                           double& degreesBeyond) const
{
    if (!std::isfinite(longitude) || !(std::abs(latitude) <= 90.0))
        return std::nullopt;
    const double within = std::remainder(longitude, 360.0);
    degreesBeyond = m->area.DegreesBeyond(latitude, within);
    const PJ_COORD to = m->Go(PJ_FWD, within, latitude);
    if (!std::isfinite(to.xy.x) || !std::isfinite(to.xy.y))
        return std::nullopt;
    const PJ_COORD back = m->Go(PJ_INV, to.xy.x, to.xy.y);
    const double shrink = std::cos(latitude * M_PI / 180.0);
    const bool isBack = std::abs(back.xy.y - latitude) <= wayBackTolerance &&
                        std::abs(std::remainder(back.xy.x - within, 360.0)) * shrink <= wayBackTolerance;
    if (!isBack)
        return std::nullopt;
    return std::array<double, 2>{to.xy.x, to.xy.y};
}

std::optional<PointLatLng> AxProjSystem::Inverse(const std::array<double, 2>& values) const
{
    if (!std::isfinite(values[0]) || !std::isfinite(values[1]))
        return std::nullopt;
    const PJ_COORD to = m->Go(PJ_INV, values[0], values[1]);
    if (!std::isfinite(to.xy.x) || !(std::abs(to.xy.y) <= 90.0))
        return std::nullopt;
    return PointLatLng(to.xy.y, std::remainder(to.xy.x, 360.0));
}
