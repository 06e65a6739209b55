// Tests of path normalisation and the initialised state of FilePath.
#include "FilePath.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "ScratchDir.h"

using Dorva::FilePath;

TEST(FilePath, NormalisesSlashesDotsAndBackslashes) {
    EXPECT_EQ(FilePath("./a/b").Get(), "a/b");
    EXPECT_EQ(FilePath("a/./b").Get(), "a/b");
    EXPECT_EQ(FilePath("/tmp/run//temp.Grid").Get(), "/tmp/run/temp.Grid");
    EXPECT_EQ(FilePath("a////b/././/c").Get(), "a/b/c");
    EXPECT_EQ(FilePath("x/.//.//y").Get(), "x/y");
    // Only a leading "./" is dropped; the rest is collapsed: ".//n" becomes "/n".
    EXPECT_EQ(FilePath(".//1-x.cut").Get(), "/1-x.cut");
    EXPECT_EQ(FilePath("a/./").Get(), "a/");
    // A backslash becomes "/" unless it escapes a blank, "(", ")" or "&".
    EXPECT_EQ(FilePath("C:\\run\\\\dir\\p.Grid").Get(), "C:/run/dir/p.Grid");
    EXPECT_EQ(FilePath("my\\ dir\\(1\\)\\&x\\").Get(), "my\\ dir\\(1\\)\\&x/");
}

TEST(FilePath, FirstTildeBecomesHome) {
    const char* saved = getenv("HOME");
    const std::string savedHome = saved ? saved : "";
    setenv("HOME", "/home/user", 1);
    EXPECT_EQ(FilePath("~/runs/~x").Get(), "/home/user/runs/~x");
    unsetenv("HOME");
    EXPECT_EQ(FilePath("~/runs").Get(), "~/runs");
    if (saved) setenv("HOME", savedHome.c_str(), 1);
}

TEST(FilePath, InitialisedStateAndExistence) {
    FilePath none;
    EXPECT_FALSE(none.IsInitialized());
    EXPECT_FALSE(none.Exists());
    EXPECT_EQ(none.Get(), "");
    FilePath empty("");
    EXPECT_TRUE(empty.IsInitialized());
    EXPECT_FALSE(empty.Exists());

    ScratchDir dir;
    WriteWholeFile(dir / "f", "x");
    EXPECT_TRUE(FilePath(dir.Path() + "//f").Exists());
    EXPECT_FALSE(FilePath(dir.Path() + "//g").Exists());
}
