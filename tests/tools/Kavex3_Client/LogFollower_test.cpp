// Tests of following a log that another process writes, truncates and appends to.
#include "LogFollower.h"

#include <gtest/gtest.h>

#include "ScratchDir.h"

using Lines = std::vector<std::string>;

TEST(LogFollower, CompleteLinesOnlyAndAFreshStartAfterTruncation) {
    ScratchDir dir;
    LogFollower follower(dir / "run.out");
    EXPECT_EQ(follower.ReadNewLines(), Lines{});  // not there yet
    WriteWholeFile(dir / "run.out", "banner\n\nstage one..");
    EXPECT_EQ(follower.ReadNewLines(), (Lines{"banner", ""}));
    std::ofstream(dir / "run.out", std::ios::app) << ".\nstage two...\n";
    EXPECT_EQ(follower.ReadNewLines(), (Lines{"stage one...", "stage two..."}));
    // The worker truncates its log at start: an old, longer log gives way to the new one.
    WriteWholeFile(dir / "run.out", "new\nlast");
    EXPECT_EQ(follower.ReadNewLines(), Lines{"new"});
    EXPECT_EQ(follower.ReadRest(), Lines{"last"});
    EXPECT_EQ(follower.ReadRest(), Lines{});
}
