// Tests of the log redirection, run in a child process so that the test's own streams stay.
// Truncated logs and a run directory that can't take them are part of every run of the
// executable (the end-to-end tests); here the append mode.
#include "Daemonize.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "ScratchDir.h"

TEST(Daemonize, AppendsToTheOutputLogAndTruncatesTheErrorLog) {
    ScratchDir dir;
    WriteWholeFile(dir / "out", "old out\n");
    WriteWholeFile(dir / "err", "old err\n");
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        if (!Dorva::Daemonize(dir / "out", dir / "err", true, false)) _exit(1);
        std::cout << "cout line" << std::endl;
        std::printf("printf line\n");
        std::cerr << "new" << std::endl;
        _exit(0);
    }
    int status = -1;
    waitpid(pid, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ReadWholeFile(dir / "out"), "old out\ncout line\nprintf line\n");
    EXPECT_EQ(ReadWholeFile(dir / "err"), "new\n");
}
