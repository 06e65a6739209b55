// Tests of the body translation: a translation file that doesn't hold three usable numbers.
#include "driver/translate.h"

#include <gtest/gtest.h>

#include <fstream>
#include <utility>

#include "ScratchDir.h"

TEST(TranslateToGlobal, TranslationThatIsNoUsableNumberEndsTheRun) {
    const std::pair<const char*, const char*> rows[] = {
        {"0.5 nan 1\n", "'Lcl2Gbl.dat', Y translation = nan: not a number"},
        {"0.5 2e15 1\n", "'Lcl2Gbl.dat', Y translation = 1.99999997398221e\\+15: beyond"},
        {"0.5 0.25\n", "'Lcl2Gbl.dat', Z translation = nan: not a number"},
    };
    for (const auto& [text, message] : rows) {
        ScratchDir dir;
        std::ofstream(dir / "Lcl2Gbl.dat") << text;
        std::vector<_BodyStruct> bodies;
        const DriverContext run(dir.Path());
        EXPECT_EXIT(TranslateToGlobal(run, bodies, {1, 1, 1}), testing::ExitedWithCode(1), message)
            << text;
    }
}
