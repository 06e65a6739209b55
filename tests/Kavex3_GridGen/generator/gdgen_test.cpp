// Tests of gen_line_grid: pieces, bids, forced ends, merging, filling and the symmetric unfold.
#include "generator/gdgen.h"

#include <gtest/gtest.h>

#include <vector>

#include "gdtest_util.h"

namespace {

using GenLineGrid = GenTest;

TEST_F(GenLineGrid, PointsOfTheSpecsAndForcedPoints) {
    // Symmetric row: the mirror [2, 5] of [5, 8], 3 cells, ratio 0.5: widths 4/7, 2/7, 1/7 of 3.
    const double w = 1.0 + 0.5 + 0.5 * 0.5;
    const double a = 2.0 + 1.0 * (3.0 / w), b = a + 0.5 * (3.0 / w);
    struct {
        std::vector<BdyGdspc> specs;
        Pts expected, forced = {};
        double symm = UNSET_DBL;
    } rows[] = {
        // [4,6] with 10 cells, then [0,10] with 10 cells: pieces of 4, 10 and 4 cells; the coarse
        // spec bidding last loses the overlap.
        {{spec(4, 6, 10), spec(0, 10, 10)},
         uniform(0, 4, 4) + uniform(4, 6, 10) + uniform(6, 10, 4) + Pts{10}},
        // Nothing to do: no specs and no forced points.
        {{}, {}},
        // No forced point at all: the empty forced list still forces 0.0, so the sliver [0, 0.1]
        // after it joins the piece above instead of the one below:
        //   -1 ---- 0 -- 0.1 ------- 1     spec A: 2 cells over [-1,1]; spec B: 0.05 over [0,0.1]
        {{spec(-1, 1, 2, 1.0, 0, 0), spec(0, 0.1, 0.05, 1.0, 0, 0)}, {-1, 0, 1}},
        // The same shape shifted by 5 has no forced inner point: the sliver joins the lower piece.
        {{spec(4, 6, 2, 1.0, 0, 0), spec(5, 5.1, 0.05, 1.0, 0, 0)}, {4, 5.1, 6}},
        // Duplicates are tested strictly against the last value kept: 1 + 1e-8 is exactly tol
        // above 1 and dropped; 1.2e-8 is within tol of 0.6e-8 (dropped) but not of 0.
        {{}, {0.0, 1.0, 2.0}, {0.0, 1.0, 1.0 + 1e-8, 2.0}},
        {{}, {0.0, 1.2e-8, 1.0}, {1.0, 1.2e-8, 0.6e-8, 0.0}},
        // 0.4 cells between two forced ends: a piece without inner points.
        {{spec(0, 1, 0.4)}, {0, 1}},
        // A free end at 0.2 leaves a sliver of 0.2 cells; the next piece's cells are 5 times
        // wider, so it merges: [0,10] with 9.8 + 0.2 * 9.8 / 10 = 9.996 cells, rounded to 10.
        {{spec(0, 10, 10), spec(0, 0.2, 0.1, 1.0, 1, 0)}, uniform(0, 10, 10) + Pts{10}},
        // With the end at 0.2 forced the sliver stays as one thin cell.
        {{spec(0, 10, 10), spec(0, 0.2, 0.1)}, Pts{0} + uniform(0.2, 10, 10) + Pts{10}},
        // A graded spec above the plane bids below it through its mirror, with the inverse ratio;
        // the points are then reflected about 5.
        {{spec(5, 8, 3, 2.0)}, {2.0, a, b, 5.0, 2 * 5.0 - b, 2 * 5.0 - a, 2 * 5.0 - 2.0}, {}, 5.0},
    };
    for (auto& row : rows) {
        GridLine line = make_line(0);
        set_specs(&line, row.specs.data(), static_cast<int>(row.specs.size()));
        line.frcdGdpts = row.forced.data();
        line.nFrcdGdpts = static_cast<int>(row.forced.size());
        line.hasSymm = row.symm != UNSET_DBL;
        line.symmPosn = row.symm;
        gen_line_grid(&line);
        EXPECT_EQ(points(line), row.expected) << "row " << &row - rows;
        std::free(line.gdpts);
    }
    gen_line_grid(nullptr);
}

TEST_F(GenLineGrid, SingleDistinctPointIsRejected) {
    double one[] = {3.0, 3.0};
    GridLine line = make_line(1);
    line.frcdGdpts = one;
    line.nFrcdGdpts = 2;
    EXPECT_EXIT(gen_line_grid(&line), ::testing::ExitedWithCode(1),
                "Error: the Y grid line has a single distinct point");
}

}  // namespace
