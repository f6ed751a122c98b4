#pragma once

#include "ZoneRecords.h"

#include <QString>

#include <vector>

/// The shapes of zones. Everything here is plain arithmetic; degrees in and out, metres where it says so.

/// Reads "lng,lat|lng,lat|...": the form in which zone files keep outlines. A third number per point is
/// allowed and dropped, and so is a last point that repeats the first. Empty with an `error` that names the
/// point when anything of it cannot be read.
Ring ParseArea(const QString& text, QString& error);
/// Six decimals, a tenth of a metre.
QString FormatArea(const Ring& ring);

/// Whether all points are finite and on the globe.
bool IsOnGlobe(const Ring& ring);

/// Longitudes that never jump, so that some may lie beyond 180 degrees.
Ring Unwrapped(Ring ring);
/// Whether an unwrapped outline goes around a pole.
bool IsAroundPole(const Ring& unwrapped);

/// What an outline comes to on a map that ends at 180 degrees east and west: itself, or the pieces on
/// either side. A step of more than half the globe is taken for the short way round. Nothing for an outline
/// around a pole, which no map of longitudes and latitudes can show.
std::vector<Ring> OnMap(const Ring& ring);

/// A circle in the horizontal plane of its centre.
Ring CircleRing(const QPointF& centre, double metres);

/// A line between two points.
struct Runway
{
    QPointF begin;
    QPointF end;
};

double RunwayMetres(const Runway& runway);
double Distance(const QPointF& a, const QPointF& b);

/// The outline at a distance around all runways of a field and the ground between them: for a single
/// runway two straight lines beside it and half circles around its ends. Empty without runways.
Ring RunwayOutline(const std::vector<Runway>& runways, double metres);

/// Middle of the bounding box.
QPointF BoxCentre(const Ring& ring);
