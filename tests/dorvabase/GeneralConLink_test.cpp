// Tests of the control link between a parent and a worker, in real processes.
#include "GeneralConLink.h"

#include <gtest/gtest.h>

#include "LinkPeer.h"

// Thousands of sets of two fields of one record by two processes at once: compare-and-swap
// loses none, and each field ends at its last value.
TEST(GeneralConLink, TwoProcessesSettingDifferentFieldsLoseNoUpdate) {
    TestRegion region("race");
    LinkPeer parent(region.strName, "start conparent await loop state 100000 wait report shutdown");
    ASSERT_EQ(parent.Read(2), "1\n1 0\n");
    LinkPeer worker(region.strName, "start conattach 0 flag loop progress 100000 shutdown");
    EXPECT_EQ(worker.Read(), "1\n1 0\n1\nok\ndown\n");
    EXPECT_EQ(parent.Read(3), "flagged\nok\nwaiting\n");
    parent.Go();
    EXPECT_EQ(parent.Read(), "go\n0 1 100000 100000\ndown\n");
}
