// Tests of the rotor file copy with its extra byte.
#include "driver/GridGenRun.h"

#include <gtest/gtest.h>

#include "ScratchDir.h"

TEST(CopyRotorFile, CopyHasTheLastByteTwice) {
    ScratchDir dir;
    const std::string source = std::string("ROT 1\r\n\0\xff", 9) + "end\n";
    WriteWholeFile(dir / "rotor", source);
    CopyRotorFile(dir / "rotor", dir / "copy");
    EXPECT_EQ(ReadWholeFile(dir / "copy"), source + "\n");
    EXPECT_EQ(ReadWholeFile(dir / "copy").size(), 14u);

    // An existing copy is truncated; a one-byte source gives two bytes.
    WriteWholeFile(dir / "one", "x");
    CopyRotorFile(dir / "one", dir / "copy");
    EXPECT_EQ(ReadWholeFile(dir / "copy"), "xx");
}

TEST(CopyRotorFile, EmptyOrUnreadableSources) {
    ScratchDir dir;
    WriteWholeFile(dir / "empty", "");
    CopyRotorFile(dir / "empty", dir / "copy");
    EXPECT_EQ(ReadWholeFile(dir / "copy"), std::string(1, '\0'));

    WriteWholeFile(dir / "copy", "stale");
    CopyRotorFile(dir / "missing", dir / "copy");
    EXPECT_TRUE(PathExists(dir / "copy"));
    EXPECT_EQ(ReadWholeFile(dir / "copy"), "");

    CopyRotorFile(dir / "empty", dir / "no-such-dir/copy");
    EXPECT_FALSE(PathExists(dir / "no-such-dir"));
}
