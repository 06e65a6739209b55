// The slow test of the link manager: a peer killed with SIGKILL loses its slot to the others'
// consistency checks, and a newcomer then gets it.
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <thread>

#include "LinkPeer.h"

TEST(LinkManagerCrash, KilledPeersSlotIsClearedWithinFortySeconds) {
    TestRegion region("crash");
    std::vector<std::unique_ptr<LinkPeer>> peers;
    for (int i = 0; i < 50; ++i)
        peers.emplace_back(new LinkPeer(region.strName, "start wait shutdown"));
    for (auto& peer : peers) ASSERT_EQ(peer->Read(1), "1\n");
    peers[17]->Kill();
    const auto killed = std::chrono::steady_clock::now();
    // Its stamp is still healthy: the region is full.
    EXPECT_EQ(RunPeer(region.strName, "start"), "7\n");

    // Watch the table, as the front end could, until a peer's check has freed the slot.
    RegionView view(region.strName);
    int held = 50;
    double seconds = 0.0;
    while (held == 50 && seconds < 60.0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
        held = 0;
        for (int slot = 0; slot < 50; ++slot)
            held += *static_cast<volatile std::int64_t*>(view.Slot(slot)) != 0;
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - killed).count();
    }
    EXPECT_EQ(held, 49);
    // At most 30 s of a healthy stamp plus the 10 s between two checks, and a second of slack.
    EXPECT_LE(seconds, 41.0);
    EXPECT_EQ(RunPeer(region.strName, "start shutdown"), "1\ndown\n");
    // Exactly one peer did the clean-up, and said so.
    peers.erase(peers.begin() + 17);
    for (auto& peer : peers) peer->Go();
    int warnings = 0;
    const std::string warning =
        "WARNING:  A communicating process seems to have crashed.  Cleaning up. (";
    for (auto& peer : peers) {
        std::string output = peer->Read();
        const size_t at = output.find(warning);
        if (at != std::string::npos) output.erase(at, output.find('\n', at) + 1 - at), ++warnings;
        EXPECT_EQ(output, "waiting\ngo\ndown\n");
    }
    EXPECT_EQ(warnings, 1);
}
