// Tests of the bounded bit set: storage, tail masking, set algebra and reported faults.
#include "FEL_bitvector.h"

#include <gtest/gtest.h>

namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

TEST(FEL_bitvector, MembersFromANegativeLowAndTheMaskedTail) {
    FEL_bitvector set(-40, 10);
    EXPECT_EQ(set.get_word_count(), 2);  // (10 + 40 + 32) >> 5
    for (int m : {-40, -9, 10}) set.put(m);
    set.toggle(0);
    set.toggle(-9);
    set.del(-40);
    EXPECT_TRUE(set.lookup(0) && set.lookup(10));
    EXPECT_EQ(set.card(), 2);
    // Complement masks the tail word: [0, 31] fills one word exactly, [0, 32] spills into a second.
    FEL_bitvector exact(0, 31), one_over(0, 32);
    exact.put(5);
    exact.complement();
    one_over.complement();
    EXPECT_EQ(exact.card(), 31);
    EXPECT_EQ(one_over.card(), 33);
    FEL_bitvector copy(one_over);
    copy.complement();
    EXPECT_EQ(copy.card(), 0);
}

TEST(FEL_bitvector, SetAlgebra) {
    // a = {1, 2, 3, 40}, b = {3, 40, 41}
    FEL_bitvector a(0, 63), b(0, 63);
    for (int m : {1, 2, 3, 40}) a.put(m);
    for (int m : {3, 40, 41}) b.put(m);
    FEL_bitvector both(a), either(a), only_a(a), one_of(a);
    both &= b;
    either |= b;
    only_a -= b;
    one_of ^= b;
    EXPECT_EQ((std::vector<int>{both.card(), either.card(), only_a.card(), one_of.card()}),
              (std::vector<int>{2, 5, 2, 3}));
    EXPECT_TRUE(only_a.lookup(1) && only_a.lookup(2));
    EXPECT_TRUE(both <= a && a >= both);
    EXPECT_FALSE(a <= b || a == b);
}

TEST(FEL_bitvector, OutOfRangeAndMismatchedOperandsAreReportedAndChangeNothing) {
    FEL_bitvector set(-3, 3), other(-2, 4);
    set.put(1);
    CaptureStderr();
    set.put(4);
    set.del(-4);
    set.toggle(100);
    const bool found = set.lookup(-5);
    set &= other;
    set |= other;
    set -= other;
    set ^= other;
    const bool any = set == other || set <= other || set >= other;
    EXPECT_EQ(GetCapturedStderr(),
              "FEL_bitvector::put(4) outside [-3,3]\n"
              "FEL_bitvector::del(-4) outside [-3,3]\n"
              "FEL_bitvector::toggle(100) outside [-3,3]\n"
              "FEL_bitvector::lookup(-5) outside [-3,3]\n"
              "FEL_bitvector operator& =() mismatched argument\n"
              "FEL_bitvector operator|=() mismatched argument\n"
              "FEL_bitvector operator-=() mismatched argument\n"
              "FEL_bitvector operator^=() mismatched argument\n"
              "FEL_bitvector operator==() mismatched argument\n"
              "FEL_bitvector operator<=() mismatched argument\n"
              "FEL_bitvector operator>=() mismatched argument\n");
    EXPECT_FALSE(found || any);
    EXPECT_EQ(set.card(), 1);
    EXPECT_TRUE(set.lookup(1));
}

}  // namespace
