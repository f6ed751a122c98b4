#pragma once

#include <AxAlgorthm/CAxVector3D.h>

#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVariant>

/// Values of a project file's columns, and what is wrong with one, for people; empty when it is taken.
namespace AxProjectValues {
constexpr int longestName = 10000;   // characters
constexpr int longestText = 1000000; // characters
constexpr int mostVertices = 1000000;
constexpr double farthest = 1e7; // metres: more than the planet's radius

QString Take(const QVariant& value, double& number, double least, double most);
QString Take(const QVariant& value, int& number, int least, int most);
QString Take(const QVariant& value, bool& taken);
QString Take(const QVariant& value, QString& text, int longest = longestName);
/// A text that is not empty.
QString TakeID(const QVariant& value, QString& text);

/// Rings, heights and names are JSON texts.
QVariant RingText(const QList<QPointF>& ring);
QString TakeRing(const QVariant& value, QList<QPointF>& ring);
QVariant HeightsText(const QMap<int, QList<CAxVector3D>>& heights);
QString TakeHeights(const QVariant& value, QMap<int, QList<CAxVector3D>>& heights);
QVariant NamesText(const QStringList& names);
QString TakeNames(const QVariant& value, QStringList& names);

template <typename Enum> QString TakeEnum(const QVariant& value, Enum& taken, Enum last)
{
    int number = 0;
    const QString reason = Take(value, number, 0, static_cast<int>(last));
    if (reason.isEmpty())
        taken = static_cast<Enum>(number);
    return reason;
}
} // namespace AxProjectValues
