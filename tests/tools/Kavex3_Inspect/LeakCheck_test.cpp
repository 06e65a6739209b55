// Leak check on a hand-made run: winding numbers of a box and settled blocks against every cell.
#include "LeakCheck.h"

#include <gtest/gtest.h>

#include "WindingNumber.h"

namespace {

// The box 2..10 cubed, outward, in a grid of 12 unit cells a side; blnTop keeps its facet z = 10.
//
//   z 10 +- - - - -+   (without the top: the facet drawn dashed is missing)
//        |         |
//      2 +---------+
//        2        10  x
InspectRun BoxRun(bool blnTop) {
    InspectRun run;
    for (int a = 0; a < 3; ++a)
        for (int n = 0; n <= 12; ++n) run.vecAxes[a].push_back(static_cast<float>(n));
    InspectBody body;
    body.body.blnUsedInSolver = true;
    for (int c = 0; c < 8; ++c)
        body.surface.vecPoints.emplace_back(c & 1 ? 10 : 2, c & 2 ? 10 : 2, c & 4 ? 10 : 2);
    const int quads[6][4] = {{0, 2, 3, 1}, {0, 1, 5, 4}, {1, 3, 7, 5},
                             {3, 2, 6, 7}, {2, 0, 4, 6}, {4, 5, 7, 6}};
    for (int q = 0; q < (blnTop ? 6 : 5); ++q) {
        body.surface.vecTriangles.push_back({quads[q][0], quads[q][1], quads[q][2]});
        body.surface.vecTriangles.push_back({quads[q][0], quads[q][2], quads[q][3]});
    }
    body.surface.vecKept.assign(body.surface.vecTriangles.size(), true);
    run.vecBodies.push_back(body);
    return run;
}

TEST(WindingNumber, OneInsideZeroOutsideHalfInTheHole) {
    const InspectRun run = BoxRun(true), open = BoxRun(false);
    const WindingNumber wn(run.vecBodies[0].surface.vecPoints,
                           run.vecBodies[0].surface.vecTriangles);
    EXPECT_NEAR(wn.At({6, 6, 6}), 1.0, 1e-12);
    EXPECT_NEAR(wn.At({6, 6, 11}), 0.0, 1e-12);
    EXPECT_NEAR(wn.At({500, -300, 200}), 0.0, 1e-6);  // far: the clusters' dipoles
    const WindingNumber wnOpen(open.vecBodies[0].surface.vecPoints,
                               open.vecBodies[0].surface.vecTriangles);
    EXPECT_NEAR(wnOpen.At({6, 6, 10}), 0.5, 1e-12);
    EXPECT_TRUE(wn.Touches({9.5, 9.5, 9.5}, {11, 11, 11}));
    EXPECT_FALSE(wn.Touches({10.5, 0, 0}, {12, 12, 12}));
}

TEST(LeakCheck, SettledBlocksAgreeWithEveryCell) {
    const InspectRun run = BoxRun(false);
    const std::vector<char> vecNone(12 * 12 * 12, 0);
    const auto vecSettled = LeakedCells(run, run.vecBodies[0].surface, vecNone);
    EXPECT_EQ(vecSettled, LeakedCells(run, run.vecBodies[0].surface, vecNone, true));
    EXPECT_EQ(vecSettled.size(), 8u * 8 * 8);  // the centres 2.5 .. 9.5
    // Facing inwards, the same cells.
    InspectSurface inward = run.vecBodies[0].surface;
    for (auto& tri : inward.vecTriangles) std::swap(tri[1], tri[2]);
    EXPECT_EQ(LeakedCells(run, inward, vecNone), vecSettled);
}

}  // namespace
