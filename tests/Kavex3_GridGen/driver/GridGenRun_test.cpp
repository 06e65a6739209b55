// Tests of the rotor file copy with its extra byte.
#include "driver/GridGenRun.h"

#include <gtest/gtest.h>

#include <tuple>

#include "ScratchDir.h"

TEST(CopyRotorFile, CopyHasTheLastByteTwice) {
    ScratchDir dir;
    const std::string rotor = std::string("ROT 1\r\n\0\xff", 9) + "end\n";
    // Each copy replaces the one before; without a source the copy is empty.
    const std::tuple<std::string, std::string, std::string> rows[] = {
        {"rotor", rotor, rotor + "\n"}, {"empty", "", std::string(1, '\0')}, {"missing", "", ""}};
    for (const auto& [name, source, copy] : rows) {
        if (name != "missing") WriteWholeFile(dir / name, source);
        CopyRotorFile(dir / name, dir / "copy");
        EXPECT_EQ(ReadWholeFile(dir / "copy"), copy) << name;
    }
    EXPECT_TRUE(PathExists(dir / "copy"));
    CopyRotorFile(dir / "empty", dir / "no-such-dir/copy");
    EXPECT_FALSE(PathExists(dir / "no-such-dir"));
}
