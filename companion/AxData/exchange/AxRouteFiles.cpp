#include <AxData/exchange/AxExchangeText.h>
#include <AxData/exchange/AxRouteFiles.h>
#include <AxData/exchange/AxRouteNotes.h>

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace {
struct RoutePlace
{
    double longitude;
    double latitude;
    double altitude;
};

template <typename Point> RoutePlace PlaceAt(const Point& point)
{
    return {point.longitude, point.latitude, point.altitude};
}

QByteArray Degrees(double value)
{
    return QByteArray::number(value, 'f', 9);
}

QByteArray Metres(double value)
{
    return QByteArray::number(value, 'f', 3);
}

QByteArray CommaSeparated(const RoutePlace& place)
{
    return Degrees(place.longitude) + ',' + Degrees(place.latitude) + ',' + Metres(place.altitude);
}

template <typename Points> bool AreAllOnGlobe(const Points& points)
{
    return std::all_of(points.begin(), points.end(), [](const auto& point) {
        return AxIsOnGlobe(point.latitude, point.longitude) && !std::isinf(point.altitude);
    });
}

template <typename Points> std::ptrdiff_t WithoutAltitude(const Points& points)
{
    return std::count_if(points.begin(), points.end(),
                         [](const auto& point) { return std::isnan(point.altitude); });
}

/// Why there is nothing to write; empty when there is.
QString RouteFault(const AxPlanResult& route)
{
    if (!route.IsPlanned())
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange", "There is no route to write."));
    if (!AreAllOnGlobe(route.points) || !AreAllOnGlobe(route.photos))
        return AxExchangeText(
            QT_TRANSLATE_NOOP("AxExchange", "A point of the route is no place on the globe."));
    const std::ptrdiff_t unknown = WithoutAltitude(route.points) + WithoutAltitude(route.photos);
    if (unknown > 0)
        return AxExchangeText(QT_TRANSLATE_NOOP("AxExchange",
                                                "The format needs the altitude of each point, and that of %1 "
                                                "points is not known: they follow the terrain, or home's is "
                                                "left open."))
            .arg(unknown);
    return {};
}

const char* RoleName(AxPlanPoint::Role role)
{
    using RouteRole = AxPlanPoint::Role;
    switch (role) {
    case RouteRole::LeadIn:
        return "lead-in";
    case RouteRole::PassStart:
        return "pass-start";
    case RouteRole::PassEnd:
        return "pass-end";
    case RouteRole::OnPass:
        return "on-pass";
    case RouteRole::Turn:
        return "turn";
    case RouteRole::HomeLeg:
        return "home-leg";
    }
    return "";
}

void WritePlacemark(QXmlStreamWriter& xml, const QString& name, const char* geometry,
                    const QByteArray& places)
{
    xml.writeStartElement("Placemark");
    xml.writeTextElement("name", AxTextForXml(name));
    xml.writeStartElement(QLatin1String(geometry));
    xml.writeTextElement("altitudeMode", "absolute");
    xml.writeTextElement("coordinates", QString::fromLatin1(places));
    xml.writeEndElement();
    xml.writeEndElement();
}

QStringList NotesOfView(const AxPlanResult& route, const AxPlanRequest& request)
{
    return QStringList(AxExchangeText(QT_TRANSLATE_NOOP(
               "AxExchange", "The speed to fly and the distance between photos are not in the file."))) +
           AxNotesOfAnyFormat(route, request);
}

QString NoteOnPoints()
{
    return AxExchangeText(QT_TRANSLATE_NOOP(
        "AxExchange", "Which points begin or end a pass, and where the photos head, is not in the file."));
}

QJsonArray JsonPlace(const RoutePlace& place)
{
    const auto rounded = [](double value, double steps) { return std::round(value * steps) / steps + 0.0; };
    return {rounded(place.longitude, 1e9), rounded(place.latitude, 1e9), rounded(place.altitude, 1e3)};
}

/// Lines that nowhere cross the antimeridian; readers draw a leg over it around the globe.
QJsonArray LinesOf(const std::vector<AxPlanPoint>& points)
{
    QJsonArray lines;
    QJsonArray line;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const RoutePlace to = PlaceAt(points[i]);
        if (i > 0 && std::fabs(to.longitude - points[i - 1].longitude) > 180.0) {
            const RoutePlace from = PlaceAt(points[i - 1]);
            const double border = from.longitude > 0.0 ? 180.0 : -180.0;
            const double whole = std::remainder(to.longitude - from.longitude, 360.0);
            const double share = whole == 0.0 ? 0.0 : (border - from.longitude) / whole;
            RoutePlace cut = {border, from.latitude + share * (to.latitude - from.latitude),
                              from.altitude + share * (to.altitude - from.altitude)};
            line += JsonPlace(cut);
            lines += line;
            cut.longitude = -border;
            line = QJsonArray();
            line += JsonPlace(cut);
        }
        line += JsonPlace(to);
    }
    lines += line;
    return lines;
}

QJsonObject Feature(const char* type, const QJsonArray& coordinates, const QJsonObject& properties)
{
    return {{"type", "Feature"},
            {"geometry", QJsonObject{{"type", type}, {"coordinates", coordinates}}},
            {"properties", properties}};
}
} // namespace

QString AxTextForXml(const QString& text)
{
    QString allowed;
    for (const uint code : text.toUcs4())
        if (code >= 0x20 ? code != 0xFFFE && code != 0xFFFF && (code < 0xD800 || code > 0xDFFF)
                         : code == '\t' || code == '\n')
            allowed += QString::fromUcs4(&code, 1);
    return allowed;
}

AxExported AxWriteKml(const AxPlanResult& route, const AxPlanRequest& request, const QString& name)
{
    AxExported file;
    file.fault = RouteFault(route);
    if (!file.fault.isEmpty())
        return file;
    QBuffer buffer(&file.data);
    buffer.open(QIODevice::WriteOnly);
    QXmlStreamWriter xml(&buffer);
    xml.writeStartDocument();
    xml.writeStartElement("kml");
    xml.writeDefaultNamespace("http://www.opengis.net/kml/2.2");
    xml.writeStartElement("Document");
    xml.writeTextElement("name", AxTextForXml(name));
    QByteArray places;
    for (const AxPlanPoint& point : route.points)
        places += CommaSeparated(PlaceAt(point)) + '\n';
    WritePlacemark(xml, name, "LineString", places);
    if (request.home)
        WritePlacemark(xml, QStringLiteral("home"), "Point",
                       CommaSeparated({request.home->x(), request.home->y(), request.homeAltitude}));
    xml.writeStartElement("Folder");
    xml.writeTextElement("name", "photos");
    xml.writeTextElement("visibility", "0");
    int number = 0;
    for (const AxPlanPhoto& photo : route.photos)
        WritePlacemark(xml, QString::number(++number), "Point", CommaSeparated(PlaceAt(photo)));
    xml.writeEndDocument();
    buffer.close();
    file.notes << AxExchangeText(QT_TRANSLATE_NOOP(
                      "AxExchange",
                      "Altitudes are written as the map has them; programs that read KML take them "
                      "for metres above the sea."))
               << NoteOnPoints();
    file.notes += NotesOfView(route, request);
    return file;
}

AxExported AxWriteCsv(const AxPlanResult& route, const AxPlanRequest& request, const QString& name)
{
    AxExported file;
    file.fault = RouteFault(route);
    if (!file.fault.isEmpty())
        return file;
    file.data = "kind,pass,longitude,latitude,map_altitude_m,heading_deg\r\n";
    const auto line = [&file](const char* kind, int pass, const RoutePlace& place,
                              const QByteArray& heading) {
        file.data += QByteArray(kind) + ',' + (pass < 0 ? QByteArray() : QByteArray::number(pass + 1)) + ',' +
                     CommaSeparated(place) + ',' + heading + "\r\n";
    };
    if (request.home)
        line("home", -1, {request.home->x(), request.home->y(), request.homeAltitude}, {});
    for (const AxPlanPoint& point : route.points)
        line(RoleName(point.role), point.pass, PlaceAt(point), {});
    for (const AxPlanPhoto& photo : route.photos)
        line("photo", photo.pass, PlaceAt(photo), QByteArray::number(photo.heading, 'f', 2));
    if (!name.isEmpty())
        file.notes << AxExchangeText(
                          QT_TRANSLATE_NOOP("AxExchange", "The format has no place for the name \"%1\"."))
                          .arg(name);
    file.notes += NotesOfView(route, request);
    return file;
}

AxExported AxWriteGeoJson(const AxPlanResult& route, const AxPlanRequest& request, const QString& name)
{
    AxExported file;
    file.fault = RouteFault(route);
    if (!file.fault.isEmpty())
        return file;
    const AxPlanFigures& figures = route.figures;
    QJsonArray features = {Feature("MultiLineString", LinesOf(route.points),
                                   {{"kind", "route"},
                                    {"name", name},
                                    {"length_m", figures.length},
                                    {"seconds", figures.seconds},
                                    {"photos", figures.photos}})};
    if (request.home)
        features += Feature("Point", JsonPlace({request.home->x(), request.home->y(), request.homeAltitude}),
                            {{"kind", "home"}});
    QJsonArray photos;
    for (const AxPlanPhoto& photo : route.photos)
        photos += JsonPlace(PlaceAt(photo));
    features += Feature("MultiPoint", photos, {{"kind", "photos"}});
    file.data = QJsonDocument(QJsonObject{{"type", "FeatureCollection"}, {"features", features}}).toJson();
    file.notes << NoteOnPoints();
    file.notes += NotesOfView(route, request);
    return file;
}
