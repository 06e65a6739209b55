// Box overlap: absolute slack, shared faces, and the two closeness rules of its two forms.
#include "intersector/GridCell.h"

#include <gtest/gtest.h>

namespace {
TEST(CubesIntersect, SlackAndClosenessInBothPrecisions) {
    struct Case {
        float aHi, bLo;  // on x, A is [0, aHi] and B [bLo, bLo + 1]; both [0, 1] on y and z
        bool useClose;
        bool single, dbl;
    } cases[] = {
        {1, 1.00000012f, false, true, true},    // one float epsilon apart
        {1, 1.00000024f, false, false, false},  // two
        {1000, 1000, false, true, true},        // a shared face
        {1000, 1000.05f, false, false, false},
        {1000, 1000.05f, true, true, false},  // FEL_Close's mantissas; the double form's are finer
        {1000, 1000.5f, true, false, false},
    };
    for (const Case& c : cases) {
        FEL_use_close_scope useClose(c.useClose);
        float aMin[3] = {0, 0, 0}, aMax[3] = {c.aHi, 1, 1}, bMin[3] = {c.bLo, 0, 0};
        float bMax[3] = {c.bLo + 1, 1, 1};
        double dMin[3] = {0, 0, 0}, dMax[3] = {c.aHi, 1, 1}, eMin[3] = {c.bLo, 0, 0};
        double eMax[3] = {c.bLo + 1.0, 1, 1};
        EXPECT_EQ(CubesIntersect(aMin, aMax, bMin, bMax), c.single) << c.bLo << " " << c.useClose;
        EXPECT_EQ(CubesIntersect(bMin, bMax, aMin, aMax), c.single) << c.bLo << " " << c.useClose;
        EXPECT_EQ(CubesIntersect(dMin, dMax, eMin, eMax), c.dbl) << c.bLo << " " << c.useClose;
    }
}
}  // namespace
