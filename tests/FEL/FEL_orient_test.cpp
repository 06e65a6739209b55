// Orientation predicates: signs worked out by hand, the fold rule of the quadrilateral, box bounds.
#include "FEL_orient.h"

#include <gtest/gtest.h>

using V = FEL_vector3<float>;

TEST(FEL_orient, SignsFoldsAndBoxBounds) {
    // (0,1)
    //   |  \      counter-clockwise a, b, c: (0 - 1) 0 - (0 - 1) 1 + (0 - 0) 0 = 1
    // (0,0)--(1,0)
    EXPECT_EQ(FEL_orient(0, 0, 1, 0, 0, 1), 1);
    EXPECT_EQ(FEL_orient(0, 0, 0, 1, 1, 0), -1);
    EXPECT_EQ(FEL_orient(0, 0, 1, 1, 2, 2), 0);
    //  d(0,1,1) - c(1,1,0)    a b c lies in z = 0; a c d is folded up about the diagonal a c
    //     |    /   |
    //  a(0,0,0) - b(1,0,0)
    const V a(0, 0, 0), b(1, 0, 0), c(1, 1, 0), flat(0, 1, 0), up(0, 1, 1), hi(1, 2, 3);
    EXPECT_EQ(FEL_orient(a, b, flat, V(0, 0, -1)), -1);
    EXPECT_EQ(FEL_orient(a, b, flat, V(3, 4, 0)), 0);
    EXPECT_EQ(FEL_orient(a, b, c, flat, V(0.5f, 0.5f, 1)), 1);
    // Above a b c (o1 = +1) but below a c d (r . (1, -1, 1) = -0.3): the fold is upward
    // (w . m1 = 1 > 0), so the smaller answer wins; mirrored in z the greater answer wins.
    EXPECT_EQ(FEL_orient(a, b, c, up, V(0.1f, 0.9f, 0.5f)), -1);
    EXPECT_EQ(FEL_orient(a, b, c, V(0, 1, -1), V(0.1f, 0.9f, -0.5f)), 1);
    // a = b: the first triangle is no triangle, the second one answers.
    EXPECT_EQ(FEL_orient(a, a, c, up, V(0.1f, 0.9f, 0.5f)), -1);
    EXPECT_TRUE(FEL_bounding_box(a, hi, hi) && FEL_bounding_box(a, hi, flat));
    EXPECT_FALSE(FEL_bounding_box(a, hi, V(0, 2.0001f, 0)));
    EXPECT_FALSE(FEL_bounding_box(a, hi, V(-0.0001f, 1, 1)));
}
