// Tests of gen_line_grid: pieces, bids, forced ends, merging, filling and the symmetric unfold.
#include "generator/gdgen.h"

#include <gtest/gtest.h>

#include <vector>

#include "gdtest_util.h"

namespace {

std::vector<double> generate(GridLine line) {
    gen_line_grid(&line);
    std::vector<double> pts(line.gdpts, line.gdpts + line.nGdpts);
    std::free(line.gdpts);
    return pts;
}

// Points of n uniform cells over [from, to] by repeated addition, without the end point.
void add_uniform(std::vector<double>& out, double from, double to, int n) {
    double x = from;
    out.push_back(x);
    for (int k = 1; k < n; ++k) out.push_back(x = x + (to - from) / n);
}

using GenLineGrid = GenTest;

TEST_F(GenLineGrid, CoarseSpecBiddingLastLosesTheOverlap) {
    // [4,6] with 10 cells, then [0,10] with 10 cells: pieces of 4, 10 and 4 cells.
    BdyGdspc swapped[] = {spec(4, 6, 10), spec(0, 10, 10)};
    GridLine line = make_line(0);
    set_specs(&line, swapped, 2);
    std::vector<double> expected;
    add_uniform(expected, 0, 4, 4);
    add_uniform(expected, 4, 6, 10);
    add_uniform(expected, 6, 10, 4);
    expected.push_back(10);
    EXPECT_EQ(generate(line), expected);
    // Nothing to do: no specs and no pre-fixed points.
    GridLine empty = make_line(1);
    gen_line_grid(&empty);
    EXPECT_EQ(empty.nGdpts, 0);
    gen_line_grid(nullptr);
}

TEST_F(GenLineGrid, ForcedPointAtZeroWhenForcedListEmpty) {
    // No forced point at all: the empty forced list still forces 0.0, so the sliver [0, 0.1]
    // after it must join the piece above instead of the one below.
    //   -1 ---- 0 -- 0.1 ------- 1     spec A: 2 cells over [-1,1]; spec B: 0.05 over [0,0.1]
    BdyGdspc specs[] = {spec(-1, 1, 2, 1.0, 0, 0), spec(0, 0.1, 0.05, 1.0, 0, 0)};
    GridLine line = make_line(0);
    set_specs(&line, specs, 2);
    EXPECT_EQ(generate(line), (std::vector<double>{-1, 0, 1}));

    // The same shape shifted by 5 has no forced inner point, and the sliver joins the lower piece.
    BdyGdspc shifted[] = {spec(4, 6, 2, 1.0, 0, 0), spec(5, 5.1, 0.05, 1.0, 0, 0)};
    set_specs(&line, shifted, 2);
    EXPECT_EQ(generate(line), (std::vector<double>{4, 5.1, 6}));
}

TEST_F(GenLineGrid, DuplicatesAreTestedStrictlyAgainstTheLastKeptValue) {
    GridLine line = make_line(2);
    // 1 + 1e-8 is exactly tol above 1: dropped, as the test is strict.
    double exact[] = {0.0, 1.0, 1.0 + 1e-8, 2.0};
    line.frcdGdpts = exact;
    line.nFrcdGdpts = 4;
    EXPECT_EQ(generate(line), (std::vector<double>{0.0, 1.0, 2.0}));
    // 1.2e-8 is within tol of 0.6e-8 (dropped) but not of 0, the last value kept.
    double chain[] = {1.0, 1.2e-8, 0.6e-8, 0.0};
    line.frcdGdpts = chain;
    EXPECT_EQ(generate(line), (std::vector<double>{0.0, 1.2e-8, 1.0}));
}

TEST_F(GenLineGrid, FractionalCountsRoundAndSliversMerge) {
    GridLine line = make_line(0);
    // 0.4 cells between two forced ends: a piece without inner points.
    BdyGdspc thin[] = {spec(0, 1, 0.4)};
    set_specs(&line, thin, 1);
    EXPECT_EQ(generate(line), (std::vector<double>{0, 1}));

    // A free end at 0.2 leaves a sliver of 0.2 cells; the next piece's cells are 5 times wider,
    // so it merges: [0,10] with 9.8 + 0.2 * 9.8 / 10 = 9.996 cells, rounded to 10.
    BdyGdspc sliver[] = {spec(0, 10, 10), spec(0, 0.2, 0.1, 1.0, 1, 0)};
    set_specs(&line, sliver, 2);
    std::vector<double> expected;
    add_uniform(expected, 0, 10, 10);
    expected.push_back(10);
    EXPECT_EQ(generate(line), expected);

    // With the end at 0.2 forced the sliver stays as one thin cell.
    BdyGdspc kept[] = {spec(0, 10, 10), spec(0, 0.2, 0.1)};
    set_specs(&line, kept, 2);
    expected = {0.0};
    add_uniform(expected, 0.2, 10, 10);
    expected.push_back(10);
    EXPECT_EQ(generate(line), expected);
}

TEST_F(GenLineGrid, SymmetricGradedSpecBidsThroughItsMirror) {
    GridLine line = make_line(1);
    line.hasSymm = 1;
    // A graded spec above the plane bids below it through its mirror, with the inverse ratio.
    BdyGdspc above[] = {spec(5, 8, 3, 2.0)};
    set_specs(&line, above, 1);
    line.symmPosn = 5.0;
    // Mirror: [2, 5], 3 cells, ratio 0.5: widths 4/7, 2/7, 1/7 of 3, then reflected about 5.
    const double w = 1.0 + 0.5 + 0.5 * 0.5;
    const double a = 2.0 + 1.0 * (3.0 / w), b = a + 0.5 * (3.0 / w);
    EXPECT_EQ(generate(line),
              (std::vector<double>{2.0, a, b, 5.0, 2 * 5.0 - b, 2 * 5.0 - a, 2 * 5.0 - 2.0}));
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
