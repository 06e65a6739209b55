// The driver's checked output files: nothing under the final name until Close, and a replacement
// across filesystems that never shows a part of the new file.
#include "driver/OutFile.h"

#include <gtest/gtest.h>

#include "ScratchDir.h"

TEST(OutFile, UnclosedFileLeavesTheFileOfBefore) {
    ScratchDir dir;
    WriteWholeFile(dir / "a.dat", "before\n");
    {
        OutFile out(dir / "a.dat");
        out << "after\n" << std::flush;
        EXPECT_EQ(ReadWholeFile(dir / "a.dat"), "before\n");
    }
    EXPECT_EQ(ReadWholeFile(dir / "a.dat"), "before\n");
    EXPECT_FALSE(PathExists(dir / "a.dat.part"));
    OutFile out(dir / "a.dat");
    out << "after\n";
    out.Close();
    EXPECT_EQ(ReadWholeFile(dir / "a.dat"), "after\n");
}

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
