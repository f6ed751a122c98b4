#pragma once

#define GEOS_USE_ONLY_R_API
#include <geos_c.h>

#include <memory>
#include <utility>
#include <vector>

/// A GEOS session with owning geometry handles, for use inside one function. GEOS reports errors by null
/// results here, never by exceptions; operations given a null geometry give null or false.
class GeosContext
{
public:
    struct Delete
    {
        GEOSContextHandle_t handle;
        void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(handle, geometry); }
    };
    using Geometry = std::unique_ptr<GEOSGeometry, Delete>;

    GeosContext() : m_handle(GEOS_init_r()) {}
    ~GeosContext() { GEOS_finish_r(m_handle); }
    GeosContext(const GeosContext&) = delete;
    GeosContext& operator=(const GeosContext&) = delete;

    GEOSContextHandle_t handle() const { return m_handle; }
    Geometry own(GEOSGeometry* geometry) const { return Geometry(geometry, Delete{m_handle}); }

    /// The linear ring through the points, closed here; null with fewer than three of them.
    template <typename Point> Geometry ring(const std::vector<Point>& points) const
    {
        if (points.size() < 3)
            return own(nullptr);
        const auto count = static_cast<unsigned>(points.size());
        GEOSCoordSequence* const sequence = GEOSCoordSeq_create_r(m_handle, count + 1, 2);
        for (unsigned i = 0; i <= count; ++i) {
            const Point& point = points[i % count];
            GEOSCoordSeq_setXY_r(m_handle, sequence, i, point.x(), point.y());
        }
        return own(GEOSGeom_createLinearRing_r(m_handle, sequence));
    }

    template <typename Point> Geometry polygon(const std::vector<Point>& points) const
    {
        Geometry shell = ring(points);
        return own(shell ? GEOSGeom_createPolygon_r(m_handle, shell.release(), nullptr, 0) : nullptr);
    }

    /// The union on a grid of the given size, on which all its vertices lie.
    Geometry unionOf(std::vector<Geometry> parts, double grid) const
    {
        std::vector<GEOSGeometry*> raw;
        for (Geometry& part : parts)
            if (part)
                raw.push_back(part.release());
        const Geometry all = own(GEOSGeom_createCollection_r(m_handle, GEOS_GEOMETRYCOLLECTION, raw.data(),
                                                             static_cast<unsigned>(raw.size())));
        return own(all ? GEOSUnaryUnionPrec_r(m_handle, all.get(), grid) : nullptr);
    }

    bool isValid(const Geometry& geometry) const
    {
        return geometry && GEOSisValid_r(m_handle, geometry.get()) == 1;
    }

    /// The vertices of a line or ring, the closing one left out.
    template <typename Point> std::vector<Point> vertices(const GEOSGeometry* line) const
    {
        std::vector<Point> points;
        const GEOSCoordSequence* const sequence = GEOSGeom_getCoordSeq_r(m_handle, line);
        unsigned count = 0;
        if (!sequence || GEOSCoordSeq_getSize_r(m_handle, sequence, &count) != 1)
            return points;
        for (unsigned i = 0; i + 1 < count; ++i) {
            double x = 0.0;
            double y = 0.0;
            GEOSCoordSeq_getXY_r(m_handle, sequence, i, &x, &y);
            points.emplace_back(x, y);
        }
        return points;
    }

private:
    GEOSContextHandle_t m_handle;
};
