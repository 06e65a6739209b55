// Tests of full-span mirroring: lines extended or cut at the plane, and mirrored body copies.
#include "generator/fullspan.h"

#include <cstdlib>
#include <cstring>

#include "gdtest_util.h"
#include "generator/bodies.h"
#include "generator/bodycells.h"
#include "generator/bodymark.h"

namespace {

class FullSpan : public GenRecordsTest {
  protected:
    // The line's points in a malloc'ed array, as the generator keeps them.
    static void give_points(GridLine* line, std::vector<double> pts, double bdysMin,
                            double bdysMax) {
        line->gdpts = static_cast<double*>(std::malloc(sizeof(double) * pts.size()));
        std::memcpy(line->gdpts, pts.data(), sizeof(double) * pts.size());
        line->nGdpts = static_cast<int>(pts.size());
        line->allBdysMin = bdysMin;
        line->allBdysMax = bdysMax;
    }
    static std::vector<double> points(const GridLine& line) {
        return std::vector<double>(line.gdpts, line.gdpts + line.nGdpts);
    }
    static void set_box(Body* body, std::array<double, 3> lo, std::array<double, 3> hi) {
        for (int a = 0; a < 3; ++a) {
            body->bdyMin[a] = lo[a];
            body->bdyMax[a] = hi[a];
        }
    }
    // A cut of n (q1, q2) pairs in a malloc'ed array.
    static BodyCut make_cut(double posn, std::vector<double> q) {
        BodyCut cut{};
        cut.posn = posn;
        cut.nPts = static_cast<int>(q.size() / 2);
        cut.pts = static_cast<double(*)[2]>(std::malloc(sizeof(double) * q.size()));
        std::memcpy(cut.pts, q.data(), sizeof(double) * q.size());
        return cut;
    }
    static std::vector<double> cut_points(const BodyCut& cut) {
        return std::vector<double>(&cut.pts[0][0], &cut.pts[0][0] + 2 * cut.nPts);
    }
};

TEST_F(FullSpan, PlaneBelowTheBodiesMirrorsTheLine) {
    // Points 0 1 2 4, discardBelow 1 drops 0; the plane 0 lies below 1 - tol: 2n points, with a
    // cell of width 2 round the plane.
    give_points(&Xgdln, {0, 1, 2, 4}, 1.5, 3);
    Xgdln.discardBelow = 1;
    Xgdln.fullSpanAbout = 0;
    full_span_mirror_grid(&Xgdln);
    EXPECT_EQ(points(Xgdln), (std::vector<double>{-4, -2, -1, 1, 2, 4}));

    // A plane within tol below the first point shares it: 2n - 1 points.
    const double p = 0.5e-8;
    give_points(&Ygdln, {0, 1, 3}, 0.5, 3);
    Ygdln.fullSpanAbout = p;
    full_span_mirror_grid(&Ygdln);
    EXPECT_EQ(points(Ygdln), (std::vector<double>{2 * p - 3, 2 * p - 1, 0, 1, 3}));

    // A plane on the bodies' minimum still counts as below them.
    give_points(&Zgdln, {1, 2}, 1, 2);
    Zgdln.fullSpanAbout = 1;
    full_span_mirror_grid(&Zgdln);
    EXPECT_EQ(points(Zgdln), (std::vector<double>{0, 1, 2}));
}

TEST_F(FullSpan, PlaneAboveTheBodiesCutsTheLine) {
    give_points(&Xgdln, {0, 1, 2, 3, 4}, 0.5, 2);
    Xgdln.fullSpanAbout = 2.5;
    full_span_mirror_grid(&Xgdln);
    EXPECT_EQ(points(Xgdln), (std::vector<double>{0, 1, 2}));
    // Within tol below the bodies' maximum still counts as above.
    give_points(&Ygdln, {0, 1, 2, 3, 4}, 0.5, 2);
    Ygdln.fullSpanAbout = 2 - 0.5e-8;
    full_span_mirror_grid(&Ygdln);
    EXPECT_EQ(points(Ygdln), (std::vector<double>{0, 1, 2}));
}

TEST_F(FullSpan, PlaneInsideTheBodiesEndsTheRun) {
    give_points(&Xgdln, {0, 1, 2, 3}, 0.5, 2);
    Xgdln.fullSpanAbout = 1;
    EXPECT_EXIT(full_span_mirror_grid(&Xgdln), ::testing::ExitedWithCode(1),
                "^\nERROR: can not do fullspan about a pt\\. inside bodies range\n");
}

TEST_F(FullSpan, TwoAxesGiveFourDeepCopiesOfEachBody) {
    // Bodies, mirrored about x = 0 and then about y = 0:
    //   Z-cut body: cuts z = 1, 2 with (x, y) corners (1,1) (3,1) (3,2) (1,2); box (1,1,1)-(3,2,2)
    //   X-cut body: cuts x = 1, 2 with (y, z) points (1,0) (2,0) (2,1);         box (1,1,0)-(2,2,1)
    //   Z-plane rotor centred at (1, 2, 3), radius 0.5.
    give_points(&Xgdln, {1, 2, 3}, 1, 3);
    give_points(&Ygdln, {1, 2}, 1, 2);
    give_points(&Zgdln, {0, 1, 2}, 0, 2);
    Xgdln.fullSpanAbout = 0;
    Ygdln.fullSpanAbout = 0;

    const std::vector<double> square = {1, 1, 3, 1, 3, 2, 1, 2};
    Body* zc = new_body_struct();
    zc->type = 2;
    zc->nCuts = 2;
    zc->cuts = static_cast<BodyCut*>(std::malloc(2 * sizeof(BodyCut)));
    zc->cuts[0] = make_cut(1, square);
    zc->cuts[1] = make_cut(2, square);
    for (int c = 0; c < 2; ++c) {
        zc->cuts[c].maxQ1 = 1;
        zc->cuts[c].maxQ2 = 2;
    }
    zc->fullSpanUsedInSolver = 0;
    set_box(zc, {1, 1, 1}, {3, 2, 2});

    Body* xc = new_body_struct();
    xc->type = 0;
    xc->nCuts = 2;
    xc->cuts = static_cast<BodyCut*>(std::malloc(2 * sizeof(BodyCut)));
    xc->cuts[0] = make_cut(1, {1, 0, 2, 0, 2, 1});
    xc->cuts[1] = make_cut(2, {1, 0, 2, 0, 2, 1});
    xc->fullSpanUsedInSolver = 1;
    set_box(xc, {1, 1, 0}, {2, 2, 1});

    Body* rt = new_body_struct();
    rt->type = 6;
    rt->rotor = static_cast<Rotor*>(std::calloc(1, sizeof(Rotor)));
    rt->rotor->center[0] = 1;
    rt->rotor->center[1] = 2;
    rt->rotor->center[2] = 3;
    rt->rotor->radius = 0.5;
    rt->fullSpanUsedInSolver = 1;
    set_box(rt, {0.5, 1.5, 2.9}, {1.5, 2.5, 3.1});

    full_span_grids_and_bodies();

    EXPECT_EQ(points(Xgdln), (std::vector<double>{-3, -2, -1, 1, 2, 3}));
    EXPECT_EQ(points(Ygdln), (std::vector<double>{-2, -1, 1, 2}));
    EXPECT_EQ(points(Zgdln), (std::vector<double>{0, 1, 2}));
    ASSERT_EQ(numBdys, 12);
    // Order: originals, their X copies, then Y copies of all six.
    const int mirrorAxis[12] = {3, 3, 3, 0, 0, 0, 1, 1, 1, 1, 1, 1};
    const int used[12] = {1, 1, 1, 0, 1, 1, 0, 1, 1, 0, 1, 1};
    for (int b = 0; b < 12; ++b) {
        EXPECT_EQ(allBdys[b].mirrorAxis, mirrorAxis[b]) << b;
        EXPECT_EQ(allBdys[b].usedInSolver, used[b]) << b;
        EXPECT_EQ(allBdys[b].type, allBdys[b % 3].type) << b;
    }

    // Z-cut body: X reflects q1 and swaps its extreme indices, Y does so for q2.
    const Body& zx = allBdys[3];
    const Body& zxy = allBdys[9];
    EXPECT_EQ(cut_points(zx.cuts[1]), (std::vector<double>{-1, 1, -3, 1, -3, 2, -1, 2}));
    EXPECT_EQ(cut_points(zxy.cuts[0]), (std::vector<double>{-1, -1, -3, -1, -3, -2, -1, -2}));
    EXPECT_EQ((std::array<int, 4>{zxy.cuts[0].minQ1, zxy.cuts[0].maxQ1, zxy.cuts[0].minQ2,
                                  zxy.cuts[0].maxQ2}),
              (std::array<int, 4>{1, 0, 2, 0}));
    EXPECT_EQ(zxy.cuts[0].posn, 1);
    EXPECT_EQ((std::array<double, 6>{zxy.bdyMin[0], zxy.bdyMin[1], zxy.bdyMin[2], zxy.bdyMax[0],
                                     zxy.bdyMax[1], zxy.bdyMax[2]}),
              (std::array<double, 6>{-3, -2, 1, -1, -1, 2}));

    // X-cut body: X reflects the planes, which then descend; Y reflects q1.
    const Body& xxy = allBdys[10];
    EXPECT_EQ(xxy.cuts[0].posn, -1);
    EXPECT_EQ(xxy.cuts[1].posn, -2);
    EXPECT_EQ(cut_points(xxy.cuts[1]), (std::vector<double>{-1, 0, -2, 0, -2, 1}));
    EXPECT_EQ((std::array<double, 6>{xxy.bdyMin[0], xxy.bdyMin[1], xxy.bdyMin[2], xxy.bdyMax[0],
                                     xxy.bdyMax[1], xxy.bdyMax[2]}),
              (std::array<double, 6>{-2, -2, 0, -1, -1, 1}));

    // Rotor: the centre on the axis.
    const Rotor* rxy = allBdys[11].rotor;
    EXPECT_EQ((std::array<double, 3>{rxy->center[0], rxy->center[1], rxy->center[2]}),
              (std::array<double, 3>{-1, -2, 3}));
    EXPECT_EQ(allBdys[5].rotor->center[1], 2);

    // Copies own their data: the originals are untouched and share nothing.
    EXPECT_EQ(cut_points(allBdys[0].cuts[0]), square);
    EXPECT_EQ(allBdys[2].rotor->center[0], 1);
    for (int b = 3; b < 12; ++b) {
        const Body& src = allBdys[b % 3];
        if (src.cuts) {
            EXPECT_NE(allBdys[b].cuts, src.cuts);
            EXPECT_NE(allBdys[b].cuts[0].pts, src.cuts[0].pts);
        }
        if (src.rotor) {
            EXPECT_NE(allBdys[b].rotor, src.rotor);
        }
    }
}

TEST_F(FullSpan, MirroredCuboidBlocksCellsOnlyWhenUsedInSolver) {
    // X line 1 2 3 mirrored about 0: -3 -2 -1 1 2 3, cells 0 .. 4; Y and Z one cell 0 .. 1.
    // The cuboid x 1 .. 3 fills cells 3 and 4, its copy x -3 .. -1 cells 0 and 1.
    for (int fullSpanUsed : {1, 0}) {
        reset_records();
        give_points(&Xgdln, {1, 2, 3}, 1, 3);
        give_points(&Ygdln, {0, 1}, 0, 1);
        give_points(&Zgdln, {0, 1}, 0, 1);
        gd_options.cuboidBlockFraction = 0.12;
        Xgdln.fullSpanAbout = 0;
        Body* cuboid = new_body_struct();
        cuboid->type = 3;
        cuboid->cuboid = static_cast<double*>(std::malloc(6 * sizeof(double)));
        const double corners[6] = {1, 0, 0, 3, 1, 1};
        std::memcpy(cuboid->cuboid, corners, sizeof corners);
        cuboid->fullSpanUsedInSolver = fullSpanUsed;
        set_box(cuboid, {1, 0, 0}, {3, 1, 1});
        full_span_grids_and_bodies();
        EXPECT_EQ(allBdys[1].cuboid[0], -1);
        EXPECT_EQ(allBdys[1].cuboid[3], -3);
        mark_all_body_cells();
        if (fullSpanUsed) {
            EXPECT_EQ(cells(), (Cells{{3, 0, 0}, {4, 0, 0}, {0, 0, 0}, {1, 0, 0}}));
        } else {
            EXPECT_EQ(cells(), (Cells{{3, 0, 0}, {4, 0, 0}}));
        }
    }
}

}  // namespace
