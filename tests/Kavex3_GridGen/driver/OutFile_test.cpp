// The driver's checked output files: a replacement across filesystems that never shows a part of
// the new file (the write-failure runs show that nothing stands under the final name before Close),
// and the intersector's dumps.
#include "driver/OutFile.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include "driver/DriverContext.h"

#include "ScratchDir.h"

// /dev/shm is a filesystem of its own, where a rename from /tmp can't reach.
TEST(OutFile, ReplaceFileAcrossFilesystems) {
    ScratchDir dir;
    const std::string from = "/dev/shm/kavex_outfile_test_" + std::to_string(getpid());
    WriteWholeFile(from, "new\n");
    WriteWholeFile(dir / "S.dat", "old\n");
    ReplaceFile(from, dir / "S.dat");
    EXPECT_EQ(ReadWholeFile(dir / "S.dat"), "new\n");
    EXPECT_FALSE(PathExists(from));
    EXPECT_FALSE(PathExists(dir / "S.dat.part"));
}

// A run's context hands the intersector's debug dumps to the checked files: a dump that meets a
// full disk ends the run naming it, and leaves nothing under its name.
TEST(OutFileDeathTest, DebugDumpCutShortEndsTheRunNamingIt) {
    ScratchDir dir;
    DriverContext run(dir.Path());
    const auto dump = [&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {4096, 4096};  // room for the message, not for the dump
        setrlimit(RLIMIT_FSIZE, &limit);
        run.m_intersect.m_fnWriteDump(dir / "trisglobal.dat",
                                      [](std::ostream& out) { out << std::string(8192, 'x'); });
    };
    EXPECT_EXIT(dump(), testing::ExitedWithCode(1), "writing '.*/trisglobal.dat': File too large");
    EXPECT_FALSE(PathExists(dir / "trisglobal.dat"));
    EXPECT_FALSE(PathExists(dir / "trisglobal.dat.part"));
}
