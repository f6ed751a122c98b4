#include <AxTelemetry/record/AxFlightRecord.h>
#include <AxTelemetry/record/AxPhotoExport.h>
#include <AxTelemetry/record/AxRecordText.h>
#include <AxTelemetry/record/AxSeaLevel.h>

#include <AxAlgorthm/AxConstants.h>
#include <AxData/exchange/AxRouteFiles.h>

#include <QBuffer>
#include <QDateTime>
#include <QXmlStreamWriter>

#include <cmath>

namespace {
QByteArray PhotoTime(quint64 time)
{
    if (!AxHasDate(time) || time > 4102444800000) // the year 2100
        return {};
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(time), Qt::UTC)
        .toString(Qt::ISODateWithMs)
        .toLatin1();
}

QByteArray PhotoNumber(double value, int decimals)
{
    return std::isfinite(value) ? QByteArray::number(value, 'f', decimals) : QByteArray();
}

QByteArray PhotoDegrees(double radians)
{
    return PhotoNumber(radians * 180.0 / PI, 3);
}

QByteArray PhotoHeading(double radians)
{
    const double degrees = std::fmod(std::fmod(radians * 180.0 / PI, 360.0) + 360.0, 360.0);
    return PhotoNumber(degrees >= 359.9995 ? 0.0 : degrees, 3);
}

double AboveSea(const AxPhotoRecord& photo)
{
    return photo.altitude - AxSeaLevelAt(photo.latitude, photo.longitude);
}

/// The photos that can be written; the fault or the notes say what cannot.
std::vector<const AxPhotoRecord*> PlacedPhotos(const std::vector<AxPhotoRecord>& photos, AxExported& file)
{
    std::vector<const AxPhotoRecord*> placed;
    bool isDateless = false;
    for (const AxPhotoRecord& photo : photos)
        if (AxIsOnGlobe(photo.latitude, photo.longitude)) {
            placed.push_back(&photo);
            isDateless = isDateless || PhotoTime(photo.time).isEmpty();
        }
    if (placed.empty())
        file.fault = AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "There are no photos with a place."));
    else if (placed.size() < photos.size())
        file.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord", "%1 photos without a place are left out."))
                          .arg(photos.size() - placed.size());
    if (isDateless)
        file.notes << AxRecordText(
            QT_TRANSLATE_NOOP("AxRecord", "Photos whose date is not known have no time in the file."));
    if (!placed.empty() && !AxGeoidFault().isEmpty())
        file.notes << AxRecordText(QT_TRANSLATE_NOOP("AxRecord",
                                                     "Heights above the sea and above the ellipsoid are "
                                                     "taken for the same: %1"))
                          .arg(AxGeoidFault());
    return placed;
}

void WriteDatum(QXmlStreamWriter& xml, const char* name, const QByteArray& value)
{
    if (value.isEmpty())
        return;
    xml.writeStartElement("Data");
    xml.writeAttribute("name", name);
    xml.writeTextElement("value", QString::fromLatin1(value));
    xml.writeEndElement();
}
} // namespace

AxExported AxWritePhotoCsv(const std::vector<AxPhotoRecord>& photos)
{
    AxExported file;
    const std::vector<const AxPhotoRecord*> placed = PlacedPhotos(photos, file);
    if (placed.empty())
        return file;
    file.data = "index,time_utc,longitude,latitude,ellipsoid_altitude_m,sea_altitude_m,roll_deg,pitch_deg,"
                "yaw_deg\r\n";
    for (const AxPhotoRecord* const photo : placed)
        file.data += QByteArray::number(photo->index) + ',' + PhotoTime(photo->time) + ',' +
                     PhotoNumber(photo->longitude, 9) + ',' + PhotoNumber(photo->latitude, 9) + ',' +
                     PhotoNumber(photo->altitude, 3) + ',' + PhotoNumber(AboveSea(*photo), 3) + ',' +
                     PhotoDegrees(photo->roll) + ',' + PhotoDegrees(photo->pitch) + ',' +
                     PhotoHeading(photo->yaw) + "\r\n";
    return file;
}

AxExported AxWritePhotoKml(const std::vector<AxPhotoRecord>& photos, const QString& name)
{
    AxExported file;
    const std::vector<const AxPhotoRecord*> placed = PlacedPhotos(photos, file);
    if (placed.empty())
        return file;
    QBuffer buffer(&file.data);
    buffer.open(QIODevice::WriteOnly);
    QXmlStreamWriter xml(&buffer);
    xml.writeStartDocument();
    xml.writeStartElement("kml");
    xml.writeDefaultNamespace("http://www.opengis.net/kml/2.2");
    xml.writeStartElement("Document");
    xml.writeTextElement("name", AxTextForXml(name));
    for (const AxPhotoRecord* const photo : placed) {
        const bool isHigh = std::isfinite(photo->altitude);
        xml.writeStartElement("Placemark");
        xml.writeTextElement("name", QString::number(photo->index));
        const QByteArray time = PhotoTime(photo->time);
        if (!time.isEmpty()) {
            xml.writeStartElement("TimeStamp");
            xml.writeTextElement("when", QString::fromLatin1(time));
            xml.writeEndElement();
        }
        xml.writeStartElement("ExtendedData");
        WriteDatum(xml, "ellipsoid_altitude_m", PhotoNumber(photo->altitude, 3));
        WriteDatum(xml, "roll_deg", PhotoDegrees(photo->roll));
        WriteDatum(xml, "pitch_deg", PhotoDegrees(photo->pitch));
        WriteDatum(xml, "yaw_deg", PhotoHeading(photo->yaw));
        xml.writeEndElement();
        xml.writeStartElement("Point");
        xml.writeTextElement("altitudeMode", isHigh ? "absolute" : "clampToGround");
        QByteArray place = PhotoNumber(photo->longitude, 9) + ',' + PhotoNumber(photo->latitude, 9);
        if (isHigh)
            place += ',' + PhotoNumber(AboveSea(*photo), 3);
        xml.writeTextElement("coordinates", QString::fromLatin1(place));
        xml.writeEndElement();
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    buffer.close();
    return file;
}
