#include "host/marks/MarkFiles.h"

#include <cmath>

namespace {
const QString noteField = QStringLiteral("description");

QString NoteOf(const AxGeoShape& shape)
{
    const QStringList fields{noteField, QStringLiteral("note"), QStringLiteral("desc"),
                             QStringLiteral("comment"), QStringLiteral("cmt")};
    for (const QString& field : fields)
        for (auto it = shape.attributes.cbegin(); it != shape.attributes.cend(); ++it)
            if (it.key().compare(field, Qt::CaseInsensitive) == 0)
                return it.value();
    return {};
}
} // namespace

QVector<AxProjectMark> MarkFiles::MarksOf(const AxGeoContent& content)
{
    QVector<AxProjectMark> marks;
    for (const AxGeoShape& shape : content.shapes) {
        if (shape.kind != AxGeoShape::Point || shape.points.size() != 1 || !std::isnan(shape.radius))
            continue;
        AxProjectMark mark;
        mark.name = shape.name;
        mark.longitude = shape.points.constFirst().x();
        mark.latitude = shape.points.constFirst().y();
        mark.altitude = shape.altitude;
        mark.description = NoteOf(shape);
        marks += mark;
    }
    return marks;
}

QVector<AxGeoShape> MarkFiles::ShapesOf(const QVector<AxProjectMark>& marks, bool hasPlaceFields)
{
    QVector<AxGeoShape> shapes;
    shapes.reserve(marks.size());
    for (const AxProjectMark& mark : marks) {
        AxGeoShape shape;
        shape.kind = AxGeoShape::Point;
        shape.name = mark.name;
        shape.points = {QPointF(mark.longitude, mark.latitude)};
        shape.altitude = mark.altitude;
        if (!mark.description.isEmpty())
            shape.attributes[noteField] = mark.description;
        if (hasPlaceFields) {
            constexpr int digitsOfDegrees = 9;
            constexpr int digitsOfMetres = 3;
            shape.attributes[QStringLiteral("longitude")] =
                QString::number(mark.longitude, 'f', digitsOfDegrees);
            shape.attributes[QStringLiteral("latitude")] =
                QString::number(mark.latitude, 'f', digitsOfDegrees);
            if (std::isfinite(mark.altitude))
                shape.attributes[QStringLiteral("altitude")] =
                    QString::number(mark.altitude, 'f', digitsOfMetres);
        }
        shapes += shape;
    }
    return shapes;
}
