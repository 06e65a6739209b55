// Tests of the bounded bit set: storage, tail masking, set algebra and reported faults.
#include "FEL_bitvector.h"

#include <gtest/gtest.h>

namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

TEST(FEL_bitvector, MembersFromANegativeLowAndTheMaskedTail) {
    FEL_bitvector set(-40, 10);
    EXPECT_EQ(set.get_word_count(), 2);  // (10 + 40 + 32) >> 5
    set.put(-40);
    set.put(-9);
    set.put(10);
    set.toggle(0);
    set.toggle(-9);
    EXPECT_TRUE(set.lookup(-40));
    EXPECT_FALSE(set.lookup(-9));
    EXPECT_TRUE(set.lookup(0));
    EXPECT_TRUE(set.lookup(10));
    EXPECT_EQ(set.card(), 3);
    set.del(-40);
    EXPECT_EQ(set.card(), 2);

    // Complement masks the tail word: [0, 31] fills one word exactly, [0, 32] spills into a second.
    FEL_bitvector exact(0, 31);
    exact.put(5);
    exact.complement();
    EXPECT_EQ(exact.card(), 31);
    EXPECT_FALSE(exact.lookup(5));

    FEL_bitvector one_over(0, 32);
    one_over.complement();
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
    EXPECT_EQ(both.card(), 2);
    EXPECT_EQ(either.card(), 5);
    EXPECT_EQ(only_a.card(), 2);
    EXPECT_TRUE(only_a.lookup(1) && only_a.lookup(2));
    EXPECT_EQ(one_of.card(), 3);
    EXPECT_TRUE(both <= a);
    EXPECT_TRUE(a >= both);
    EXPECT_FALSE(a <= b);
    EXPECT_FALSE(a == b);
}

TEST(FEL_bitvector, OutOfRangeIsReportedAndChangesNothing) {
    FEL_bitvector set(-3, 3);
    CaptureStderr();
    set.put(4);
    set.del(-4);
    set.toggle(100);
    const bool found = set.lookup(-5);
    EXPECT_EQ(GetCapturedStderr(),
              "FEL_bitvector::put(4) outside [-3,3]\n"
              "FEL_bitvector::del(-4) outside [-3,3]\n"
              "FEL_bitvector::toggle(100) outside [-3,3]\n"
              "FEL_bitvector::lookup(-5) outside [-3,3]\n");
    EXPECT_FALSE(found);
    EXPECT_EQ(set.card(), 0);
}

TEST(FEL_bitvector, MismatchedOperandsAreReported) {
    FEL_bitvector a(0, 31), b(1, 32);
    a.put(7);
    b.put(7);
    CaptureStderr();
    a &= b;
    a |= b;
    a -= b;
    a ^= b;
    const bool equal = a == b, subset = a <= b, superset = a >= b;
    EXPECT_EQ(GetCapturedStderr(),
              "FEL_bitvector operator& =() mismatched argument\n"
              "FEL_bitvector operator|=() mismatched argument\n"
              "FEL_bitvector operator-=() mismatched argument\n"
              "FEL_bitvector operator^=() mismatched argument\n"
              "FEL_bitvector operator==() mismatched argument\n"
              "FEL_bitvector operator<=() mismatched argument\n"
              "FEL_bitvector operator>=() mismatched argument\n");
    EXPECT_FALSE(equal || subset || superset);
    EXPECT_EQ(a.card(), 1);
    EXPECT_TRUE(a.lookup(7));
}

}  // namespace
