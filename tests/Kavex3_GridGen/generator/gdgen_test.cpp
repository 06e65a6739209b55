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

class GenLineGrid : public ::testing::Test {
  protected:
    void SetUp() override { set_test_options(); }
};

TEST_F(GenLineGrid, UniformAndOverlappingSpecsTakeTheFinestBid) {
    // One spec of 10 cells over [0, 10]: positions by repeated addition of 1.
    BdyGdspc one[] = {spec(0, 10, 10)};
    GridLine line = make_line(0);
    set_specs(&line, one, 1);
    std::vector<double> expected;
    add_uniform(expected, 0, 10, 10);
    expected.push_back(10);
    EXPECT_EQ(generate(line), expected);

    // [0,10] with 10 cells and [4,6] with 10 cells: pieces of 4, 10 and 4 cells.
    BdyGdspc two[] = {spec(0, 10, 10), spec(4, 6, 10)};
    set_specs(&line, two, 2);
    expected.clear();
    add_uniform(expected, 0, 4, 4);
    add_uniform(expected, 4, 6, 10);
    add_uniform(expected, 6, 10, 4);
    expected.push_back(10);
    EXPECT_EQ(generate(line), expected);

    // Written in the other order, the coarse spec bids last and loses the middle piece.
    BdyGdspc swapped[] = {spec(4, 6, 10), spec(0, 10, 10)};
    set_specs(&line, swapped, 2);
    EXPECT_EQ(generate(line), expected);

    // Nothing to do: no specs and no pre-fixed points.
    GridLine empty = make_line(1);
    gen_line_grid(&empty);
    EXPECT_EQ(empty.nGdpts, 0);
    gen_line_grid(nullptr);
}

TEST_F(GenLineGrid, GradedSpecCutByPreFixedPointKeepsItsRatio) {
    // Five cells of ratio 1.2 over [0,10] cut at 5: its cell edges are 0, 1.3438, 2.9564,
    // 4.8914, 7.2135, 10, so [0,5] holds 3.046759 cells and [5,10] 1.953241, together 5.
    FILE* dbg = std::tmpfile();
    set_test_options(10, dbg);
    BdyGdspc graded[] = {spec(0, 10, 5, 1.2)};
    double prefixed[] = {5.0};
    GridLine line = make_line(0);
    set_specs(&line, graded, 1);
    line.frcdGdpts = prefixed;
    line.nFrcdGdpts = 1;
    const std::vector<double> pts = generate(line);
    const std::string text = read_all(dbg);
    std::fclose(dbg);
    EXPECT_NE(text.find("Grid Specs made at prefixed pts.:\nNo. of Grid Specs: 2\n"
                        "[1] from:     0.000000000000; to:     5.000000000000; nGds: 3.046759 "
                        "gp_ratio:   1.20000; FxdFrom: F; FxdTo: F\n"
                        "[2] from:     5.000000000000; to:    10.000000000000; nGds: 1.953241 "
                        "gp_ratio:   1.20000; FxdFrom: F; FxdTo: F\n"),
              std::string::npos)
        << text;
    // [0,5]: 3 cells with weights 1, 1.2, 1.44; [5,10]: 2 cells with weights 1, 1.2.
    const double w3 = 1.0 + 1.2 + 1.2 * 1.2, w2 = 1.0 + 1.2;
    double a = 0.0 + 1.0 * (5.0 / w3);
    double b = a + 1.2 * (5.0 / w3);
    double c = 5.0 + 1.0 * (5.0 / w2);
    EXPECT_EQ(pts, (std::vector<double>{0.0, a, b, 5.0, c, 10.0}));
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
    // 3.5 cells round to 4.
    BdyGdspc frac[] = {spec(0, 7, 3.5)};
    set_specs(&line, frac, 1);
    std::vector<double> expected;
    add_uniform(expected, 0, 7, 4);
    expected.push_back(7);
    EXPECT_EQ(generate(line), expected);

    // 0.4 cells between two forced ends: a piece without inner points.
    BdyGdspc thin[] = {spec(0, 1, 0.4)};
    set_specs(&line, thin, 1);
    EXPECT_EQ(generate(line), (std::vector<double>{0, 1}));

    // A free end at 0.2 leaves a sliver of 0.2 cells; the next piece's cells are 5 times wider,
    // so it merges: [0,10] with 9.8 + 0.2 * 9.8 / 10 = 9.996 cells, rounded to 10.
    BdyGdspc sliver[] = {spec(0, 10, 10), spec(0, 0.2, 0.1, 1.0, 1, 0)};
    set_specs(&line, sliver, 2);
    expected.clear();
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

TEST_F(GenLineGrid, SymmetryFoldsMirrorsAndUnfoldsExactly) {
    // Ten cells over [0,10] kept symmetric about 4: 10 folds to -2, the grid spec's mirror covers
    // [-2, 8]; pieces [-2,0] (2 cells) and [0,4] (4 cells), then reflected about 4.
    BdyGdspc specs[] = {spec(0, 10, 10)};
    GridLine line = make_line(1);
    set_specs(&line, specs, 1);
    line.hasSymm = 1;
    line.symmPosn = 4.0;
    const std::vector<double> pts = generate(line);
    std::vector<double> below;
    add_uniform(below, -2, 0, 2);
    add_uniform(below, 0, 4, 4);
    ASSERT_EQ(pts.size(), 13u);
    for (size_t i = 0; i < below.size(); ++i) {
        EXPECT_EQ(pts[i], below[i]);
        EXPECT_EQ(pts[12 - i], 2 * 4.0 - below[i]);
    }
    EXPECT_EQ(pts[6], 4.0);

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

TEST_F(GenLineGrid, DebugListsFollowTheirLevels) {
    // Two cells over [0,2]; level 10 shows every list, level 6 only the result, level 5 nothing.
    BdyGdspc specs[] = {spec(0, 2, 2)};
    GridLine line = make_line(0);
    set_specs(&line, specs, 1);
    const char* result =
        "\nGrid-Line Pts:\nNo. of Vals: 3\n"
        "[1]       0.000000000000\n[2]       1.000000000000\n[3]       2.000000000000\n";
    const char* piece =
        "[1] from:     0.000000000000; to:     2.000000000000; nGds: 2.000000 gp_ratio:   "
        "1.00000; FxdFrom: %s; FxdTo: %s\n";
    char before[200], after[200];
    std::snprintf(before, sizeof before, piece, "F", "F");
    std::snprintf(after, sizeof after, piece, "T", "T");
    const std::string full =
        std::string("\nPre-Fixed Pts - after sorting before rm-dups:\nNo. of Vals: 2\n") +
        "[1]       0.000000000000\n[2]       2.000000000000\n" +
        "Pre-Fixed Pts:\nNo. of Vals: 2\n[1]       0.000000000000\n[2]       2.000000000000\n" +
        "Grid Specs made at prefixed pts.:\nNo. of Grid Specs: 1\n" + before +
        "Grid Specs after marking forced pts.:\nNo. of Grid Specs: 1\n" + after +
        "Grid Specs after merging very small gds.:\nNo. of Grid Specs: 1\n" + after + result;
    for (int level : {10, 9, 6, 5}) {
        FILE* dbg = std::tmpfile();
        set_test_options(level, dbg);
        generate(line);
        const std::string text = read_all(dbg);
        std::fclose(dbg);
        EXPECT_EQ(text, level > 9   ? full
                        : level > 5 ? std::string(result)
                                    : std::string())
            << "level " << level;
    }
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
