#pragma once

/// What the vertices of a map object make. A plain value, the same for all objects of a kind.
struct AxShapeKind
{
    /// What lies between the vertices.
    enum class Edges
    {
        None,   ///< single points
        Open,   ///< a line
        Closed, ///< a ring, whose last vertex leads back to the first
    };
    Edges edges = Edges::Closed; ///< a ring unless the kind says otherwise
    int leastVertices = 3;       ///< of a finished object
    /// Vertices may come and go one by one. Where they may not, they follow from each other, and
    /// there are as many as the kind has.
    bool countMayChange = true;

    /// Whether they make a ring.
    bool IsClosed() const { return edges == Edges::Closed; }
    /// Whether a finished object of the kind may have that many vertices.
    bool Allows(int vertices) const
    {
        return countMayChange ? vertices >= leastVertices : vertices == leastVertices;
    }
};
