// The witness walk from the grid's corners, in the fast and the literal reading.
#include "intersector/Intersector.h"

#include <gtest/gtest.h>

#include "IntersectorTestUtil.h"

namespace {
class Walk : public ::testing::TestWithParam<bool> {
  protected:
    void SetUp() override { UseProcedure(run_, GetParam()); }
    int Count(CellState s, bool withList) const {
        int n = 0;
        for (std::size_t c = 0; c < cells_.Size(); ++c)
            n += cells_.Data()[c].m_eState == s &&
                 cells_.Data()[c].m_vecTriangles.empty() != withList;
        return n;
    }
    IntersectContext run_;
    GridCellArray& cells_ = run_.m_gridCells;
};

TEST_P(Walk, AClosedBoxKeepsItsInsideUnknownAndUntested) {
    // Box 1.5..4.5 in 6 x 6 x 6 unit cells: layers 1 and 4 are cut, cells 2..3 lie inside.
    UnitGrid(run_, 6, 6, 6);
    double lo[3] = {1.5, 1.5, 1.5}, hi[3] = {4.5, 4.5, 4.5};
    std::vector<SurfaceZone> zones = {Zone(BoxSurface(lo, hi))};
    IntersectZones(run_, zones, ".");
    EXPECT_EQ(Count(CELL_INTERSECTED, true), 4 * 4 * 4 - 2 * 2 * 2);
    // The outer-layer copy marks the whole rim without triangles, its edges and corners through
    // cells that the earlier steps set.
    EXPECT_EQ(Count(CELL_INTERSECTED, false), 32 + 48 + 72);
    EXPECT_EQ(Count(CELL_UNKNOWN, false), 8);
    for (int c = 2; c <= 3; ++c) EXPECT_EQ(cells_(c, c, c).m_eState, CELL_UNKNOWN);
    // A cell on the face x = 1.5 only: its witnesses, one per search cell, come from that face.
    TriangleSpan s = cells_.Triangles(cells_(1, 2, 2));
    ASSERT_FALSE(s.empty());
    for (Triangle* t : s)
        for (int v = 0; v < 3; ++v) EXPECT_EQ(t->m_adblVertices[3 * v], 1.5);
}

INSTANTIATE_TEST_SUITE_P(FastAndPlain, Walk, ::testing::Values(false, true));
}  // namespace
