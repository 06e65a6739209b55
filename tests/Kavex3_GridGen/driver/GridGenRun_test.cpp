// Tests of the rotor file copy with its extra byte.
#include "driver/GridGenRun.h"

#include <gtest/gtest.h>

#include "ScratchDir.h"

TEST(CopyRotorFile, CopyHasTheLastByteTwice) {
    ScratchDir dir;
    const std::string rotor = std::string("ROT 1\r\n\0\xff", 9) + "end\n";
    // Each copy replaces the one before; without a source the copy is empty.
    const struct {
        const char* name;
        std::string source, copy;
    } rows[] = {{"rotor", rotor, rotor + "\n"},
                {"one", "x", "xx"},
                {"empty", "", std::string(1, '\0')},
                {"missing", "", ""}};
    for (const auto& row : rows) {
        if (std::string(row.name) != "missing") WriteWholeFile(dir / row.name, row.source);
        CopyRotorFile(dir / row.name, dir / "copy");
        EXPECT_EQ(ReadWholeFile(dir / "copy"), row.copy) << row.name;
    }
    EXPECT_TRUE(PathExists(dir / "copy"));
    CopyRotorFile(dir / "empty", dir / "no-such-dir/copy");
    EXPECT_FALSE(PathExists(dir / "no-such-dir"));
}
