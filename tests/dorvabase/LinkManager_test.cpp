// Tests of the link manager with real peer processes, each in a region of the test's own.
#include "LinkManager.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>

#include <cstring>
#include <ctime>
#include <memory>

#include "LinkPeer.h"

using Dorva::LinkManager;

namespace {

// The region of a test, mapped into the test process to look at it as the front end would.
class RegionView {
  public:
    explicit RegionView(const std::string& name) {
        const int fd = shm_open(("/" + name).c_str(), O_RDWR, 0);
        if (fd < 0) throw std::runtime_error("no region " + name);
        void* base = mmap(nullptr, 462000, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
        close(fd);
        if (base == MAP_FAILED) throw std::runtime_error("mmap failed");
        m_base = static_cast<unsigned char*>(base);
    }
    ~RegionView() { munmap(m_base, 462000); }
    std::int64_t* Slot(int slot) { return reinterpret_cast<std::int64_t*>(m_base) + slot; }
    unsigned char* Block(int id) { return m_base + 400 + id * 4616; }

  private:
    unsigned char* m_base;
};

mode_t Mode(const std::string& path) {
    struct stat status;
    return stat(path.c_str(), &status) == 0 ? (status.st_mode & 07777) : 0;
}

}  // namespace

TEST(LinkManager, ResultTextsKeepTheirExactWording) {
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::SUCCESS), "Success");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::ALREADY_STARTED),
              "Manager has already  been started");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::SHARED_MEMORY_OPEN_FAILED),
              "Couldn't open shared memory");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::UNALLOCATED_LINK_ID),
              "Unallocated link ID");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::DATA_CHANGED), "Data has changed");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::TAKE_CONTROL_FAILED),
              "Failed to take control of shared memory");
    EXPECT_EQ(LinkManager::GetResultString(static_cast<LinkManager::Result>(0)), "Unknown");
    EXPECT_EQ(LinkManager::GetResultString(static_cast<LinkManager::Result>(21)), "Unknown");
}

// Each row is one process in a fresh region: "create" prints its result and the link number.
TEST(LinkManager, ResultCodesOfOneProcess) {
    std::vector<std::string> hundredAndOne = {"start"};
    for (int i = 0; i < 101; ++i) hundredAndOne.insert(hundredAndOne.end(), {"create", "0", "0"});
    std::string hundredAndOneOut = "1\n";
    for (int i = 0; i < 100; ++i) hundredAndOneOut += "1 " + std::to_string(i) + "\n";
    hundredAndOneOut += "12 0\n";

    const struct {
        std::vector<std::string> commands;
        std::string expected;
    } cases[] = {
        {{"start", "start"}, "1\n2\n"},
        {{"start", "shutdown", "start"}, "1\ndown\n2\n"},
        {{"create", "16", "0", "attach", "0", "16", "get", "0", "16", "detach", "0"},
         "8 0\n8\n8\n8\n"},
        // Data and key limits: 4096 bytes and 499 characters fit.
        {{"start", "create", "4096", "499", "create", "4097", "0", "create", "0", "500", "create",
          "0", "0"},
         "1\n1 0\n9 0\n10 0\n1 1\n"},
        {{"start",  "create", "16",     "3",      "attach", "0",   "16",     "key", "3",      "16",
          "key",    "4",      "16",     "attach", "100",    "16",  "attach", "5",   "16",     "get",
          "0",      "8",      "get",    "0",      "16",     "get", "5",      "16",  "detach", "5",
          "detach", "100",    "detach", "0",      "get",    "0",   "16"},
         "1\n1 0\n14\n14 0\n11 0\n13\n16\n17\n1\n15\n15\n13\n1\n15\n"},
        {hundredAndOne, hundredAndOneOut},
    };
    int row = 0;
    for (const auto& c : cases) {
        TestRegion region("codes" + std::to_string(row++));
        EXPECT_EQ(RunPeer(region.Name(), c.commands), c.expected) << "row " << row;
    }
}

TEST(LinkManager, AttachingToAnotherProcesssLink) {
    TestRegion region("attach");
    LinkPeer owner(region.Name(), {"start", "create", "16", "2", "wait", "shutdown"});
    ASSERT_EQ(owner.ReadLine(), "1");
    ASSERT_EQ(owner.ReadLine(), "1 0");
    ASSERT_EQ(owner.ReadLine(), "waiting");
    EXPECT_EQ(RunPeer(region.Name(), {"start", "attach", "0", "8", "attach", "0", "4097", "key",
                                      "2", "16", "detach", "0", "attach", "0", "16", "shutdown"}),
              "1\n17\n9\n1 0\n1\n1\ndown\n");
    owner.Go();
    EXPECT_EQ(owner.ReadAll(), "go\ndown\n");
    // Both detached: the block is free again.
    EXPECT_EQ(RunPeer(region.Name(), {"start", "key", "2", "16"}), "1\n11 0\n");
}

// The layout is a contract with the front end: slot stamps, then 4,616-byte blocks from 400.
TEST(LinkManager, RegionLayoutAndPermissions) {
    TestRegion region("layout");
    LinkPeer peer(region.Name(), {"start", "create", "16", "5", "wait", "shutdown"});
    ASSERT_EQ(peer.ReadLine(), "1");
    ASSERT_EQ(peer.ReadLine(), "1 0");
    ASSERT_EQ(peer.ReadLine(), "waiting");
    const std::string shm = "/dev/shm/" + region.Name(), sem = "/dev/shm/sem." + region.Name();
    EXPECT_EQ(Mode(shm), 0600u);
    EXPECT_EQ(Mode(sem), 0600u);
    struct stat status;
    ASSERT_EQ(stat(shm.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 462000);
    {
        RegionView view(region.Name());
        EXPECT_NEAR(static_cast<double>(*view.Slot(0)), static_cast<double>(std::time(nullptr)),
                    2.0);
        EXPECT_EQ(*view.Slot(1), 0);
        const unsigned char* block = view.Block(0);
        EXPECT_EQ(block[0], 1);
        EXPECT_EQ(block[1], 16);
        EXPECT_EQ(block[2], 0);
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(block + 16)), "kkkkk");
        EXPECT_EQ(view.Block(1)[0], 0);
    }
    peer.Go();
    EXPECT_EQ(peer.ReadAll(), "go\ndown\n");
    // Shutdown frees the slot and the block, and leaves both objects in place.
    RegionView view(region.Name());
    EXPECT_EQ(*view.Slot(0), 0);
    EXPECT_EQ(view.Block(0)[0], 0);
    EXPECT_TRUE(Mode(sem) != 0);
}

// A process that ended without Shutdown leaves its slot and link. Stamps older than 30 s, or
// more than 0.1 s in the future, are dead: the next Startup then clears the whole region.
TEST(LinkManager, StartupClearsARegionOfStaleStamps) {
    const struct {
        std::int64_t shift;
        const char* attach;
    } cases[] = {{-100, "16"}, {100, "16"}, {0, "1"}};
    for (const auto& c : cases) {
        TestRegion region("stale" + std::to_string(c.shift + 100));
        ASSERT_EQ(RunPeer(region.Name(), {"start", "create", "16", "5", "abandon"}),
                  "1\n1 0\nabandoned\n");
        if (c.shift != 0) {
            RegionView view(region.Name());
            *view.Slot(0) += c.shift;
            std::int64_t stamp;
            std::memcpy(&stamp, view.Block(0) + 8, 8);
            stamp += c.shift;
            std::memcpy(view.Block(0) + 8, &stamp, 8);
        }
        EXPECT_EQ(RunPeer(region.Name(), {"start", "attach", "0", "16", "count"}),
                  "1\n" + std::string(c.attach) + "\n" + (c.shift != 0 ? "1" : "2") + "\n")
            << c.shift;
    }
}

TEST(LinkManager, FiftyManagersAndTheFiftyFirstIsRefused) {
    TestRegion region("fifty");
    std::vector<std::unique_ptr<LinkPeer>> peers;
    for (int i = 0; i < 50; ++i) {
        peers.emplace_back(new LinkPeer(region.Name(), {"start", "wait", "shutdown"}));
    }
    for (auto& peer : peers) ASSERT_EQ(peer->ReadLine(), "1");
    EXPECT_EQ(RunPeer(region.Name(), {"start"}), "7\n");
    for (auto& peer : peers) peer->Go();
    for (auto& peer : peers) EXPECT_EQ(peer->ReadAll(), "waiting\ngo\ndown\n");
    EXPECT_EQ(RunPeer(region.Name(), {"start", "count"}), "1\n1\n");
}

// The name holds the effective user's name, so two users never share a region.
TEST(LinkManager, RegionNameFollowsTheEffectiveUser) {
    const passwd* me = getpwuid(geteuid());
    ASSERT_NE(me, nullptr);
    EXPECT_EQ(Dorva::GetUsername(), me->pw_name);
    EXPECT_EQ(RunPeer("-", {"name"}), "DorvaLM1_" + std::string(me->pw_name) + "\n");

    const passwd* other = getpwnam("nobody");
    if (geteuid() != 0 || other == nullptr) GTEST_SKIP() << "needs root and a user 'nobody'";
    const uid_t otherUid = other->pw_uid;
    const gid_t otherGid = other->pw_gid;
    int out[2];
    ASSERT_EQ(pipe(out), 0);
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(out[1], 1);
        if (setgid(otherGid) != 0 || setuid(otherUid) != 0) _exit(3);
        execl(KAVEX_LINK_PEER, KAVEX_LINK_PEER, "-", "name", static_cast<char*>(nullptr));
        _exit(127);
    }
    close(out[1]);
    char text[200] = {};
    const ssize_t n = read(out[0], text, sizeof text - 1);
    close(out[0]);
    waitpid(pid, nullptr, 0);
    EXPECT_EQ(std::string(text, n > 0 ? n : 0), "DorvaLM1_nobody\n");
}
