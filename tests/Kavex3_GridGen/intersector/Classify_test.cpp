// Cell classification: the fill from its seed, the decision table of IsCellInterior (fast and
// literal sub-grid flood), and FormsLoop's messages and ring.
#include "intersector/Classify.h"

#include <gtest/gtest.h>

#include "IntersectorTestUtil.h"

namespace {
class Classify : public ::testing::Test {
  protected:
    void Mark(int i0, int i1, int j0, int j1, int k0, int k1, CellState s) {
        for (int i = i0; i <= i1; ++i)
            for (int j = j0; j <= j1; ++j)
                for (int k = k0; k <= k1; ++k) cells_(i, j, k).m_eState = s;
    }
    IntersectContext run_;
    GridCellArray& cells_ = run_.m_gridCells;
};

TEST_F(Classify, ClosedShellsStayUnknownAndAOneCellGapLetsTheFillIn) {
    // A 3 x 3 x 3 shell of intersected cells around (2, 2, 2), in 5^3 cells.
    UnitGrid(run_, 5, 5, 5);
    Mark(1, 3, 1, 3, 1, 3, CELL_INTERSECTED);
    Mark(2, 2, 2, 2, 2, 2, CELL_UNKNOWN);
    ClassifyCells(run_);
    EXPECT_EQ(cells_(2, 2, 2).m_eState, CELL_UNKNOWN);
    EXPECT_EQ(cells_(4, 4, 4).m_eState, CELL_EXTERIOR);
    Mark(0, 4, 0, 4, 0, 4, CELL_UNKNOWN);
    Mark(1, 3, 1, 3, 1, 3, CELL_INTERSECTED);
    Mark(1, 2, 2, 2, 2, 2, CELL_UNKNOWN);  // gap in the middle of the -i face
    ClassifyCells(run_);
    EXPECT_EQ(cells_(2, 2, 2).m_eState, CELL_EXTERIOR);

    // Sealed cells (2,2,2) and (3,3,2) share only an edge along k: both stay sealed.
    UnitGrid(run_, 6, 6, 5);
    Mark(1, 4, 1, 4, 1, 3, CELL_INTERSECTED);
    Mark(2, 2, 2, 2, 2, 2, CELL_UNKNOWN);
    Mark(3, 3, 3, 3, 2, 2, CELL_UNKNOWN);
    ClassifyCells(run_);
    EXPECT_EQ(cells_(2, 2, 2).m_eState, CELL_UNKNOWN);
    EXPECT_EQ(cells_(3, 3, 2).m_eState, CELL_UNKNOWN);
    EXPECT_EQ(cells_(5, 5, 4).m_eState, CELL_EXTERIOR);
}

struct DecisionCase {
    const char* what;
    int i;                   // cell (i, 2, 2) of 6 x 5 x 5
    int exteriorNeighbourI;  // -1: none
    int triangle;            // 0 none, 1 touching the cell, 2 far away (no sub-cell takes it)
    int expect;
};

TEST_F(Classify, IsCellInteriorDecisionTable) {
    const DecisionCase cases[] = {
        {"empty, marked, exterior neighbour: all 64 reached", 2, 1, 0, CELL_EXTERIOR},
        {"assigned triangle that no sub-cell takes", 2, 3, 2, CELL_INTERSECTED},
        {"triangle touching a sub-cell", 2, 1, 1, CELL_INTERIOR},
        {"triangle, no exterior neighbour", 2, -1, 1, CELL_INTERIOR},
        {"empty, marked, no exterior neighbour", 2, -1, 0, CELL_INTERIOR},
        {"last-but-one layer: high face stays closed", 4, 5, 0, CELL_INTERIOR},
        {"last-but-one layer: low face open", 4, 3, 0, CELL_EXTERIOR},
    };
    for (bool plain : {false, true})
        for (const DecisionCase& c : cases) {
            UseProcedure(run_, plain);
            UnitGrid(run_, 6, 5, 5);
            GridCell& cell = cells_(c.i, 2, 2);
            cell.m_eState = CELL_INTERSECTED;
            if (c.exteriorNeighbourI >= 0)
                cells_(c.exteriorNeighbourI, 2, 2).m_eState = CELL_EXTERIOR;
            std::vector<Triangle*> tris;
            if (c.triangle == 1)
                tris = {new Triangle({c.i + 0.1, 2.1, 2.5}, {c.i + 0.9, 2.2, 2.5},
                                     {c.i + 0.5, 2.9, 2.5})};
            if (c.triangle == 2) tris = {new Triangle({9, 9, 9}, {9.5, 9, 9}, {9, 9.5, 9})};
            for (Triangle* t : tris) cells_.Append(cell, t);
            cells_.Own(tris);
            EXPECT_EQ(IsCellInterior(run_, {c.i, 2, 2}, cell), c.expect)
                << c.what << (plain ? " (plain)" : "");
            EXPECT_EQ(cell.m_eState, CELL_INTERSECTED);
        }
}

TEST_F(Classify, FormsLoopMessagesAndRing) {
    // Plane k = 2 of 7 x 7 x 5: a ring on the border of i, j in 1..5.
    UnitGrid(run_, 7, 7, 5);
    Mark(1, 5, 1, 5, 2, 2, CELL_INTERSECTED);
    Mark(2, 4, 2, 4, 2, 2, CELL_UNKNOWN);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(FormsLoop(run_, 3, 1, 2, 2));   // band along i: from (4,1) round to (2,1)
    EXPECT_FALSE(FormsLoop(run_, 3, 3, 2, 2));  // not intersected
    EXPECT_FALSE(FormsLoop(run_, 3, 1, 2, 3));
    EXPECT_FALSE(FormsLoop(run_, 1, 1, 2, 2));  // corner of the ring: neither axis full
    cells_(5, 3, 2).m_eState = CELL_UNKNOWN;
    EXPECT_FALSE(FormsLoop(run_, 3, 1, 2, 2));  // ring broken
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ERROR: Cannot use FormsLoop function on a non-intersected cell.\n"
              "Coord must be 0, 1 or 2.\n"
              "ERROR: Cannot use FormsLoop function on a non-central cell.\n");
}

// The fill marks every ring cell it meets. FormsLoop after a decision used to take the fill's mark
// again (the decision reset the count by hand), and after 65536 walks the count comes round to it:
// either way the ring looked walked already.
TEST_F(Classify, FormsLoopAfterTheFillSeesItsOwnMarks) {
    UnitGrid(run_, 7, 7, 5);
    Mark(1, 5, 1, 5, 2, 2, CELL_INTERSECTED);
    Mark(2, 4, 2, 4, 2, 2, CELL_UNKNOWN);
    ClassifyCells(run_);
    IsCellInterior(run_, {3, 1, 2}, cells_(3, 1, 2));
    EXPECT_TRUE(FormsLoop(run_, 3, 1, 2, 2));
    for (int n = 0; n < 65535; ++n) run_.NewVisitMark();
    EXPECT_TRUE(FormsLoop(run_, 3, 1, 2, 2));
}
}  // namespace
