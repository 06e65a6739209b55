// Tests of the vector types, FEL_Close, the vector ordering and the matrix.
#include "FEL_vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "FEL_matrix33.h"

namespace {

TEST(FEL_Close, MantissaRelativeAndAbsoluteStepsAndTheSwitch) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    struct Case {
        float a, b;
        bool close, exact;  // with the switch on, and off
    };
    const Case cases[] = {
        // 1.5 has mantissa 0.75 at exponent 1: 0.00018 apart is 0.00009 of mantissa; 0.00022 is
        // 0.00011, beyond the relative step 1.5 * 0.0001 too.
        {1.5f, 1.50018f, true, false},
        {1.5f, 1.50022f, false, false},
        // 1.0 has exponent 1 and 0.99995 exponent 0: only the relative step joins them.
        {1.0f, 0.99995f, true, false},
        {0.99995f, 1.0f, true, false},
        {1.0f, 0.9998f, false, false},
        // The relative step scales by the first argument alone.
        {inf, 1.0f, true, false},
        {1.0f, inf, false, false},
        // Near zero the absolute step 0.0001 applies.
        {0.0f, 0.00005f, true, false},
        {0.0001f, -0.0001f, true, false},
        {0.0f, 0.000101f, false, false},
        {1.0f, 0.0f, false, false},
        {0.0f, -0.0f, true, true},
        {2.5f, 2.5f, true, true},
        {nan, nan, false, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FEL_Close(c.a, c.b), c.close) << c.a << " " << c.b;
        FEL_use_close_scope exact(false);
        EXPECT_EQ(FEL_Close(c.a, c.b), c.exact) << c.a << " " << c.b;
    }
    EXPECT_TRUE(g_blnUseClose);
}

using V = FEL_vector3<float>;

// The STL reader turns the switch off while it merges: a read that throws must not leave it off.
TEST(FEL_Close, TheSwitchComesBackWhenAnExceptionLeavesItsScope) {
    try {
        FEL_use_close_scope exact(false);
        throw FEL_vector3<int>();
    } catch (const FEL_vector3<int>&) {
    }
    EXPECT_TRUE(g_blnUseClose);
}

TEST(FEL_Close, VectorOrderingMergesCloseVertices) {
    const V a(1.0f, 2.0f, 3.0f), near_a(1.00001f, 2.00001f, 3.00001f), b(1.00001f, 5.0f, 0.0f);
    EXPECT_TRUE(a < b && !(b < a));
    EXPECT_FALSE(a < near_a || near_a < a);  // one key of an ordered map
    FEL_use_close_scope exact(false);
    EXPECT_TRUE(a < near_a);
}

TEST(FEL_matrix33, RowsAndProducts) {
    // Rows (1 2 3), (4 5 6), (7 8 10).
    using D = FEL_vector3<double>;
    const FEL_matrix33<double> m(D(1, 2, 3), D(4, 5, 6), D(7, 8, 10));
    EXPECT_EQ(m * V(1.0f, 0.5f, -1.0f), V(-1.0f, 0.5f, 1.0f));
    EXPECT_EQ(m.determinant(), -3.0);
    // Row 0 of m times column 1 of m: 1*2 + 2*5 + 3*8.
    EXPECT_EQ((m * m)(0, 1), 36.0);
    // A matrix times a vector of vectors combines the vectors.
    const FEL_matrix33<float> swap(V(0, 1, 0), V(1, 0, 0), V(0, 0, 2));
    const FEL_vector3<V> vv(V(1, 2, 3), V(4, 5, 6), V(7, 8, 9));
    EXPECT_EQ(swap * vv, FEL_vector3<V>(V(4, 5, 6), V(1, 2, 3), V(14, 16, 18)));
}

}  // namespace
