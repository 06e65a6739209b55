// Tests of the program search along PATH.
#include "GetExecutablePath.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "ScratchDir.h"

using Dorva::GetExecutablePath;

TEST(GetExecutablePath, SearchesPathInOrderForExecutableFilesOrTakesANameWithSlash) {
    const std::string saved = getenv("PATH") ? getenv("PATH") : "";
    ScratchDir first, second;
    // Skipped in the first directory: "plain" is not executable, "tool" is a directory.
    mkdir((first / "tool").c_str(), 0755);
    for (const std::string& path :
         {first / "plain", second / "plain", second / "tool", first / "both", second / "both"}) {
        WriteWholeFile(path, "#!/bin/sh\n");
        chmod(path.c_str(), path == first / "plain" ? 0644 : 0755);
    }
    setenv("PATH", (first.Path() + ":" + second.Path()).c_str(), 1);
    EXPECT_EQ(GetExecutablePath("plain").Get(), second / "plain");
    EXPECT_EQ(GetExecutablePath("tool").Get(), second / "tool");
    EXPECT_EQ(GetExecutablePath("both").Get(), first / "both");
    EXPECT_FALSE(GetExecutablePath("cuts2plot3d").IsInitialized());
    // With a slash the name is the path, searched nowhere else.
    EXPECT_EQ(GetExecutablePath(second / "both").Get(), second / "both");
    EXPECT_FALSE(GetExecutablePath(first / "plain").IsInitialized());
    unsetenv("PATH");
    EXPECT_FALSE(GetExecutablePath("sh").IsInitialized());
    setenv("PATH", saved.c_str(), 1);
}
