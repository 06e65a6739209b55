// Surface triangles of the intersector. Their coplanar family and the point predicates beside them
// fix what coplanarity, lying on an edge and equality mean for the surface model.
#pragma once

#include <cstdint>
#include <ostream>

#include "FEL_vector3.h"
#include "intersector/predicates.h"

// Three points in double precision; edge 0 is P0-P1, edge 1 is P1-P2, edge 2 is P2-P0.
class Triangle {
  public:
    double m_adblVertices[9];  // P0.x, P0.y, P0.z, P1.x, ... P2.z
    bool m_blnFlagA;
    bool m_blnFlagB;
    std::int32_t m_intIndexA;
    std::int32_t m_intIndexB;
    std::uint16_t m_ushtMark;

    // Leaves the vertices, m_intIndexB and m_ushtMark unset.
    Triangle();
    Triangle(double* a, double* b, double* c);
    Triangle(FEL_vector3<double> a, FEL_vector3<double> b, FEL_vector3<double> c);
    Triangle(const Triangle& other);
    Triangle& operator=(const Triangle& other);
    // All nine coordinates Close, position by position: vertex order counts.
    bool operator==(const Triangle& other) const;

    double Average(short coord) const;
    // Minimum of the coordinate when wantMax is 0, else maximum.
    double MinMaxOfTriangle(short wantMax, short coord) const;
    // z where the plane crosses x = y = 0; no guard for a plane parallel to z.
    double FindZeroZeroZCoord() const;
    // Centroids of this and of tris[first..last] (values, not pointers) equal on a 0.0001 grid.
    bool SameAvgInTris(Triangle* tris, int first, int last) const;
    // Whether the triangle touches the box.
    bool PartialBoundingBoxTest(const double* boxMin, const double* boxMax) const;
    // Longest-edge bisection until at least minPieces triangles; pieces becomes a new[] array of
    // count heap triangles, all the caller's. This triangle is left as it is.
    void BreakUpTriangle(Triangle**& pieces, unsigned short minPieces, int& count) const;

    // The point or segment is taken to lie in the plane. 1 inside or on a vertex, 0 outside,
    // -1 on an edge or undecidable.
    int CoPlanarPointIntersection(double* p) const;
    // edges[0..2]: the edges crossed, in edge order, then -1. The result is that of edge 2 alone.
    int CoPlanarLineCrossing(double* p, double* q, int* edges) const;
    // The first edge whose line holds p and q, or whose ends lie on line pq; else -1.
    int CoPlanarLineOnEdge(double* p, double* q) const;
    // The first edge whose line holds p; else -1.
    int CoPlanarPointOnEdge(double* p) const;
};

// "(x, y, z),  (x, y, z),  (x, y, z)", no line end.
std::ostream& operator<<(std::ostream& out, const Triangle& t);
