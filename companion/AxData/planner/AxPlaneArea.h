#pragma once

#include <AxData/planner/AxPlanPlane.h>

#include <utility>
#include <vector>

/// Rings in the metres of a plane; what they enclose together, the even-odd rule says.
class AxPlaneArea
{
public:
    AxPlaneArea() = default;
    explicit AxPlaneArea(std::vector<AxPlanLine> rings);

    const std::vector<AxPlanLine>& Rings() const { return m_rings; }
    /// Of all rings.
    std::size_t Edges() const { return m_edges; }

    bool Contains(const CAxPoint2D& point) const;
    /// False only where no point of a leg comes within so many metres.
    bool MayMeet(const CAxPoint2D& from, const CAxPoint2D& to, double metres = 0.0) const;
    /// The shares of a leg, from and to, that lie inside, in their order. Stretches below a millimetre do not
    /// count; a leg right along an edge may be in or out.
    std::vector<std::pair<double, double>> Inside(const CAxPoint2D& from, const CAxPoint2D& to) const;
    /// Metres from a point to the nearest edge.
    double DistanceTo(const CAxPoint2D& point) const;

private:
    /// Some edges of a ring, from those that begin at the points `first` to before `end`, and their box.
    struct Piece
    {
        std::size_t ring = 0;
        std::size_t first = 0;
        std::size_t end = 0;
        CAxPoint2D low;
        CAxPoint2D high;
    };
    void AddPieces(std::size_t ring);

    std::vector<AxPlanLine> m_rings;
    std::vector<Piece> m_pieces; // a leg passes most of them by
    CAxPoint2D m_low;            // of the box around them
    CAxPoint2D m_high;
    std::size_t m_edges = 0;
};
