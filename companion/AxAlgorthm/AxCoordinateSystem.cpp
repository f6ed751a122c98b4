#include <AxAlgorthm/AxCoordinateSystem.h>

#include <AxAlgorthm/AxProjSystem.h>

#include <QCoreApplication>

#include <cmath>

namespace {
using AxCoordinateText::Typed;

constexpr int decimalsOfDegrees = 6;

QString SystemText(const char* text)
{
    return QCoreApplication::translate("AxCoordinateSystem", text);
}

const struct
{
    const char* word;
    AxCoordinateText::Form form;
} formWords[] = {
    {"DMS", AxCoordinateText::Form::Dms},
    {"UTM", AxCoordinateText::Form::Utm},
    {"MGRS", AxCoordinateText::Form::Mgrs},
};

// Numbers up to here may be angles, degrees.
bool CanBeDegrees(double latitude, double longitude)
{
    return std::abs(latitude) <= 90.0 && std::abs(longitude) <= 180.0;
}

QString Longitude()
{
    return SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "longitude"));
}

QString Latitude()
{
    return SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "latitude"));
}

QString Easting()
{
    return SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "easting"));
}

QString Northing()
{
    return SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "northing"));
}

// PROJ's names are English, and the same few for nearly all systems.
QString AxisName(const QString& name)
{
    const QString lower = name.toLower();
    for (const auto& [part, text] : {std::pair{"longitude", Longitude()},
                                     {"latitude", Latitude()},
                                     {"easting", Easting()},
                                     {"northing", Northing()}})
        if (lower.endsWith(QLatin1String(part)))
            return text;
    return lower;
}
} // namespace

struct AxCoordinateSystem::Projected
{
    explicit Projected(AxProjSystem&& made) : system(std::move(made)) {}

    QString ValueText(double value) const
    {
        return QString::number(value, 'f',
                               system.Unit().isAngle ? decimalsOfDegrees : system.Unit().decimals);
    }

    AxProjSystem system;
};

AxCoordinateSystem::AxCoordinateSystem() = default;

std::optional<AxCoordinateSystem> AxCoordinateSystem::Of(const QString& text, QString* why)
{
    AxCoordinateSystem made;
    made.m_text = text.trimmed();
    if (made.m_text.isEmpty())
        return made;
    for (const auto& row : formWords) {
        if (made.m_text.compare(QLatin1String(row.word), Qt::CaseInsensitive) == 0) {
            made.m_text = QLatin1String(row.word);
            made.m_form = row.form;
            return made;
        }
    }
    QString fault;
    std::optional<AxProjSystem> system = AxProjSystem::Of(made.m_text, fault);
    if (!system) {
        if (why)
            *why = fault;
        return std::nullopt;
    }
    made.m_projected = std::make_shared<const Projected>(std::move(*system));
    return made;
}

QString AxCoordinateSystem::Name() const
{
    if (m_projected)
        return m_projected->system.Name();
    return m_text.isEmpty() ? QString() : m_text + QStringLiteral(", WGS 84");
}

QString AxCoordinateSystem::AreaText() const
{
    return m_projected ? m_projected->system.AreaText() : QString();
}

double AxCoordinateSystem::MetresOfHeight() const
{
    return m_projected ? m_projected->system.MetresOfHeight() : 1.0;
}

AxCoordinateSystem::Point AxCoordinateSystem::FromPlace(double latitude, double longitude) const
{
    Point point;
    if (!m_projected)
        return point;
    const AxProjSystem& system = m_projected->system;
    double degreesBeyond = 0.0;
    const std::optional<std::array<double, 2>> values = system.Forward(latitude, longitude, degreesBeyond);
    constexpr double nearDegrees = 3.0;
    if (!values || degreesBeyond > nearDegrees)
        return point;
    point.values = *values;
    point.reach = degreesBeyond > 0.0 ? Reach::Near : Reach::Inside;
    return point;
}

std::optional<PointLatLng> AxCoordinateSystem::ToPlace(const std::array<double, 2>& values) const
{
    if (!m_projected)
        return std::nullopt;
    const std::optional<PointLatLng> place = m_projected->system.Inverse(values);
    if (!place || FromPlace(place->Lat(), place->Lng()).reach == Reach::Outside)
        return std::nullopt;
    return place;
}

AxCoordinateSystem::Shown AxCoordinateSystem::Show(double latitude, double longitude) const
{
    Shown shown;
    shown.system = Name();
    if (m_projected) {
        const AxProjSystem& system = m_projected->system;
        const Point point = FromPlace(latitude, longitude);
        for (const std::size_t axis : {0U, 1U}) {
            shown.names[axis] = AxisName(system.AxisName(axis));
            if (point.reach != Reach::Outside)
                shown.values[axis] = m_projected->ValueText(point.values[axis]) +
                                     (system.Unit().isAngle ? QString() : QStringLiteral(" ")) +
                                     system.Unit().sign;
        }
        if (point.reach != Reach::Inside)
            shown.system = SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "outside the area of %1"))
                               .arg(system.Name());
        else if (system.IsRough())
            shown.system =
                SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "%1, its datum shift is not known"))
                    .arg(system.Name());
        return shown;
    }
    shown.names = {Longitude(), Latitude()};
    switch (m_form) {
    case AxCoordinateText::Form::Decimal:
        shown.values = {QString::number(std::remainder(longitude, 360.0), 'f', decimalsOfDegrees) +
                            QChar(0x00b0),
                        QString::number(latitude, 'f', decimalsOfDegrees) + QChar(0x00b0)};
        break;
    case AxCoordinateText::Form::Dms:
        shown.values = {AxCoordinateText::WriteDms(longitude, false),
                        AxCoordinateText::WriteDms(latitude, true)};
        break;
    case AxCoordinateText::Form::Utm:
        shown.names = {Easting(), Northing()};
        if (const std::optional<AxCoordinateText::Grid> grid =
                AxCoordinateText::ToGrid(latitude, longitude)) {
            shown.values = {QString::number(grid->easting, 'f', 2) + QStringLiteral(" m"),
                            QString::number(grid->northing, 'f', 2) + QStringLiteral(" m")};
            shown.system =
                (grid->zone.startsWith(QLatin1String("UPS")) ? QString() : QStringLiteral("UTM ")) +
                grid->zone + QStringLiteral(", WGS 84");
        }
        break;
    case AxCoordinateText::Form::Mgrs:
        shown.names = {m_text, QString()};
        shown.values[0] = AxCoordinateText::Write(latitude, longitude, m_form);
        break;
    }
    return shown;
}

QString AxCoordinateSystem::Line(double latitude, double longitude) const
{
    if (!m_projected)
        return AxCoordinateText::Write(latitude, longitude, m_form);
    const Point point = FromPlace(latitude, longitude);
    if (point.reach == Reach::Outside)
        return SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "outside the area of %1")).arg(Name());
    // Typed geographic coordinates have their latitude first.
    const bool isAngle = m_projected->system.Unit().isAngle;
    return m_projected->ValueText(point.values[isAngle ? 1 : 0]) + QStringLiteral(", ") +
           m_projected->ValueText(point.values[isAngle ? 0 : 1]);
}

Typed AxCoordinateSystem::Read(const QString& text) const
{
    const Typed general = AxCoordinateText::Parse(text);
    if (!m_projected)
        return general;
    const std::optional<std::array<double, 2>> numbers = AxCoordinateText::TwoNumbers(text);
    if (!numbers)
        return general;
    const bool isAngle = m_projected->system.Unit().isAngle;
    const std::optional<PointLatLng> here =
        isAngle ? ToPlace({(*numbers)[1], (*numbers)[0]}) : ToPlace(*numbers);
    // Degrees, taken for metres, lie beside the origin of a system: hardly ever within its area.
    const bool isInside = here && FromPlace(here->Lat(), here->Lng()).reach == Reach::Inside;
    const bool canBeDegrees = !isAngle && CanBeDegrees((*numbers)[0], (*numbers)[1]);
    if (canBeDegrees && !isInside)
        return general;
    const bool isSwapped = !isAngle && !isInside && CanBeDegrees((*numbers)[1], (*numbers)[0]);
    const QString area = AreaText().isEmpty() ? Name() : QStringLiteral("%1 (%2)").arg(Name(), AreaText());
    Typed typed;
    if (canBeDegrees)
        typed.fault = SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem",
                                                   "This can be coordinates of %1 or degrees: write degrees "
                                                   "with N, S, E, W, or with \302\260."))
                          .arg(Name());
    else if (here && !isSwapped)
        typed.place = here;
    else
        typed.fault =
            SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem", "%1, %2 is outside the area of %3."))
                .arg(m_projected->ValueText((*numbers)[0]), m_projected->ValueText((*numbers)[1]), area);
    if (isSwapped)
        typed.fault += QLatin1Char(' ') + SystemText(QT_TRANSLATE_NOOP("AxCoordinateSystem",
                                                                       "Degrees have the latitude first."));
    return typed;
}
