// Tests of path normalisation and the initialised state of FilePath.
#include "FilePath.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include "ScratchDir.h"

using Dorva::FilePath;

TEST(FilePath, NormalisesSlashesDotsBackslashesAndTheHome) {
    setenv("HOME", "/home/user", 1);
    const std::pair<const char*, const char*> rows[] = {
        {"./a/b", "a/b"},
        {"a////b/././/c", "a/b/c"},
        // Only a leading "./" is dropped; the rest is collapsed: ".//n" becomes "/n".
        {".//1-x.cut", "/1-x.cut"},
        {"a/./", "a/"},
        // A backslash becomes "/" unless it escapes a blank, "(", ")" or "&".
        {"C:\\run\\\\dir\\p.Grid", "C:/run/dir/p.Grid"},
        {"my\\ dir\\(1\\)\\&x\\", "my\\ dir\\(1\\)\\&x/"},
        {"~/runs/~x", "/home/user/runs/~x"},  // the first tilde only
    };
    for (const auto& [in, out] : rows) EXPECT_EQ(FilePath(in).Get(), out) << in;
    unsetenv("HOME");
    EXPECT_EQ(FilePath("~/runs").Get(), "~/runs");
}

TEST(FilePath, InitialisedStateAndExistence) {
    EXPECT_FALSE(FilePath().IsInitialized());
    EXPECT_TRUE(FilePath("").IsInitialized());
    EXPECT_FALSE(FilePath("").Exists());
    ScratchDir dir;
    WriteWholeFile(dir / "f", "x");
    EXPECT_TRUE(FilePath(dir.Path() + "//f").Exists());
    EXPECT_FALSE(FilePath(dir.Path() + "//g").Exists());
}
