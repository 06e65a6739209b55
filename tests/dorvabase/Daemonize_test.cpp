// Tests of the log redirection, each run in a child process so that the test's own streams stay.
#include "Daemonize.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <iostream>

#include "ScratchDir.h"

namespace {

// Runs body in a child process; returns its exit status.
int InChild(const std::function<int()>& body) {
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) _exit(body());
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

TEST(Daemonize, TruncatesOrAppendsBothLogs) {
    ScratchDir dir;
    WriteWholeFile(dir / "out", "old out\n");
    WriteWholeFile(dir / "err", "old err\n");
    EXPECT_EQ(InChild([&] {
                  if (!Dorva::Daemonize(dir / "out", dir / "err", false, false)) return 1;
                  std::cout << "cout line" << std::endl;
                  std::printf("printf line\n");
                  std::cerr << "cerr line" << std::endl;
                  return 0;
              }),
              0);
    EXPECT_EQ(ReadWholeFile(dir / "out"), "cout line\nprintf line\n");
    EXPECT_EQ(ReadWholeFile(dir / "err"), "cerr line\n");

    EXPECT_EQ(InChild([&] {
                  if (!Dorva::Daemonize(dir / "out", dir / "err", true, false)) return 1;
                  std::cout << "more" << std::endl;
                  std::cerr << "new" << std::endl;
                  return 0;
              }),
              0);
    EXPECT_EQ(ReadWholeFile(dir / "out"), "cout line\nprintf line\nmore\n");
    EXPECT_EQ(ReadWholeFile(dir / "err"), "new\n");
}

TEST(Daemonize, MissingDirectoryKeepsTheStreamsOpen) {
    ScratchDir dir;
    EXPECT_EQ(InChild([&] {
                  // Give the child a known stdout and stderr to find the later writes in.
                  if (!std::freopen((dir / "before.out").c_str(), "w", stdout)) return 2;
                  if (!std::freopen((dir / "before.err").c_str(), "w", stderr)) return 2;
                  if (Dorva::Daemonize(dir / "missing/out", dir / "err", false, false)) return 1;
                  if (Dorva::Daemonize(dir / "out", dir / "missing/err", false, false)) return 1;
                  std::cout << "still out" << std::endl;
                  std::cerr << "still err" << std::endl;
                  return 0;
              }),
              0);
    EXPECT_FALSE(PathExists(dir / "err"));
    // The second call redirected stdout before its stderr log failed.
    EXPECT_EQ(ReadWholeFile(dir / "out"), "still out\n");
    EXPECT_EQ(ReadWholeFile(dir / "before.err"), "still err\n");
    EXPECT_EQ(ReadWholeFile(dir / "before.out"), "");
}
