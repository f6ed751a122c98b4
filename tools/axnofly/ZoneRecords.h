#pragma once

#include <QPointF>
#include <QString>
#include <QStringList>

#include <vector>

/// Points in degrees, x the longitude and y the latitude, the first not repeated at the end. One point
/// alone stands for the circle of zoneCircleMetres around it.
using Ring = std::vector<QPointF>;

constexpr double zoneCircleMetres = 8000.0;

/// A row of "no_fly_zone".
struct Zone
{
    QString id;
    bool isEnabled = true;
    Ring ring;
};

/// A row of "lift_no_fly_zone". Begin and expiry stand in the file as they were given.
struct Lift
{
    static constexpr int granted = 2;

    QString begin;
    QString expiry;
    QStringList zoneIds;
    QString user;
    int status = granted;
    Ring ring;
};
