// Tests of genXYZgdsFromSpecs: common symmetric patterns and the discard limits.
#include <gtest/gtest.h>

#include <vector>

#include "gdtest_util.h"
#include "generator/symmetry.h"

namespace {

using GenXYZ = GenTest;

TEST_F(GenXYZ, CommonSymmetrySharesOnePatternAboutEachLinesPlane) {
    // X: 10 cells over [0,10] about 5. Y: 10 cells over [14,16] about 15, which is [4,6] about
    // 5 in the common frame. Common: folded pieces [0,4] with 4 cells and [4,5] with 5 cells,
    // reflected about 5. Z has its own 2 cells over [0,2].
    static BdyGdspc xs[] = {spec(0, 10, 10)}, ys[] = {spec(14, 16, 10)}, zs[] = {spec(0, 2, 2)};
    for (auto [line, specs] : {std::pair{&Xgdln, xs}, {&Ygdln, ys}, {&Zgdln, zs}})
        set_specs(line, specs, 1);
    Xgdln.hasSymm = Ygdln.hasSymm = 1;
    Xgdln.commonSymm = Ygdln.commonSymm = 1;
    Xgdln.symmPosn = 5;
    Ygdln.symmPosn = 15;
    genXYZgdsFromSpecs(&Xgdln, &Ygdln, &Zgdln);

    Pts x = uniform(0, 4, 4) + uniform(4, 5, 5) + Pts{5};
    for (int q = 8; q >= 0; --q) x.push_back(2 * 5.0 - x[q]);
    EXPECT_EQ(points(Xgdln), x);
    Pts y;
    for (double p : x) y.push_back(p + (15.0 - 5.0));
    EXPECT_EQ(points(Ygdln), y);
    EXPECT_EQ(points(Zgdln), (Pts{0, 1, 2}));
}

TEST_F(GenXYZ, DiscardLimitsBecomeGridPointsAndCutTheLine) {
    // 10 cells over [0,10] cut at 2.5 and 7.5: the middle piece has 5 cells of width 1.
    static BdyGdspc xs[] = {spec(0, 10, 10)}, ys[] = {spec(0, 4, 4)}, zs[] = {spec(0, 4, 4)};
    for (auto [line, specs] : {std::pair{&Xgdln, xs}, {&Ygdln, ys}, {&Zgdln, zs}})
        set_specs(line, specs, 1);
    Xgdln.discardBelow = 2.5;
    Xgdln.discardAfter = 7.5;
    // A limit beyond the specs extends the line to it, and only that point stays.
    Ygdln.discardBelow = 4.5;
    Zgdln.discardAfter = -1;
    genXYZgdsFromSpecs(&Xgdln, &Ygdln, &Zgdln);
    EXPECT_EQ(Xgdln.nFrcdGdpts, 2);
    EXPECT_EQ(points(Xgdln), (Pts{2.5, 3.5, 4.5, 5.5, 6.5, 7.5}));
    EXPECT_EQ(points(Ygdln), (Pts{4.5}));
    EXPECT_EQ(points(Zgdln), (Pts{-1}));
}

TEST_F(GenXYZ, DiscardKeepsPointsWithinTolOfTheLimit) {
    // Points 0, 1, 2, 3: limits 1 + 0.5e-8 and 2 - 0.5e-8 still keep 1 and 2.
    GridLine line = make_line(0);
    set_line(&line, {0, 1, 2, 3});
    line.discardBelow = 1 + 0.5e-8;
    discard_grids_below(&line);
    discard_grids_after(&line, 2 - 0.5e-8);
    EXPECT_EQ(points(line), (Pts{1, 2}));
    discard_grids_after(&line, UNSET_DBL);
    EXPECT_EQ(line.nGdpts, 2);
    // A limit more than tol beyond the line's other end takes all points.
    const std::pair<int, double*> none(0, nullptr);
    line.discardBelow = 2 + 2e-8;
    discard_grids_below(&line);
    EXPECT_EQ(std::make_pair(line.nGdpts, line.gdpts), none);
    set_line(&line, {1.0});
    discard_grids_after(&line, 1 - 2e-8);
    EXPECT_EQ(std::make_pair(line.nGdpts, line.gdpts), none);
}

}  // namespace
