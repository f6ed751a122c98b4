#pragma once
#include "analysis/zones/AxZoneClipping.h"

#include <optional>

/// What is left of a zone when a single lift lies well inside it, as most do: the zone with a hole. Point for
/// point what the clippers make of the two rings, which takes them thirty times as long.
///
/// Nothing where that is not sure, by the numbers that the clippers take for nought: when the rings meet, or
/// come near each other or themselves, when an edge is short or goes on straight in the next one, when a ring
/// is a box along the axes, and for rings of many points.
std::optional<AxClippedZone> AxZoneWithHole(const AxRing& zone, const AxRing& lift);
