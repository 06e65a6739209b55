// Tests of full-span mirroring: lines extended or cut at the plane, and mirrored body copies.
#include "generator/fullspan.h"

#include <cstdlib>
#include <tuple>

#include "gdtest_util.h"
#include "generator/bodies.h"
#include "generator/bodycells.h"
#include "generator/bodymark.h"

namespace {

using FullSpan = GenTest;

Pts cut_points(const BodyCut& cut) {
    return Pts(&cut.pts[0][0], &cut.pts[0][0] + 2 * cut.nPts);
}

TEST_F(FullSpan, LineIsMirroredBelowTheBodiesAndCutAboveThem) {
    const double p = 0.5e-8;  // within tol
    // Points, the bodies' minimum and maximum, discardBelow, the plane, the points after.
    const std::tuple<Pts, double, double, double, double, Pts> rows[] = {
        // discardBelow 1 drops 0; the plane 0 lies below 1 - tol: 2n points, a cell of width 2
        // round the plane.
        {{0, 1, 2, 4}, 1.5, 3, 1, 0, {-4, -2, -1, 1, 2, 4}},
        // A plane within tol below the first point shares it: 2n - 1 points.
        {{0, 1, 3}, 0.5, 3, UNSET_DBL, p, {2 * p - 3, 2 * p - 1, 0, 1, 3}},
        // A plane on the bodies' minimum still counts as below them.
        {{1, 2}, 1, 2, UNSET_DBL, 1, {0, 1, 2}},
        // Above the bodies the line is cut, also within tol below their maximum.
        {{0, 1, 2, 3, 4}, 0.5, 2, UNSET_DBL, 2.5, {0, 1, 2}},
        {{0, 1, 2, 3, 4}, 0.5, 2, UNSET_DBL, 2 - p, {0, 1, 2}},
    };
    for (const auto& [pts, bdysMin, bdysMax, discardBelow, plane, expected] : rows) {
        GridLine line = make_line(0);
        set_line(&line, pts);
        line.allBdysMin = bdysMin;
        line.allBdysMax = bdysMax;
        line.discardBelow = discardBelow;
        line.fullSpanAbout = plane;
        full_span_mirror_grid(&line);
        EXPECT_EQ(points(line), expected) << plane;
        std::free(line.gdpts);
    }
}

TEST_F(FullSpan, PlaneInsideTheBodiesEndsTheRun) {
    set_line(&Xgdln, {0, 1, 2, 3});
    Xgdln.allBdysMin = 0.5;
    Xgdln.allBdysMax = 2;
    Xgdln.fullSpanAbout = 1;
    EXPECT_EXIT(full_span_mirror_grid(&Xgdln), ::testing::ExitedWithCode(1),
                "^\nERROR: can not do fullspan about a pt\\. inside bodies range\n");
}

TEST_F(FullSpan, TwoAxesGiveFourDeepCopiesOfEachBody) {
    // Bodies, mirrored about x = 0 and then about y = 0:
    //   Z-cut body: cuts z = 1, 2 with (x, y) corners (1,1) (3,1) (3,2) (1,2); box (1,1,1)-(3,2,2)
    //   X-cut body: cuts x = 1, 2 with (y, z) points (1,0) (2,0) (2,1);         box (1,1,0)-(2,2,1)
    //   Z-plane rotor centred at (1, 2, 3), radius 0.5.
    for (GridLine* line : {&Xgdln, &Ygdln, &Zgdln}) set_line(line, {1, 2});
    Xgdln.allBdysMin = Ygdln.allBdysMin = 1;
    Xgdln.allBdysMax = Ygdln.allBdysMax = 2;
    Xgdln.fullSpanAbout = Ygdln.fullSpanAbout = 0;
    BodyBuilder build;
    const BodyBuilder::Polygon square = {{1, 1}, {3, 1}, {3, 2}, {1, 2}};
    const BodyBuilder::Polygon tri = {{1, 0}, {2, 0}, {2, 1}};
    Body* zc = new_body_struct();
    *zc = build.cut_body(2, {{1, square}, {2, square}}, {1, 1, 1}, {3, 2, 2});
    for (int c = 0; c < 2; ++c) zc->cuts[c].maxQ1 = 1, zc->cuts[c].maxQ2 = 2;
    zc->fullSpanUsedInSolver = 0;
    *new_body_struct() = build.cut_body(0, {{1, tri}, {2, tri}}, {1, 1, 0}, {2, 2, 1});
    Rotor rotor{{1, 2, 3}, 0.5, 0, 0, 0};
    Body* rt = new_body_struct();
    *rt = build.plain_body(6, {0.5, 1.5, 2.9}, {1.5, 2.5, 3.1});
    rt->rotor = &rotor;

    full_span_grids_and_bodies();

    EXPECT_EQ(points(Xgdln), (Pts{-2, -1, 1, 2}));
    EXPECT_EQ(points(Ygdln), points(Xgdln));
    EXPECT_EQ(points(Zgdln), (Pts{1, 2}));
    ASSERT_EQ(numBdys, 12);
    // Order: originals, their X copies, then Y copies of all six. Cuts, points or rotors shared
    // between copies would be mirrored twice and show in the copies' values below.
    const int mirrorAxis[12] = {3, 3, 3, 0, 0, 0, 1, 1, 1, 1, 1, 1};
    const int used[12] = {1, 1, 1, 0, 1, 1, 0, 1, 1, 0, 1, 1};
    for (int b = 0; b < 12; ++b)
        EXPECT_EQ(std::make_tuple(allBdys[b].mirrorAxis, allBdys[b].usedInSolver, allBdys[b].type),
                  std::make_tuple(mirrorAxis[b], used[b], allBdys[b % 3].type))
            << b;
    // Z-cut body: X reflects q1 and swaps its extreme indices, Y does so for q2.
    const Body& zxy = allBdys[9];
    EXPECT_EQ(cut_points(zxy.cuts[0]), (Pts{-1, -1, -3, -1, -3, -2, -1, -2}));
    EXPECT_EQ((std::vector<int>{zxy.cuts[0].minQ1, zxy.cuts[0].maxQ1, zxy.cuts[0].minQ2,
                                zxy.cuts[0].maxQ2}),
              (std::vector<int>{1, 0, 2, 0}));
    EXPECT_EQ(zxy.cuts[0].posn, 1);
    EXPECT_EQ(box(zxy), (Pts{-3, -2, 1, -1, -1, 2}));
    // X-cut body: X reflects the planes, which then descend; Y reflects q1.
    const Body& xxy = allBdys[10];
    EXPECT_EQ((Pts{xxy.cuts[0].posn, xxy.cuts[1].posn}), (Pts{-1, -2}));
    EXPECT_EQ(cut_points(xxy.cuts[1]), (Pts{-1, 0, -2, 0, -2, 1}));
    EXPECT_EQ(box(xxy), (Pts{-2, -2, 0, -1, -1, 1}));
    // Rotor: the centre on the axis.
    EXPECT_EQ(Pts(allBdys[11].rotor->center, allBdys[11].rotor->center + 3), (Pts{-1, -2, 3}));
}

TEST_F(FullSpan, MirroredCuboidBlocksCellsOnlyWhenUsedInSolver) {
    // X line 1 2 3 mirrored about 0: -3 -2 -1 1 2 3, cells 0 .. 4; Y and Z one cell 0 .. 1.
    // The cuboid x 1 .. 3 fills cells 3 and 4, its copy x -3 .. -1 cells 0 and 1.
    for (int fullSpanUsed : {1, 0}) {
        reset_generator_records();
        set_line(&Xgdln, {1, 2, 3});
        set_line(&Ygdln, {0, 1});
        set_line(&Zgdln, {0, 1});
        Xgdln.allBdysMin = 1;
        Xgdln.allBdysMax = 3;
        Xgdln.fullSpanAbout = 0;
        BodyBuilder build;
        Body* cuboid = new_body_struct();
        *cuboid = build.plain_body(3, {1, 0, 0}, {3, 1, 1});
        cuboid->fullSpanUsedInSolver = fullSpanUsed;
        full_span_grids_and_bodies();
        EXPECT_EQ(Pts(allBdys[1].cuboid, allBdys[1].cuboid + 6), (Pts{-1, 0, 0, -3, 1, 1}));
        mark_all_body_cells();
        Cells expected = {{3, 0, 0}, {4, 0, 0}};
        if (fullSpanUsed) expected.insert(expected.end(), {{0, 0, 0}, {1, 0, 0}});
        EXPECT_EQ(marked_cells(), expected);
    }
}

}  // namespace
