// Tests of the debug-level gate and indent of base-library diagnostics.
#include "DebugPrint.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CommandLine.h"

namespace {

void ParseArguments(std::vector<std::string> words) {
    static std::vector<std::string> storage;
    static std::vector<char*> argv;
    storage = std::move(words);
    storage.insert(storage.begin(), "no-such-program-kavex");
    argv.clear();
    for (std::string& word : storage) argv.push_back(word.data());
    Dorva::CommandLine::SetParameters(static_cast<int>(argv.size()), argv.data());
}

}  // namespace

TEST(PrintErrorDebugHelper, PrintsUpToTheDebugLevelAndIndentsDeepMessages) {
    Dorva::strDebugIndentLevel = "  > ";
    ParseArguments({"-debug", "5"});
    testing::internal::CaptureStderr();
    Dorva::PrintErrorDebugHelper(3, "three");
    Dorva::PrintErrorDebugHelper(4, "four");
    Dorva::PrintErrorDebugHelper(5, "five");
    Dorva::PrintErrorDebugHelper(6, "six");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "three\n  > four\n  > five\n");

    // Without "debug" the level is 0: only level-0 messages appear.
    ParseArguments({"-x", "1"});
    testing::internal::CaptureStderr();
    Dorva::PrintErrorDebugHelper(1, "one");
    Dorva::PrintErrorDebugHelper(0, "zero");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "zero\n");
    Dorva::strDebugIndentLevel.clear();
}
