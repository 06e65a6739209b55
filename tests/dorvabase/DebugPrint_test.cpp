// Tests of the debug-level gate and indent of base-library diagnostics.
#include "DebugPrint.h"

#include <gtest/gtest.h>

#include "CommandLine.h"

TEST(PrintErrorDebugHelper, PrintsUpToTheDebugLevelAndIndentsDeepMessages) {
    Dorva::strDebugIndentLevel = "  > ";
    for (const bool withDebug : {true, false}) {
        // Without "debug" the level is 0: only level-0 messages appear.
        std::string words[] = {"no-such-program-kavex", withDebug ? "-debug" : "-x", "5"};
        char* argv[] = {words[0].data(), words[1].data(), words[2].data()};
        Dorva::CommandLine::SetParameters(3, argv);
        testing::internal::CaptureStderr();
        for (int level : {0, 3, 4, 5, 6})
            Dorva::PrintErrorDebugHelper(level, std::to_string(level));
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  withDebug ? "0\n3\n  > 4\n  > 5\n" : "0\n");
    }
    Dorva::strDebugIndentLevel.clear();
}
