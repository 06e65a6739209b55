// Tests of the line generator's bodies: points files, boxes, scaling and translation.
#include "generator/bodies.h"

#include <gtest/gtest.h>

#include <string>

#include "gdtest_util.h"

namespace {

using BodiesTest = GenTest;

// Two planes, the upper one first, three (q1, q2) points each:
//   plane 5:  (1, -1), (1, 2), (-3, 0.5)   ties on q1 = 1: the first point stays the largest
//   plane -2: (0, 0), (4, 0), (0, -6)
// Over both: posn [-2, 5], q1 [-3, 4], q2 [-6, 2].
const char* const kTwoPlanes =
    "# two planes, three points each\n2 3\n# upper plane first\n5.0\n1.0 -1.0\n"
    "1.0  2.0   # tie\n-3.0 0.5\n\n# lower plane\n-2.0\n0.0 0.0\n4.0 0.0\n0.0 -6.0\n";

Body* add_body(const char* name, int type) {
    Body* b = new_body_struct();
    b->name = record_text(name);
    b->type = type;
    return b;
}

const Pts kUnset(6, DBL_MAX);

TEST_F(BodiesTest, CutBodiesGetTheirBoxOnEveryAxisAndMoveWithTheTranslation) {
    double v[4] = {1, 2, 3, 4};
    set_all_bodies_min_max(&v[0], &v[1], &v[2], &v[3], &v[3], &v[3]);  // no bodies: untouched
    bdy_low_high(nullptr, 0, &v[0], &v[1]);                            // no body: untouched
    EXPECT_EQ(Pts(v, v + 4), (Pts{1, 2, 3, 4}));
    const std::string planes = file("planes.cut", kTwoPlanes);
    for (int type = 0; type < 3; ++type) add_body("cut", type)->pointsFile = record_text(planes);
    Body* moved = add_body("moved", 1);
    moved->pointsFile = record_text(planes);
    moved->origin[0] = 1, moved->origin[1] = 10, moved->origin[2] = 100;
    add_body("empty", 0)->pointsFile = record_text("");
    add_body("none", 2)->usedInSolver = 0;
    bodies_lex_input_done();

    EXPECT_EQ(numOrigBdys, 6);
    const BodyCut* cuts = allBdys[0].cuts;
    ASSERT_EQ(allBdys[0].nCuts, 2);
    EXPECT_EQ(cuts[0].posn, 5.0);
    EXPECT_EQ((std::vector<int>{cuts[0].minQ1, cuts[0].maxQ1, cuts[0].minQ2, cuts[0].maxQ2,
                                cuts[1].minQ1, cuts[1].maxQ1, cuts[1].minQ2, cuts[1].maxQ2}),
              (std::vector<int>{2, 0, 0, 1, 0, 1, 2, 0}));
    EXPECT_EQ(box(allBdys[0]), (Pts{-2, -3, -6, 5, 4, 2}));
    EXPECT_EQ(box(allBdys[1]), (Pts{-3, -2, -6, 4, 5, 2}));
    EXPECT_EQ(box(allBdys[2]), (Pts{-3, -6, -2, 4, 2, 5}));
    // Origin (1, 10, 100) on Y planes: posn + 10, pairs (X, Z) + (1, 100).
    EXPECT_EQ(box(allBdys[3]), (Pts{-2, 8, 94, 5, 15, 102}));
    // Without a points file a cut body has no cuts and keeps its unset box.
    EXPECT_EQ(allBdys[4].nCuts + allBdys[5].nCuts, 0);
    EXPECT_EQ(box(allBdys[4]), kUnset);
    EXPECT_EQ(std::make_pair(allBdys[4].fullSpanUsedInSolver, allBdys[5].fullSpanUsedInSolver),
              std::make_pair(1, 0));
    EXPECT_EQ(body_from_name("cut", 1), &allBdys[0]);  // the first of the same name
    const double t[3] = {1, 2, 3};
    trAllBdyPts(t);
    EXPECT_EQ(box(allBdys[0]), (Pts{-1, -1, -3, 6, 6, 5}));
}

TEST_F(BodiesTest, RotorAndCuboidBoxesFollowTheirScaleRules) {
    // Factors (2, 3, 4): centres per axis, radius by X, absolute thickness by Z, the ratio kept.
    // The disc's half thickness is the radius times the ratio, or the absolute thickness.
    gd_options.plotThicknessRatio = 0.02;
    gd_options.convFactor[0] = 2, gd_options.convFactor[1] = 3, gd_options.convFactor[2] = 4;
    Rotor ratio{{1, 2, 3}, 2, 0.1, 0, 0.02}, absolute{{1, 1, 1}, 1, 0.5, 1, 0.02};
    double corners[6] = {5, 0, 0, 1, 2, 3};
    add_body("xdisc", 4)->rotor = &ratio;
    add_body("ydisc", 5)->rotor = &absolute;
    add_body("box", 3)->cuboid = corners;
    add_body("lost", 6);  // rotor type without a rotor: box untouched
    add_body("zcut", 2)->pointsFile = record_text(file("z.cut", kTwoPlanes));
    bodies_lex_input_done();
    EXPECT_EQ((Pts{ratio.radius, ratio.thickness, absolute.radius, absolute.thickness}),
              (Pts{4, 0.1, 2, 2}));
    EXPECT_EQ(box(allBdys[0]), (Pts{2 - 4 * 0.1, 2, 8, 2 + 4 * 0.1, 10, 16}));
    EXPECT_EQ(box(allBdys[1]), (Pts{0, 1, 2, 4, 5, 6}));
    EXPECT_EQ(box(allBdys[2]), (Pts{2, 0, 0, 10, 6, 12}));
    EXPECT_EQ(box(allBdys[3]), kUnset);
    // Z planes: posn by 4, pairs (X, Y) by (2, 3).
    EXPECT_EQ(box(allBdys[4]), (Pts{-6, -18, -8, 8, 6, 20}));
}

using BodiesDeathTest = GenTest;

TEST_F(BodiesDeathTest, PointsFileFailuresEndWithStatusOne) {
    add_body("gone", 0)->pointsFile = record_text("/nonexistent-dir/gone.cut");
    EXPECT_EXIT(bodies_lex_input_done(), testing::ExitedWithCode(1),
                "^\nError: can not open body points file '/nonexistent-dir/gone.cut'\n$");
    // Counts that the rest of the file can't hold are refused before anything is allocated.
    const char* const bad[][3] = {
        {"bad.cut", "2 3\n# first\n1.0\n1.0 2.0\n3.0 x\n",
         "can not read the counts or values of body points file '.*bad.cut'"},
        {"counts.cut", "# no counts\nfour five\n",
         "can not read the counts or values of body points file '.*counts.cut'"},
        {"short.cut", "2 1\n0.0\n1 1\n",
         "file '.*short.cut', number of cuts of 1 points = 2: the 9 bytes left in the file can not "
         "hold so many"}};
    for (const auto& [name, text, message] : bad) {
        allBdys[0].pointsFile = record_text(file(name, text));
        EXPECT_EXIT(bodies_lex_input_done(), testing::ExitedWithCode(1),
                    "\nError: " + std::string(message) + "\n$");
    }
}

}  // namespace
