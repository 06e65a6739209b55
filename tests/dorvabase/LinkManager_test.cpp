// Tests of the link manager with real peer processes, each in a region of the test's own.
#include "LinkManager.h"

#include <gtest/gtest.h>
#include <pwd.h>

#include <ctime>

#include "LinkPeer.h"
#include "RunGridGen.h"

namespace fs = boost::filesystem;

// Each row is one process in a fresh region: "create" prints its result and the link number.
TEST(LinkManager, ResultCodesOfOneProcess) {
    std::string hundredAndOne = "start";
    for (int i = 0; i < 101; ++i) hundredAndOne += " create 0 0";
    std::string hundredAndOneOut = "1\n";
    for (int i = 0; i < 100; ++i) hundredAndOneOut += "1 " + std::to_string(i) + "\n";
    hundredAndOneOut += "12 99\n";  // the number out is left alone

    const struct {
        std::string commands, expected;
    } cases[] = {
        {"start start", "1\n2\n"},
        {"start shutdown start", "1\ndown\n2\n"},
        {"create 16 0 attach 0 16 get 0 16 detach 0", "8 0\n8\n8\n8\n"},
        // Data and key limits: 4096 bytes and 499 characters fit.
        {"start create 4096 499 create 4097 0 create 0 500 create 0 0", "1\n1 0\n9 0\n10 0\n1 1\n"},
        {"start create 16 3 attach 0 16 key 3 16 key 4 16 attach 100 16 attach 5 16 get 0 8 get 0 "
         "16 get 5 16 detach 5 detach 100 detach 0 get 0 16",
         "1\n1 0\n14\n14 0\n11 0\n13\n16\n17\n1\n15\n15\n13\n1\n15\n"},
        {hundredAndOne, hundredAndOneOut},
        // A parent's control record starts as zeros.
        {"start conparent report", "1\n1 0\n0 0 0 0\n"},
    };
    for (const auto& c : cases) {
        TestRegion region("codes" + std::to_string(&c - cases));
        EXPECT_EQ(RunPeer(region.strName, c.commands), c.expected) << c.commands.substr(0, 60);
    }
}

// The owner's link holds 8 bytes: a control link (16 bytes) can't attach to it, nor to a free one.
TEST(LinkManager, AttachingToAnotherProcesssLink) {
    TestRegion region("attach");
    LinkPeer owner(region.strName, "start create 8 2 wait shutdown");
    ASSERT_EQ(owner.Read(3), "1\n1 0\nwaiting\n");
    EXPECT_EQ(
        RunPeer(region.strName,
                "start conattach 1 conattach 0 attach 0 4097 key 2 8 detach 0 attach 0 8 shutdown"),
        "1\n16 4294967295\n17 4294967295\n9\n1 0\n1\n1\ndown\n");
    owner.Go();
    EXPECT_EQ(owner.Read(), "go\ndown\n");
    // Both detached: the block is free again.
    EXPECT_EQ(RunPeer(region.strName, "start key 2 8"), "1\n11 0\n");
}

// The layout is a contract with the front end: slot stamps, then 4,616-byte blocks from 400.
TEST(LinkManager, RegionLayoutAndPermissions) {
    TestRegion region("layout");
    LinkPeer peer(region.strName, "start create 16 5 create 8 2 wait shutdown");
    ASSERT_EQ(peer.Read(4), "1\n1 0\n1 1\nwaiting\n");
    const std::string shm = "/dev/shm/" + region.strName, sem = "/dev/shm/sem." + region.strName;
    EXPECT_EQ(fs::status(shm).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(sem).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::file_size(shm), 462000u);
    RegionView view(region.strName);
    EXPECT_NEAR(static_cast<double>(*view.Slot(0)), static_cast<double>(std::time(nullptr)), 2.0);
    EXPECT_EQ(*view.Slot(1), 0);
    // Each block: attach count 1, then the size as two little-endian bytes, then the key at 16.
    const std::string heads[] = {std::string("\1\20\0kkkkk", 8), std::string("\1\10\0kk", 5)};
    for (int id : {0, 1}) {
        const char* block = reinterpret_cast<const char*>(view.Block(id));
        EXPECT_EQ(std::string(block, 3) + (block + 16), heads[id]) << "block " << id;
    }
    peer.Go();
    EXPECT_EQ(peer.Read(), "go\ndown\n");
    // Shutdown frees the slot and the blocks, and leaves both objects in place.
    EXPECT_EQ(*view.Slot(0), 0);
    EXPECT_EQ(view.Block(0)[0] + view.Block(1)[0], 0);
    EXPECT_TRUE(PathExists(shm) && PathExists(sem));
}

// A process killed before Shutdown leaves its slot and link. Stamps older than 30 s, or
// more than 0.1 s in the future, are dead: the next Startup then clears the whole region.
TEST(LinkManager, StartupClearsARegionOfStaleStamps) {
    // The stamps shifted by seconds, and the newcomer's startup, attach and count.
    const std::pair<std::int64_t, const char*> cases[] = {
        {-100, "1\n16\n1\n"}, {100, "1\n16\n1\n"}, {0, "1\n1\n2\n"}};
    for (const auto& [shift, expected] : cases) {
        TestRegion region("stale" + std::to_string(shift + 100));
        LinkPeer crashed(region.strName, "start create 16 5 wait");
        ASSERT_EQ(crashed.Read(3), "1\n1 0\nwaiting\n");
        crashed.Kill();
        if (shift != 0) {
            RegionView view(region.strName);
            *view.Slot(0) += shift;
            *reinterpret_cast<std::int64_t*>(view.Block(0) + 8) += shift;  // the link's stamp
        }
        EXPECT_EQ(RunPeer(region.strName, "start attach 0 16 count"), expected) << shift;
    }
}

// The name holds the effective user's name, so two users never share a region.
TEST(LinkManager, RegionNameFollowsTheEffectiveUser) {
    const passwd* me = getpwuid(geteuid());
    ASSERT_NE(me, nullptr);
    EXPECT_EQ(RunPeer("-", "name"), "DorvaLM1_" + std::string(me->pw_name) + "\n");

    if (geteuid() != 0 || getpwnam("nobody") == nullptr) GTEST_SKIP() << "needs root and 'nobody'";
    // 'nobody' may not reach the build folder (a clone in a home folder or under mktemp -d): the
    // peer runs from a copy in a folder every user can enter.
    ScratchDir staged;
    const std::string peer = staged / "link_peer";
    fs::copy_file(KAVEX_LINK_PEER, peer);
    fs::permissions(staged.Path(), fs::owner_all | fs::group_read | fs::group_exe |
                                       fs::others_read | fs::others_exe);
    const std::string command = "runuser -u nobody -- " + peer + " - name";
    EXPECT_EQ(RunProgram("/bin/sh", {"-c", command}, "/").strStdout, "DorvaLM1_nobody\n");
}
