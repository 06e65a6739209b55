// Tests of RemovePath and moveFile, including the failures of the calls beneath them.
#include <gtest/gtest.h>

#include "BadParameter.h"
#include "RemovePath.h"
#include "ScratchDir.h"
#include "moveFile.h"

using Dorva::moveFile;
using Dorva::RemovePath;
namespace fs = boost::filesystem;

TEST(RemovePath, RemovesFilesAndTreesAndFailsOnlyOnWhatStays) {
    ScratchDir dir;
    WriteWholeFile(dir / "file", "x");
    fs::create_directories(dir / "tree/sub");
    WriteWholeFile(dir / "tree/sub/leaf", "y");
    WriteWholeFile(dir / "keep", "z");
    EXPECT_TRUE(RemovePath(dir.Path() + "//file"));
    EXPECT_TRUE(RemovePath(dir / "tree"));
    EXPECT_FALSE(PathExists(dir / "file") || PathExists(dir / "tree"));
    // A missing path is no error; the kernel refuses to unlink its own files, even for root.
    EXPECT_TRUE(RemovePath(dir / "missing"));
    EXPECT_TRUE(RemovePath(dir / "keep/below-a-file"));
    EXPECT_TRUE(PathExists(dir / "keep"));
    EXPECT_FALSE(RemovePath("/proc/version"));
}

TEST(moveFile, ReplacesTheTargetKeepingTheModeOrFailsKeepingTheSource) {
    ScratchDir dir;
    WriteWholeFile(dir / "from", "new contents\n");
    WriteWholeFile(dir / "to", "older and longer contents\n");
    fs::permissions(dir / "from", fs::perms(0640));
    EXPECT_TRUE(moveFile(dir / "from", dir / "to"));
    EXPECT_FALSE(PathExists(dir / "from"));
    EXPECT_EQ(ReadWholeFile(dir / "to"), "new contents\n");
    EXPECT_EQ(fs::status(dir / "to").permissions(), fs::perms(0640));
    fs::create_directory(dir / "d");
    WriteWholeFile(dir / "d/inside", "i");
    EXPECT_TRUE(moveFile(dir / "d", dir / "e"));
    EXPECT_EQ(ReadWholeFile(dir / "e/inside"), "i");

    EXPECT_THROW(moveFile(dir / "missing", dir / "x"), Dorva::BadParameter);
    EXPECT_FALSE(PathExists(dir / "x"));
    // A missing directory, or a target that can't be removed, stops the move before the copy.
    for (const std::string& target : {dir / "no-such-dir/to", std::string("/proc/version")}) {
        EXPECT_FALSE(moveFile(dir / "to", target)) << target;
        EXPECT_EQ(ReadWholeFile(dir / "to"), "new contents\n");
    }
}
