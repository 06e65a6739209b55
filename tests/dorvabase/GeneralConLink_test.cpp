// Tests of the control link between a parent and a worker, in real processes.
#include "GeneralConLink.h"

#include <gtest/gtest.h>

#include "LinkPeer.h"

// Thousands of sets of two fields of one record by two processes at once: compare-and-swap
// loses none, and each field ends at its last value.
TEST(GeneralConLink, TwoProcessesSettingDifferentFieldsLoseNoUpdate) {
    TestRegion region("race");
    LinkPeer parent(region.Name(), {"start", "conparent", "await", "loop", "state", "100000",
                                    "wait", "report", "shutdown"});
    ASSERT_EQ(parent.ReadLine(), "1");
    ASSERT_EQ(parent.ReadLine(), "1 0");
    LinkPeer worker(region.Name(),
                    {"start", "conattach", "0", "flag", "loop", "progress", "100000", "shutdown"});
    EXPECT_EQ(parent.ReadLine(), "flagged");
    EXPECT_EQ(parent.ReadLine(), "ok");
    EXPECT_EQ(worker.ReadAll(), "1\n1 0\n1\nok\ndown\n");
    EXPECT_EQ(parent.ReadLine(), "waiting");
    parent.Go();
    EXPECT_EQ(parent.ReadAll(), "go\n0 1 100000 100000\ndown\n");
}

// The parent's record starts as zeros; a worker can't attach to a free block or to a link of
// another size, and its link object then holds no link.
TEST(GeneralConLink, ParentRecordAndAttachFailures) {
    TestRegion region("attach");
    EXPECT_EQ(RunPeer(region.Name(), {"start", "conparent", "report", "shutdown"}),
              "1\n1 0\n0 0 0 0\ndown\n");
    LinkPeer other(region.Name(), {"start", "create", "8", "0", "wait", "shutdown"});
    ASSERT_EQ(other.ReadLine(), "1");
    ASSERT_EQ(other.ReadLine(), "1 0");
    EXPECT_EQ(RunPeer(region.Name(), {"start", "conattach", "1", "conattach", "0", "shutdown"}),
              "1\n16 4294967295\n17 4294967295\ndown\n");
    other.Go();
    EXPECT_EQ(other.ReadAll(), "waiting\ngo\ndown\n");
}
