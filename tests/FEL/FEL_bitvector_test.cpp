// Tests of the bounded bit set: storage, tail masking, set algebra and reported faults.
#include "FEL_bitvector.h"

#include <gtest/gtest.h>

TEST(FEL_bitvector, MembersTailAlgebraAndReportedFaults) {
    FEL_bitvector set(-40, 10);
    for (int m : {-40, -9, 10}) set.put(m);
    set.toggle(0);
    set.toggle(-9);
    set.del(-40);
    EXPECT_TRUE(set.lookup(0) && set.lookup(10) && set.card() == 2);
    // Complement masks the tail word: [0, 31] fills one word exactly, [0, 32] spills into a second.
    FEL_bitvector exact(0, 31), one_over(0, 32);
    exact.put(5);
    exact.complement();
    one_over.complement();
    EXPECT_EQ(std::make_pair(exact.card(), one_over.card()), std::make_pair(31, 33));
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
    EXPECT_TRUE(only_a.lookup(1) && only_a.lookup(2) && both <= a && a >= both);
    EXPECT_FALSE(a <= b || a == b);
    // Faults are reported and change nothing.
    FEL_bitvector small(-3, 3), other(-2, 4);
    small.put(1);
    testing::internal::CaptureStderr();
    small.put(4);
    small.del(-4);
    small.toggle(100);
    const bool found = small.lookup(-5);
    small &= other;
    small |= other;
    small -= other;
    small ^= other;
    const bool any = small == other || small <= other || small >= other;
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
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
    EXPECT_TRUE(small.card() == 1 && small.lookup(1));
}
