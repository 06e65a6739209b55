// Tests of the line generator's bodies: points files, boxes, scaling, translation and listing.
#include "generator/bodies.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "gdtest_util.h"

namespace {

using BodiesTest = GenInputTest;

// Two planes, the upper one first, three (q1, q2) points each:
//   plane 5:  (1, -1), (1, 2), (-3, 0.5)   ties on q1 = 1: the first point stays the largest
//   plane -2: (0, 0), (4, 0), (0, -6)
// Over both: posn [-2, 5], q1 [-3, 4], q2 [-6, 2].
const char* const kTwoPlanes =
    "# two planes, three points each\n"
    "2 3\n"
    "# upper plane first\n"
    "5.0\n"
    "1.0 -1.0\n"
    "1.0  2.0   # tie\n"
    "-3.0 0.5\n"
    "\n"
    "# lower plane\n"
    "-2.0\n"
    "0.0 0.0\n"
    "4.0 0.0\n"
    "0.0 -6.0\n";

Body* add_body(const char* name, int type) {
    Body* b = new_body_struct();
    b->name = strdup(name);
    b->type = type;
    return b;
}

void expect_box(const Body& b, const double (&mn)[3], const double (&mx)[3]) {
    for (int a = 0; a < 3; ++a) {
        EXPECT_EQ(b.bdyMin[a], mn[a]) << b.name << " axis " << a;
        EXPECT_EQ(b.bdyMax[a], mx[a]) << b.name << " axis " << a;
    }
}

TEST_F(BodiesTest, CutBodiesGetTheirBoxOnEveryAxis) {
    const std::string file = write_temp_file("planes.cut", kTwoPlanes);
    for (int type = 0; type < 3; ++type) add_body("cut", type)->pointsFile = strdup(file.c_str());
    Body* moved = add_body("moved", 1);
    moved->pointsFile = strdup(file.c_str());
    moved->origin[0] = 1, moved->origin[1] = 10, moved->origin[2] = 100;
    add_body("empty", 0)->pointsFile = strdup("");
    add_body("none", 2)->usedInSolver = 0;
    bodies_lex_input_done();

    EXPECT_EQ(numOrigBdys, 6);
    const BodyCut* cuts = allBdys[0].cuts;
    ASSERT_EQ(allBdys[0].nCuts, 2);
    EXPECT_EQ(cuts[0].posn, 5.0);
    EXPECT_EQ(cuts[0].nPts, 3);
    EXPECT_EQ(cuts[0].pts[2][0], -3.0);
    EXPECT_EQ(cuts[0].pts[2][1], 0.5);
    const int idx0[4] = {cuts[0].minQ1, cuts[0].maxQ1, cuts[0].minQ2, cuts[0].maxQ2};
    const int idx1[4] = {cuts[1].minQ1, cuts[1].maxQ1, cuts[1].minQ2, cuts[1].maxQ2};
    EXPECT_EQ(std::vector<int>(idx0, idx0 + 4), (std::vector<int>{2, 0, 0, 1}));
    EXPECT_EQ(std::vector<int>(idx1, idx1 + 4), (std::vector<int>{0, 1, 2, 0}));

    expect_box(allBdys[0], {-2, -3, -6}, {5, 4, 2});
    expect_box(allBdys[1], {-3, -2, -6}, {4, 5, 2});
    expect_box(allBdys[2], {-3, -6, -2}, {4, 2, 5});
    // Origin (1, 10, 100) on Y planes: posn + 10, pairs (X, Z) + (1, 100).
    expect_box(allBdys[3], {-2, 8, 94}, {5, 15, 102});
    EXPECT_EQ(allBdys[3].cuts[1].posn, 8.0);
    // Without a points file a cut body has no cuts and keeps its unset box.
    EXPECT_EQ(allBdys[4].nCuts + allBdys[5].nCuts, 0);
    expect_box(allBdys[4], {DBL_MAX, DBL_MAX, DBL_MAX}, {DBL_MAX, DBL_MAX, DBL_MAX});
    EXPECT_EQ(allBdys[4].fullSpanUsedInSolver, 1);
    EXPECT_EQ(allBdys[5].fullSpanUsedInSolver, 0);
}

TEST_F(BodiesTest, RotorAndCuboidBoxesFollowTheirScaleRules) {
    gd_options.plotThicknessRatio = 0.02;
    Rotor ratio, absolute;
    Body* x = add_body("xdisc", 4);
    x->rotor = init_rotor(&ratio);
    EXPECT_EQ(ratio.center[1], DBL_MAX);
    EXPECT_EQ(ratio.radius, DBL_MAX);
    EXPECT_EQ(ratio.plotThicknessRatio, 0.02);
    ratio = Rotor{{1, 2, 3}, 2, 0.1, 0, 0.02};
    Body* y = add_body("ydisc", 5);
    absolute = Rotor{{1, 1, 1}, 1, 0.5, 1, 0.02};
    y->rotor = &absolute;
    double corners[6] = {5, 0, 0, 1, 2, 3};
    add_body("box", 3)->cuboid = corners;
    add_body("lost", 6);  // rotor type without a rotor: box untouched
    bodies_lex_input_done();
    // h = 2 * 0.1 on X, radius 2 on Y and Z.
    expect_box(allBdys[0], {1 - 2 * 0.1, 0, 1}, {1 + 2 * 0.1, 4, 5});
    expect_box(allBdys[1], {0, 0.5, 0}, {2, 1.5, 2});
    expect_box(allBdys[2], {1, 0, 0}, {5, 2, 3});
    expect_box(allBdys[3], {DBL_MAX, DBL_MAX, DBL_MAX}, {DBL_MAX, DBL_MAX, DBL_MAX});

    // Factors (2, 3, 4): centres per axis, radius by X, absolute thickness by Z, ratio kept.
    reset_generator_records();
    gd_options.convFactor[0] = 2, gd_options.convFactor[1] = 3, gd_options.convFactor[2] = 4;
    ratio = Rotor{{1, 2, 3}, 2, 0.1, 0, 0.02};
    absolute = Rotor{{1, 1, 1}, 1, 0.5, 1, 0.02};
    double corners2[6] = {5, 0, 0, 1, 2, 3};
    add_body("xdisc", 4)->rotor = &ratio;
    add_body("ydisc", 5)->rotor = &absolute;
    add_body("box", 3)->cuboid = corners2;
    const std::string file = write_temp_file("zplanes.cut", kTwoPlanes);
    add_body("zcut", 2)->pointsFile = strdup(file.c_str());
    bodies_lex_input_done();
    EXPECT_EQ(ratio.radius, 4.0);
    EXPECT_EQ(ratio.thickness, 0.1);
    EXPECT_EQ(absolute.radius, 2.0);
    EXPECT_EQ(absolute.thickness, 2.0);
    expect_box(allBdys[0], {2 - 4 * 0.1, 6 - 4, 12 - 4}, {2 + 4 * 0.1, 6 + 4, 12 + 4});
    expect_box(allBdys[1], {0, 1, 2}, {4, 5, 6});
    expect_box(allBdys[2], {2, 0, 0}, {10, 6, 12});
    // Z planes: posn by 4, pairs (X, Y) by (2, 3).
    expect_box(allBdys[3], {-6, -18, -8}, {8, 6, 20});
}

TEST_F(BodiesTest, TableGrowsByTenAndFindsNamesExactly) {
    for (int i = 0; i < 11; ++i) add_body(i == 3 ? "Wing" : (i == 7 ? "Wing" : "Other"), 10);
    EXPECT_EQ(numBdys, 11);
    EXPECT_EQ(maxBdys, 20);
    const Body& b = allBdys[10];
    EXPECT_EQ(b.pointsFile, nullptr);
    EXPECT_EQ(b.cuts, nullptr);
    EXPECT_EQ(b.rotor, nullptr);
    EXPECT_EQ(b.origin[0] + b.origin[1] + b.origin[2], 0.0);
    EXPECT_EQ(b.usedInSolver, 1);
    EXPECT_EQ(b.fullSpanUsedInSolver, -1);
    EXPECT_EQ(b.mirrorAxis, 3);
    EXPECT_EQ(b.blockFraction, DBL_MAX);

    EXPECT_EQ(body_from_name("Wing", 1), &allBdys[3]);
    EXPECT_EQ(body_from_name("Win", 0), nullptr);
    EXPECT_EQ(body_from_name("", 1), nullptr);
    EXPECT_EQ(body_from_name(nullptr, 1), nullptr);

    double lo = -7, hi = -8;
    bdy_low_high(nullptr, 0, &lo, &hi);
    EXPECT_EQ(lo, -7.0);
    EXPECT_EQ(hi, -8.0);
    allBdys[3].bdyMin[2] = 1.5, allBdys[3].bdyMax[2] = 2.5;
    bdy_low_high(&allBdys[3], 2, &lo, &hi);
    EXPECT_EQ(lo, 1.5);
    EXPECT_EQ(hi, 2.5);
}

TEST_F(BodiesTest, ExtentsAndTranslationCoverAllBodies) {
    double v[6] = {DBL_MAX, DBL_MAX, DBL_MAX, DBL_MAX, DBL_MAX, DBL_MAX};
    set_all_bodies_min_max(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5]);
    for (double x : v) EXPECT_EQ(x, DBL_MAX);

    const std::string file = write_temp_file("x.cut", kTwoPlanes);
    add_body("cut", 0)->pointsFile = strdup(file.c_str());
    Rotor r{{10, 20, 30}, 1, 0.5, 1, 0.02};
    add_body("disc", 6)->rotor = &r;
    bodies_lex_input_done();
    // cut: (-2, -3, -6)..(5, 4, 2); disc: (9, 19, 29.5)..(11, 21, 30.5).
    set_all_bodies_min_max(&v[0], &v[1], &v[2], &v[3], &v[4], &v[5]);
    const double expected[6] = {-2, 11, -3, 21, -6, 30.5};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(v[i], expected[i]) << i;

    Body* other = add_body("other", 10);
    other->bdyMin[0] = other->bdyMax[0] = 0;
    const double t[3] = {1, 2, 3};
    trAllBdyPts(t);
    EXPECT_EQ(allBdys[0].cuts[0].posn, 6.0);
    EXPECT_EQ(allBdys[0].cuts[0].pts[0][0], 1.0 + 2);
    EXPECT_EQ(allBdys[0].cuts[0].pts[0][1], -1.0 + 3);
    expect_box(allBdys[0], {-1, -1, -3}, {6, 6, 5});
    EXPECT_EQ(r.center[2], 33.0);
    expect_box(allBdys[1], {10, 21, 32.5}, {12, 23, 33.5});
    EXPECT_EQ(allBdys[2].bdyMin[0], 1.0);
    EXPECT_EQ(allBdys[2].bdyMax[0], 1.0);
}

TEST_F(BodiesTest, DebugListingIsExact) {
    const std::string file = write_temp_file("list.cut", kTwoPlanes);
    Body* cut = add_body("Fin", 1);
    cut->pointsFile = strdup(file.c_str());
    cut->usedInSolver = 0;
    cut->fullSpanUsedInSolver = 1;
    Rotor r{{1, 2, 3}, 0.5, 0.25, 1, 0.009};
    add_body("Prop", 4)->rotor = &r;
    double corners[6] = {0, 0, 0, 1, 2, 3};
    add_body("Crate", 3)->cuboid = corners;
    bodies_lex_input_done();
    const std::string text =
        stream_text([](FILE* f) { dbgpr_body_info(f, allBdys, numBdys, "Listing"); });
    EXPECT_EQ(text,
              "\nListing\nNo. of Bodys: 3\n"
              "\nBody Name: Fin\nBody Points Type: YcutPlanes\nBody Points File: " +
                  file +
                  "\nUsed In Solver: False\nFull Span Used In Solver: True\n"
                  "Bounding Box: (MinXYZ: -3.000000, -2.000000, -6.000000) to "
                  "(MaxXYZ: 4.000000, 5.000000, 2.000000)\n"
                  "\nBody Name: Prop\nBody Points Type: X-Plane Rotor\n"
                  "Rotor Center: (1.000000, 2.000000, 3.000000)\nRotor Radius: 0.500000\n"
                  "Rotor Thickness: 0.250000\nIs Abs. Thickness? True\n"
                  "Plot Thickness Ratio: 0.009000\n"
                  "Used In Solver: True\nFull Span Used In Solver: True\n"
                  "Bounding Box: (MinXYZ: 0.750000, 1.500000, 2.500000) to "
                  "(MaxXYZ: 1.250000, 2.500000, 3.500000)\n"
                  "\nBody Name: Crate\nBody Points Type: Cuboid\n"
                  "Cuboid Pts: (0.000000, 0.000000, 0.000000) to (1.000000, 2.000000, 3.000000)\n"
                  "Used In Solver: True\nFull Span Used In Solver: True\n"
                  "Bounding Box: (MinXYZ: 0.000000, 0.000000, 0.000000) to "
                  "(MaxXYZ: 1.000000, 2.000000, 3.000000)\n");
}

using BodiesDeathTest = GenInputTest;

TEST_F(BodiesDeathTest, PointsFileFailuresEndWithStatusOne) {
    add_body("gone", 0)->pointsFile = strdup("/nonexistent-dir/gone.cut");
    EXPECT_EXIT(bodies_lex_input_done(), testing::ExitedWithCode(1),
                "^\nError: can not open body points file '/nonexistent-dir/gone.cut'\n$");

    const std::string bad = write_temp_file("bad.cut", "2 3\n# first\n1.0\n1.0 2.0\n3.0 x\n");
    allBdys[0].pointsFile = strdup(bad.c_str());
    EXPECT_EXIT(bodies_lex_input_done(), testing::ExitedWithCode(1),
                "\nError: can not read the counts or values of body points file '.*bad.cut'\n$");

    const std::string counts = write_temp_file("counts.cut", "# no counts\nfour five\n");
    allBdys[0].pointsFile = strdup(counts.c_str());
    EXPECT_EXIT(bodies_lex_input_done(), testing::ExitedWithCode(1),
                "\nError: can not read the counts or values of body points file '.*counts.cut'\n$");
    const std::string cut = write_temp_file("short.cut", "2 1\n0.0\n1 1\n");
    allBdys[0].pointsFile = strdup(cut.c_str());
    EXPECT_EXIT(bodies_lex_input_done(), testing::ExitedWithCode(1),
                "body points file '.*short.cut'\n$");
}

}  // namespace
