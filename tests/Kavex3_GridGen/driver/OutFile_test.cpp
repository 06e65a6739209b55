// The driver's checked output files: a replacement across filesystems that never shows a part of
// the new file (the write-failure runs show that nothing stands under the final name before Close).
#include "driver/OutFile.h"

#include <gtest/gtest.h>

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
