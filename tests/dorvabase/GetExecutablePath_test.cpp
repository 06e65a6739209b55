// Tests of the program search along PATH.
#include "GetExecutablePath.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include "ScratchDir.h"

using Dorva::GetExecutablePath;

namespace {

void MakeFile(const std::string& path, mode_t mode) {
    WriteWholeFile(path, "#!/bin/sh\n");
    chmod(path.c_str(), mode);
}

// Sets PATH for the length of a test.
class PathOverride {
  public:
    explicit PathOverride(const std::string& value)
        : m_saved(getenv("PATH") ? getenv("PATH") : "") {
        setenv("PATH", value.c_str(), 1);
    }
    ~PathOverride() { setenv("PATH", m_saved.c_str(), 1); }

  private:
    std::string m_saved;
};

}  // namespace

TEST(GetExecutablePath, SearchesPathInOrderForExecutableFiles) {
    ScratchDir first, second;
    MakeFile(first / "plain", 0644);  // not executable: skipped
    MakeFile(second / "plain", 0755);
    mkdir((first / "tool").c_str(), 0755);  // a directory: skipped
    MakeFile(second / "tool", 0755);
    MakeFile(first / "both", 0755);
    MakeFile(second / "both", 0755);
    PathOverride path(first.Path() + ":" + second.Path());

    EXPECT_EQ(GetExecutablePath("plain").Get(), second / "plain");
    EXPECT_EQ(GetExecutablePath("tool").Get(), second / "tool");
    EXPECT_EQ(GetExecutablePath("both").Get(), first / "both");
    EXPECT_FALSE(GetExecutablePath("cuts2plot3d").IsInitialized());
    EXPECT_FALSE(GetExecutablePath("").IsInitialized());
}

TEST(GetExecutablePath, NameWithSlashIsTakenAsAPath) {
    ScratchDir dir;
    MakeFile(dir / "prog", 0755);
    MakeFile(dir / "data", 0644);
    PathOverride path("/nonexistent-kavex-dir");
    EXPECT_EQ(GetExecutablePath(dir / "prog").Get(), dir / "prog");
    EXPECT_FALSE(GetExecutablePath(dir / "data").IsInitialized());
    EXPECT_FALSE(GetExecutablePath(dir / "missing").IsInitialized());
    unsetenv("PATH");
    EXPECT_FALSE(GetExecutablePath("sh").IsInitialized());
}
