// Tests of the body-cell store: appending, shifting, boundary blocking and the solver's list.
#include "generator/bodycells.h"

#include <cstdio>
#include <string>

#include "gdtest_util.h"

namespace {

using BodyCellStore = GenTest;

TEST_F(BodyCellStore, ZeroWidthCellsOnBothSidesAndOnlyNextToTheBoundary) {
    // Passes over I, J and K in turn; the cells one pass adds are moved by the next.
    // NI = 4: the only real X cell is 1 = NI-3, so a cell there adds both (0, J, K) and (2, J, K).
    // (1, 1, 7): J = 1 adds J = 0; K = 7 is an inner cell (NK = 12) and adds nothing.
    // (1, 7, 1): J = 7 = NJ-3 adds J = 8 (NJ = 10); K = 1 adds K = 0 to every cell with K = 1.
    mark_body_cell(0, 1, 1, 1, 2, 7);
    mark_body_cell(0, 1, 1, 7, 2, 1);
    mark_body_blocking_zero_width_cells(4, 10, 12);
    const Cells expected = {{1, 1, 7}, {1, 7, 1}, {0, 1, 7}, {2, 1, 7}, {0, 7, 1}, {2, 7, 1},
                            {1, 0, 7}, {1, 8, 1}, {0, 0, 7}, {2, 0, 7}, {0, 8, 1}, {2, 8, 1},
                            {1, 7, 0}, {0, 7, 0}, {2, 7, 0}, {1, 8, 0}, {0, 8, 0}, {2, 8, 0}};
    EXPECT_EQ(marked_cells(), expected);
}

TEST_F(BodyCellStore, LongListsGrowAreWrittenWholeAndShift) {
    // Enough cells to grow the store twice and lines to pass through the writer's buffer several
    // times; expected text by printf.
    std::string expected = "#\n# Num. of Body Cells:\n3000\n";
    expected += "# Body Cells ({I-index, J-index, K-index} of the cells)\n";
    for (int c = 0; c < 3000; ++c) {
        mark_body_cell(0, c * 10, 1, 32767 - c, 2, c % 3);
        expected += std::to_string(c * 10 + 1) + ", " + std::to_string(32768 - c) + ", " +
                    std::to_string(c % 3 + 1) + "\n";
    }
    EXPECT_EQ(stream_text(wr_bodyblocks_input_for_solver), expected);
    const int16_t shift[3] = {1, -2, 300};
    translate_body_cells(shift);
    EXPECT_EQ(marked_cells()[2999], (std::array<int, 3>{29991, 29766, 302}));
}

}  // namespace
