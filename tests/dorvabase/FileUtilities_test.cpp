// Tests of RemovePath and moveFile, including the failures of the calls beneath them.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "BadParameter.h"
#include "RemovePath.h"
#include "ScratchDir.h"
#include "moveFile.h"

using Dorva::moveFile;
using Dorva::RemovePath;

TEST(RemovePath, RemovesFilesAndTreesAndFailsOnlyOnWhatStays) {
    ScratchDir dir;
    WriteWholeFile(dir / "file", "x");
    mkdir((dir / "tree").c_str(), 0755);
    mkdir((dir / "tree/sub").c_str(), 0755);
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
    chmod((dir / "from").c_str(), 0640);
    EXPECT_TRUE(moveFile(dir / "from", dir / "to"));
    EXPECT_FALSE(PathExists(dir / "from"));
    EXPECT_EQ(ReadWholeFile(dir / "to"), "new contents\n");
    struct stat info;
    ASSERT_EQ(stat((dir / "to").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0640u);
    mkdir((dir / "d").c_str(), 0755);
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
