// The triangle-cube test, with a triangle built to reach each of its decisions.
#include "intersector/tricube.h"

#include <gtest/gtest.h>

namespace {
struct CubeCase {
    const char* what;
    _Triangle3 t;
    bool touches;
    long faceCommon, bevel2dCommon, bevel3dCommon;  // the common outcode bits of the three vertices
};

long Common(long (*code)(const double*), const _Triangle3& t) {
    return code(t.v1) & code(t.v2) & code(t.v3);
}

TEST(TriangleCube, EachDecision) {
    // clang-format off
    const CubeCase cases[] = {
        {"vertex on the cube's corner: inside", {{0.5, 0.5, 0.5}, {3, 3, 3}, {3, 4, 3}}, true, 0, 0, 0},
        {"wholly beyond x = 0.5: faces", {{0.6, 0, 0}, {0.7, 0.1, 0}, {0.8, -0.1, 0.1}}, false, 0x01, 0, 0},
        {"beyond the x+y edge plane only", {{0.9, 0.2, 0}, {0.2, 0.9, 0}, {0.7, 0.7, 0.1}}, false, 0, 0x001, 0},
        {"beyond the x+y+z corner plane only", {{0.9, 0.45, 0.45}, {0.45, 0.9, 0.45}, {0.45, 0.45, 0.9}}, false, 0, 0, 0x01},
        {"edge through the cube", {{-2, 0, 0}, {2, 0.1, 0}, {0, 5, 5}}, true, 0, 0, 0},
        {"large, through the centre: a diagonal", {{-10, -10, 0}, {10, -10, 0}, {0, 10, 0}}, true, 0, 0, 0},
        {"covers the top face in its plane", {{-5, -5, 0.5}, {5, -5, 0.5}, {0, 5, 0.5}}, true, 0, 0, 0},
        {"coincident vertices outside", {{2, 2, 2}, {2, 2, 2}, {2, 2, 2}}, false, 0x15, 0x111, 0x17},
        // Plane x + 2y + 3z = 3.5 misses the cube, yet no one of the 26 planes separates it.
        {"passes every outcode, misses", {{10, 10, -8.8333333}, {-10, 10, -2.1666667}, {0, -10, 7.8333333}}, false, 0, 0, 0},
    };
    // clang-format on
    for (const CubeCase& c : cases) {
        EXPECT_EQ(t_c_intersection(c.t) != 0, c.touches) << c.what;
        EXPECT_EQ(Common(face_plane, c.t), c.faceCommon) << c.what;
        EXPECT_EQ(Common(bevel_2d, c.t), c.bevel2dCommon) << c.what;
        EXPECT_EQ(Common(bevel_3d, c.t), c.bevel3dCommon) << c.what;
    }
}
}  // namespace
