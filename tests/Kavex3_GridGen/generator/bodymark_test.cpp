// Tests of body-cell marking: body extents in cells, cuboids and cut-plane bodies.
#include "generator/bodymark.h"

#include "gdtest_util.h"
#include "generator/bodycells.h"

namespace {

class BodyMarking : public GenTest {
  protected:
    // Lines of four cells of width 25 on X, Y and Z, unless a test sets its own.
    void SetUp() override {
        GenTest::SetUp();
        for (GridLine* line : {&Xgdln, &Ygdln, &Zgdln}) set_line(line, {0, 25, 50, 75, 100});
    }
    void mark(std::vector<Body> bodies) {
        table_ = std::move(bodies);
        allBdys = table_.data();
        numBdys = maxBdys = static_cast<int>(table_.size());
        mark_all_body_cells();
    }
    BodyBuilder build_;

  private:
    std::vector<Body> table_;
};

TEST_F(BodyMarking, ExtentCellsHonourTheCellTolerance) {
    // Points 0, 1, 2, 3, 4, 5: cells 0 .. 4; cellTol 1e-5.
    Pts g = {0, 1, 2, 3, 4, 5};
    BodyMarkWork w{{g.data(), g.data(), g.data()}, {6, 6, 6}, {}, {}};
    // The start cells on X, Y and Z, then the end cells.
    const auto cells = [&w](const double(&box)[6]) {
        set_bdy_strt_end_indices(&w, box);
        return std::array<int, 6>{w.bdystrt[0], w.bdystrt[1], w.bdystrt[2],
                                  w.bdyend[0],  w.bdyend[1],  w.bdyend[2]};
    };
    // X: a minimum just below line 2 starts in cell 2, a maximum just above line 3 ends in cell 2.
    // Y: both beyond the tolerance: cells 1 and 3. Z: inside cells 0 and 4.
    EXPECT_EQ(cells({2 - 5e-6, 2 - 2e-5, 0.5, 3 + 5e-6, 3 + 2e-5, 4.5}),
              (std::array<int, 6>{2, 1, 0, 2, 3, 4}));
    // X: in the last cell, and ending in cell 0 just above line 1. Y: below the line, and just
    // above line 1. Z: exactly on lines 1 and 4: cells 1 to 3.
    EXPECT_EQ(cells({4.9999, -3, 1, 0.999995, 1.000005, 4}),
              (std::array<int, 6>{4, 0, 1, 0, 0, 3}));
}

TEST_F(BodyMarking, CuboidsTrimEndCellsCoveredNoMoreThanTheFraction) {
    set_line(&Zgdln, {0, 25, 50});
    // X: 22 .. 78 covers the end cells by 3/25 = 12% exactly: both dropped, cells 1, 2.
    // Y: 21 .. 50 covers cell 0 by 4/25 = 16%: cells 0, 1.
    // Z: 30 .. 31 lies in cell 1 alone and is kept at 4% coverage.
    Body cuboid = build_.plain_body(3, {22, 21, 30}, {78, 50, 31});
    // The same with its own fraction of 50%: cell 0 on Y is dropped too.
    Body ownFraction = cuboid;
    ownFraction.blockFraction = 0.5;
    // 24 .. 26 on X: both end cells trimmed, nothing left.
    Body sliver = build_.plain_body(3, {24, 0, 0}, {26, 50, 50});
    // Bodies that block nothing: not used in the solver, a rotor, an unknown type.
    Body unused = cuboid;
    unused.usedInSolver = 0;
    Body rotor = build_.plain_body(4, {0, 0, 0}, {100, 100, 50});
    Body none = build_.plain_body(10, {0, 0, 0}, {100, 100, 50});
    mark({cuboid, unused, rotor, ownFraction, none, sliver});
    EXPECT_EQ(marked_cells(),
              (Cells{{1, 0, 1}, {1, 1, 1}, {2, 0, 1}, {2, 1, 1}, {1, 1, 1}, {2, 1, 1}}));
}

//  X-cut body tapering in y from 100 at x = 0 to 40 at x = 100, z 0 .. 100 (one Z cell):
//
//  y 100 +---------+            cross-section at each slab's middle:
//        |         ---          slab 0 (x 12.5): y to 92.5 -> cells 0..3 (cell 3: 70%)
//     75 +            ---       slab 1 (x 37.5): y to 77.5 -> cells 0..2 (cell 3: 10%)
//        |               ---    slab 2 (x 62.5): y to 62.5 -> cells 0..2 (cell 2: 50%)
//     40 +                  +   slab 3 (x 87.5): y to 47.5 -> cells 0..1 (cell 1: 90%)
//      0 +------------------+
//        0   25   50   75  100 x
TEST_F(BodyMarking, CutPlaneCrossSectionsAreInterpolated) {
    set_line(&Zgdln, {0, 100});
    const BodyBuilder::Polygon root = {{0, 0}, {100, 0}, {100, 100}, {0, 100}};
    const BodyBuilder::Polygon tip = {{0, 0}, {40, 0}, {40, 100}, {0, 100}};
    mark({build_.cut_body(0, {{0, root}, {100, tip}}, {0, 0, 0}, {100, 100, 100})});
    const Cells expected = {{0, 0, 0}, {0, 1, 0}, {0, 2, 0}, {0, 3, 0}, {1, 0, 0}, {1, 1, 0},
                            {1, 2, 0}, {2, 0, 0}, {2, 1, 0}, {2, 2, 0}, {3, 0, 0}, {3, 1, 0}};
    EXPECT_EQ(marked_cells(), expected);
}

}  // namespace
