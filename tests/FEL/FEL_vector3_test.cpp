// Tests of the vector types, FEL_Close, the vector ordering and the matrix.
#include "FEL_vector3.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <sstream>

#include "FEL_matrix33.h"

namespace {

// Restores the process-wide switch whatever a test does to it.
class FEL_Close_test : public ::testing::Test {
  protected:
    void TearDown() override { g_blnUseClose = true; }
};

TEST_F(FEL_Close_test, MantissaStepAtEqualExponents) {
    // 1.5 has mantissa 0.75 at exponent 1; 0.00018 apart is 0.00009 of mantissa.
    EXPECT_TRUE(FEL_Close(1.5f, 1.50018f));
    // 0.00011 of mantissa: the relative step allows only 1.5 * 0.0001 = 0.00015.
    EXPECT_FALSE(FEL_Close(1.5f, 1.50022f));
}

TEST_F(FEL_Close_test, RelativeStepAcrossExponents) {
    // 1.0 has exponent 1 and 0.99995 exponent 0: only the relative step can join them.
    EXPECT_TRUE(FEL_Close(1.0f, 0.99995f));
    EXPECT_TRUE(FEL_Close(0.99995f, 1.0f));
    EXPECT_FALSE(FEL_Close(1.0f, 0.9998f));
    // The relative step scales by the first argument alone.
    const float inf = std::numeric_limits<float>::infinity();
    EXPECT_TRUE(FEL_Close(inf, 1.0f));
    EXPECT_FALSE(FEL_Close(1.0f, inf));
}

TEST_F(FEL_Close_test, AbsoluteStepNearZero) {
    EXPECT_TRUE(FEL_Close(0.0f, 0.00005f));
    EXPECT_TRUE(FEL_Close(0.0001f, -0.0001f));
    EXPECT_FALSE(FEL_Close(0.0f, 0.000101f));
    EXPECT_FALSE(FEL_Close(0.0f, 1.0f));
    EXPECT_FALSE(FEL_Close(1.0f, 0.0f));
}

TEST_F(FEL_Close_test, SwitchedOffIsExactEquality) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    g_blnUseClose = false;
    EXPECT_FALSE(FEL_Close(nan, nan));
    EXPECT_FALSE(FEL_Close(1.0f, 1.00001f));
    EXPECT_FALSE(FEL_Close(0.0f, 0.00005f));
    EXPECT_TRUE(FEL_Close(0.0f, -0.0f));
    EXPECT_TRUE(FEL_Close(2.5f, 2.5f));
    g_blnUseClose = true;
    EXPECT_FALSE(FEL_Close(nan, nan));
    EXPECT_TRUE(FEL_Close(1.0f, 1.00001f));
}

TEST_F(FEL_Close_test, VectorOrderingMergesCloseVertices) {
    const FEL_vector3<float> a(1.0f, 2.0f, 3.0f);
    const FEL_vector3<float> near_a(1.00001f, 2.00001f, 3.00001f);
    const FEL_vector3<float> b(1.00001f, 5.0f, 0.0f);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_FALSE(a < near_a);
    EXPECT_FALSE(near_a < a);
    std::map<FEL_vector3<float>, int> vertices;
    vertices[a] = 1;
    vertices[near_a] += 1;
    EXPECT_EQ(vertices.size(), 1u);
    EXPECT_EQ(vertices[a], 2);
    g_blnUseClose = false;
    EXPECT_TRUE(a < near_a);
}

TEST(FEL_vector3, StreamFormAndArithmetic) {
    std::ostringstream out;
    out << FEL_vector3<float>(1.0f, 2.5f, -3.0f) << FEL_vector3<int>(4, 0, -7);
    EXPECT_EQ(out.str(), "(1, 2.5, -3)(4, 0, -7)");
    const FEL_vector3<double> a(1, 2, 3), b(4, 5, 6);
    EXPECT_EQ(FEL_dot(a, b), 32.0);
    EXPECT_EQ(FEL_cross(a, b), FEL_vector3<double>(-3, 6, -3));
    EXPECT_EQ(a + b, FEL_vector3<double>(5, 7, 9));
    EXPECT_EQ(b - a, FEL_vector3<double>(3, 3, 3));
}

TEST(FEL_matrix33, RowsAndProducts) {
    // Rows (1 2 3), (4 5 6), (7 8 10).
    const FEL_matrix33<double> m(FEL_vector3<double>(1, 2, 3), FEL_vector3<double>(4, 5, 6),
                                 FEL_vector3<double>(7, 8, 10));
    const FEL_vector3<float> v = m * FEL_vector3<float>(1.0f, 0.5f, -1.0f);
    EXPECT_EQ(v, FEL_vector3<float>(-1.0f, 0.5f, 1.0f));
    EXPECT_EQ(m.determinant(), -3.0);
    const FEL_matrix33<double> t = m.transpose();
    EXPECT_EQ(t(0, 2), 7.0);
    EXPECT_EQ(t(2, 0), 3.0);
    const FEL_matrix33<double> p = m * FEL_matrix33<double>();
    EXPECT_EQ(p(2, 2), 10.0);
    const FEL_matrix33<double> square = m * m;
    // Row 0 of m times column 1 of m: 1*2 + 2*5 + 3*8.
    EXPECT_EQ(square(0, 1), 36.0);
    // A matrix times a vector of vectors combines the vectors.
    const FEL_matrix33<float> swap(FEL_vector3<float>(0, 1, 0), FEL_vector3<float>(1, 0, 0),
                                   FEL_vector3<float>(0, 0, 2));
    const FEL_vector3<FEL_vector3<float>> vv(
        FEL_vector3<float>(1, 2, 3), FEL_vector3<float>(4, 5, 6), FEL_vector3<float>(7, 8, 9));
    const FEL_vector3<FEL_vector3<float>> r = swap * vv;
    EXPECT_EQ(r.x, FEL_vector3<float>(4, 5, 6));
    EXPECT_EQ(r.y, FEL_vector3<float>(1, 2, 3));
    EXPECT_EQ(r.z, FEL_vector3<float>(14, 16, 18));
}

}  // namespace
