// Triangle predicates: the one-sided near-zero test, points in planes, shared segment ends, and
// the split order and windings of BreakUpTriangle.
#include "intersector/Triangle.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

namespace {
struct CloseCase {
    double a, b;
    bool close;
};

TEST(Close, MantissasAtEqualExponentsWithAShiftAtZero) {
    const CloseCase cases[] = {
        {0.0, 0.00005, true},           // both shifted to near 1.0
        {0.0, 0.5, false},              //
        {0.9999999, 1.0000001, false},  // either side of a power of two
        {1000.0, 1000.05, true},        // relative: 0.05 is within the mantissa tolerance at 1000
        {1.0, 1.0003, false},           //
        {0.00019, 0.0, true},           // near zero is one-sided: [0, 0.0002) ...
        {-0.00001, 0.0, false},         // ... and a small negative falls below 1.0 after the shift
    };
    for (const CloseCase& c : cases) EXPECT_EQ(Close(c.a, c.b), c.close) << c.a << " " << c.b;
}

TEST(PointOn3DLine, ATinyNegativeCrossComponentFailsWhereItsMirrorPasses) {
    double a[3] = {0, 0, 0}, b[3] = {1, 0, 0};
    double above[3] = {0.5, 1e-5, 0}, below[3] = {0.5, -1e-5, 0}, far[3] = {7, 0, 0};
    EXPECT_TRUE(PointOn3DLine(a, b, above));
    EXPECT_FALSE(PointOn3DLine(a, b, below));
    EXPECT_TRUE(PointOn3DLine(a, b, far));  // the infinite line
}

TEST(OppositeSidesAndDoesIntersect, PointsAndLinesInThePlaneCount) {
    // Triangle in z = 0: (0,0,0) (1,0,0) (0,1,0).
    double a[3] = {0, 0, 0}, b[3] = {1, 0, 0}, c[3] = {0, 1, 0};
    double inPlane[3] = {5, 5, 0}, up[3] = {0.2, 0.2, 1}, up2[3] = {0.3, 0.1, 2};
    double down[3] = {0.2, 0.2, -1}, offUp[3] = {3, 3, 1}, offDown[3] = {3, 3, -1};
    EXPECT_TRUE(OppositeSides(a, b, c, inPlane, up));
    EXPECT_FALSE(OppositeSides(a, b, c, up, up2));
    EXPECT_TRUE(OppositeSides(a, b, c, up, down));
    EXPECT_TRUE(DoesIntersect(a, b, c, up, down));         // pierces
    EXPECT_FALSE(DoesIntersect(a, b, c, offUp, offDown));  // misses
    EXPECT_TRUE(DoesIntersect(a, b, c, a, b));             // along an edge: all volumes zero
    double p[3] = {-3, 2, 0}, q[3] = {-1, 7, 0};
    EXPECT_TRUE(DoesIntersect(a, b, c, p, q));  // anywhere in the plane
}

TEST(LineIntersect, SharedEndsAndCollinearSegmentsDoNotCross) {
    double a[3] = {0, 0, 0}, b[3] = {1, 1, 0}, c[3] = {1, 0, 0}, d[3] = {0, 1, 0};
    double e[3] = {2, 2, 0}, f[3] = {3, 0, 0};
    EXPECT_TRUE(LineIntersect(a, b, c, d));
    EXPECT_FALSE(LineIntersect(a, b, b, f));  // meet at b
    EXPECT_FALSE(LineIntersect(a, b, b, e));  // collinear
}

TEST(CoPlanar, TheOrderOfStepsDecidesACornerAndTheCrossingResult) {
    double p0[3] = {0, 0, 0}, p1[3] = {1, 0, 0}, p2[3] = {0, 1, 0};
    Triangle ccw(p0, p1, p2), cw(p0, p2, p1);
    std::ostringstream form;
    form << cw;
    EXPECT_EQ(form.str(), "(0, 0, 0),  (0, 1, 0),  (1, 0, 0)");
    EXPECT_EQ(ccw.CoPlanarPointIntersection(p0), 1);
    EXPECT_EQ(cw.CoPlanarPointIntersection(p0), -1);
    double inside[3] = {0.2, 0.2, 0}, outside[3] = {2, 2, 0}, onEdge[3] = {0.5, 0, 0};
    EXPECT_EQ(ccw.CoPlanarPointIntersection(inside), 1);
    EXPECT_EQ(ccw.CoPlanarPointIntersection(outside), 0);
    EXPECT_EQ(ccw.CoPlanarPointIntersection(onEdge), -1);
    int edges[3];
    double p[3] = {0.2, -1, 0}, q[3] = {0.8, 1, 0};  // crosses edges 0 and 1
    EXPECT_EQ(ccw.CoPlanarLineCrossing(p, q, edges), 0);
    EXPECT_EQ(std::vector<int>(edges, edges + 3), (std::vector<int>{0, 1, -1}));
}

// The pieces of t, at least n of them, in the order they come out.
std::vector<Triangle> Split(const Triangle& t, int n) {
    Triangle** pieces = nullptr;
    int count = 0;
    t.BreakUpTriangle(pieces, n, count);
    std::vector<Triangle> out;
    for (int k = 0; k < count; ++k) {
        out.push_back(*pieces[k]);
        delete pieces[k];
    }
    delete[] pieces;
    return out;
}

TEST(BreakUpTriangle, SplitsTheLongestEdgeBackFirstAndFlipsTheSecondPiece) {
    //  P2 (0,1)
    //   |  \      edge 1 (P1-P2) is the longest: m = (1, 0.5)
    //  P0 --- P1 (2,0)
    double p0[3] = {0, 0, 0}, p1[3] = {2, 0, 0}, p2[3] = {0, 1, 0};
    Triangle t(p0, p1, p2);
    t.m_blnFlagB = true;
    // Edge 1 gives (P0,P1,m) (P0,P2,m); the second, taken from the back, ties on edges 1 and 2
    // and splits edge 2 at n into (P2,m,n) (P2,P0,n). Pieces come out from the back. Vertex
    // order is compared, so the windings too: (P0,P2,m) flips the source's, its second piece
    // flips it back.
    double m[3] = {1, 0.5, 0}, n[3] = {0.5, 0.25, 0};
    const std::vector<Triangle> pieces = Split(t, 3);
    EXPECT_EQ(pieces, (std::vector<Triangle>{{p2, p0, n}, {p2, m, n}, {p0, p1, m}}));
    for (const Triangle& p : pieces) EXPECT_TRUE(p.m_blnFlagB && p.m_intIndexB == -1) << p;

    // Equal edges split edge 2 first; fewer than two pieces asked for gives one copy.
    double e0[3] = {1, 0, 0}, e1[3] = {0, 1, 0}, e2[3] = {0, 0, 1}, mid[3] = {0.5, 0, 0.5};
    Triangle eq(e0, e1, e2);
    EXPECT_EQ(Split(eq, 2), (std::vector<Triangle>{{e1, e0, mid}, {e1, e2, mid}}));
    EXPECT_EQ(Split(eq, 1), std::vector<Triangle>{eq});
}
}  // namespace
