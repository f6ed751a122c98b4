#include <AxData/project/AxProjectFields.h>
#include <AxData/project/AxProjectValues.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <cmath>

using namespace AxProjectValues;

namespace {
QString NoNumber()
{
    return AxProjectText::tr("it is no number");
}

QVariant TextOf(const QJsonArray& array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

// The list that a text holds.
QString TakeArray(const QVariant& value, QJsonArray& array)
{
    const QJsonDocument document = QJsonDocument::fromJson(value.toString().toUtf8());
    if (value.type() != QVariant::String || !document.isArray())
        return AxProjectText::tr("it is no list");
    array = document.array();
    return array.size() <= mostVertices ? QString()
                                        : AxProjectText::tr("it has more than %1 entries").arg(mostVertices);
}

// Longitude, latitude and, if wanted, altitude.
QString TakePlace(const QJsonValue& value, int numbers, double (&place)[3])
{
    const QJsonArray list = value.toArray();
    bool isPlace = list.size() == numbers;
    for (int i = 0; isPlace && i < numbers; ++i) {
        isPlace = list[i].isDouble();
        place[i] = list[i].toDouble();
    }
    if (!isPlace)
        return AxProjectText::tr("it is no place");
    const bool isOnGlobe = std::abs(place[0]) <= 180.0 && std::abs(place[1]) <= 90.0;
    return isOnGlobe && (numbers < 3 || std::abs(place[2]) <= farthest)
               ? QString()
               : AxProjectText::tr("it is not on the globe");
}
} // namespace

QString AxProjectValues::Take(const QVariant& value, double& number, double least, double most)
{
    const bool isNumber = value.type() == QVariant::Double || value.type() == QVariant::LongLong ||
                          value.type() == QVariant::Int || value.type() == QVariant::Bool;
    if (!isNumber || value.isNull() || !std::isfinite(value.toDouble()))
        return NoNumber();
    number = value.toDouble();
    if (number < least || number > most)
        return AxProjectText::tr("%1 is not from %2 to %3").arg(number).arg(least).arg(most);
    return {};
}

QString AxProjectValues::Take(const QVariant& value, int& number, int least, int most)
{
    double real = 0.0;
    const QString reason = Take(value, real, least, most);
    if (reason.isEmpty() && real != std::floor(real))
        return AxProjectText::tr("%1 is no whole number").arg(real);
    number = reason.isEmpty() ? static_cast<int>(real) : number;
    return reason;
}

QString AxProjectValues::Take(const QVariant& value, bool& taken)
{
    int number = 0;
    const QString reason = Take(value, number, 0, 1);
    taken = number == 1;
    return reason;
}

QString AxProjectValues::Take(const QVariant& value, QString& text, int longest)
{
    if (value.type() != QVariant::String)
        return AxProjectText::tr("it is no text");
    text = value.toString();
    return text.size() <= longest ? QString()
                                  : AxProjectText::tr("it is longer than %1 characters").arg(longest);
}

QString AxProjectValues::TakeID(const QVariant& value, QString& text)
{
    const QString reason = Take(value, text);
    return reason.isEmpty() && text.isEmpty() ? AxProjectText::tr("it is empty") : reason;
}

QVariant AxProjectValues::RingText(const QList<QPointF>& ring)
{
    QJsonArray array;
    for (const QPointF& vertex : ring)
        array += QJsonArray{vertex.x(), vertex.y()};
    return TextOf(array);
}

QString AxProjectValues::TakeRing(const QVariant& value, QList<QPointF>& ring)
{
    QJsonArray array;
    QString reason = TakeArray(value, array);
    ring.clear();
    for (const QJsonValue& vertex : qAsConst(array)) {
        double place[3] = {};
        if (!reason.isEmpty())
            break;
        reason = TakePlace(vertex, 2, place);
        if (!reason.isEmpty())
            reason = AxProjectText::tr("vertex %1: %2").arg(ring.size() + 1).arg(reason);
        ring += QPointF(place[0], place[1]);
    }
    return reason;
}

QVariant AxProjectValues::HeightsText(const QMap<int, QList<CAxVector3D>>& heights)
{
    QJsonArray array;
    for (auto points = heights.begin(); points != heights.end(); ++points) {
        QJsonArray places;
        for (const CAxVector3D& point : points.value())
            places += QJsonArray{point.y(), point.x(), point.z()};
        array += QJsonArray{points.key(), places};
    }
    return TextOf(array);
}

QString AxProjectValues::TakeHeights(const QVariant& value, QMap<int, QList<CAxVector3D>>& heights)
{
    QJsonArray array;
    const QString reason = TakeArray(value, array);
    heights.clear();
    for (const QJsonValue& item : qAsConst(array)) {
        const QJsonArray pair = item.toArray();
        const double index = pair.at(0).toDouble(-1.0);
        if (pair.size() != 2 || index < 0.0 || index > mostVertices || index != std::floor(index))
            return AxProjectText::tr("it is no list");
        QList<CAxVector3D>& points = heights[static_cast<int>(index)];
        for (const QJsonValue point : pair.at(1).toArray()) {
            double place[3] = {};
            const QString wrong = TakePlace(point, 3, place);
            if (!wrong.isEmpty())
                return AxProjectText::tr("vertex %1: %2").arg(points.size() + 1).arg(wrong);
            points += CAxVector3D(place[1], place[0], place[2]);
        }
    }
    return reason;
}

QVariant AxProjectValues::NamesText(const QStringList& names)
{
    return TextOf(QJsonArray::fromStringList(names));
}

QString AxProjectValues::TakeNames(const QVariant& value, QStringList& names)
{
    QJsonArray array;
    const QString reason = TakeArray(value, array);
    names.clear();
    for (const QJsonValue& name : qAsConst(array))
        names += name.toString();
    return reason;
}
