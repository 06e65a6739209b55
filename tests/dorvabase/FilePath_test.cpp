// Tests of path normalisation.
#include "FilePath.h"

#include <gtest/gtest.h>
#include <stdlib.h>

using Dorva::FilePath;

TEST(FilePath, NormalisesSlashesDotsBackslashesAndTheHome) {
    setenv("HOME", "/home/user", 1);
    // Only a leading "./" is dropped, the rest collapsed: ".//n" becomes "/n". A backslash becomes
    // "/" unless it escapes a blank, "(", ")" or "&". Only the first tilde is the home.
    const std::pair<const char*, const char*> rows[] = {
        {"./a/b", "a/b"},
        {"a////b/././/c", "a/b/c"},
        {".//1-x.cut", "/1-x.cut"},
        {"a/./", "a/"},
        {"C:\\run\\\\dir\\p.Grid", "C:/run/dir/p.Grid"},
        {"my\\ dir\\(1\\)\\&x\\", "my\\ dir\\(1\\)\\&x/"},
        {"~/runs/~x", "/home/user/runs/~x"}};
    for (const auto& [in, out] : rows) EXPECT_EQ(FilePath(in).Get(), out) << in;
    unsetenv("HOME");
    EXPECT_EQ(FilePath("~/runs").Get(), "~/runs");
    EXPECT_TRUE(FilePath("").IsInitialized());  // an empty path is given, unlike no path
}
