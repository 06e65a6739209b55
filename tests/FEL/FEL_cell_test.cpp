// Tests of the stream forms of cells and positions.
#include "FEL_cell.h"

#include <gtest/gtest.h>

#include "FEL_exception.h"

namespace {

const auto text = [](const auto& value) { return testing::PrintToString(value); };

TEST(FEL_cell, StreamForms) {
    EXPECT_EQ(text(FEL_cell()), "<uninitialized cell>");
    EXPECT_EQ(text(FEL_cell(FEL_CELL_TETRAHEDRON, 1, 2, 3, 4, 7)), "T(1, 2, 3).4:7");
    const char* letters = "VEFQTPWH";
    for (int type = 1; type <= 8; ++type)
        EXPECT_EQ(text(FEL_cell(type, 0, 0, 0))[0], letters[type - 1]);
    EXPECT_THROW(text(FEL_cell(9, 0, 0, 0)), FEL_exception);
    EXPECT_EQ(text(FEL_time()), "<undefined>");
    EXPECT_EQ(text(FEL_phys_pos(1.0f, 2.0f, 3.0f, FEL_time::from_float(0.5f))), "(1, 2, 3, 0.5)");
    EXPECT_EQ(text(FEL_structured_pos(1.5f, 2.0f, 3.0f)), "(1.5, 2, 3)");
    FEL_structured_pos zoned(1.5f, 2.0f, 3.0f, 2);
    zoned.time = FEL_time::from_step(4);
    EXPECT_EQ(text(zoned), "(1.5, 2, 3, 4 (zone 2))");
}

}  // namespace
