// Tests of the vector types, FEL_Close and the vector ordering.
#include "FEL_vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

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

}  // namespace
