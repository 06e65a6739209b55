// Tests of the body-cell store: appending, shifting, boundary blocking and the two listings.
#include "generator/bodycells.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include "gdtest_util.h"

namespace {

// Runs write(stream) on a memory stream and returns what was written.
template <typename F>
std::string capture(F write) {
    char* buf = nullptr;
    size_t len = 0;
    FILE* stream = open_memstream(&buf, &len);
    write(stream);
    std::fclose(stream);
    std::string text(buf, len);
    std::free(buf);
    return text;
}

using BodyCellStore = GenRecordsTest;

TEST_F(BodyCellStore, IndicesGoToTheArrayOfTheirAxisAndSurviveGrowth) {
    mark_body_cell(2, 7, 0, 8, 1, 9);
    EXPECT_EQ(cells(), (Cells{{8, 9, 7}}));
    for (int c = 1; c < 2500; ++c) mark_body_cell(0, c, 1, c % 7, 2, -c % 5);
    ASSERT_EQ(nBodyCells, 2500);
    EXPECT_EQ(cells()[0], (std::array<int, 3>{8, 9, 7}));
    EXPECT_EQ(cells()[999], (std::array<int, 3>{999, 5, -4}));
    EXPECT_EQ(cells()[2499], (std::array<int, 3>{2499, 0, -4}));

    const int16_t shift[3] = {1, -2, 300};
    translate_body_cells(shift);
    EXPECT_EQ(cells()[0], (std::array<int, 3>{9, 7, 307}));
    EXPECT_EQ(cells()[2499], (std::array<int, 3>{2500, -2, 296}));
}

TEST_F(BodyCellStore, DebugLevelAboveNineListsEachMarkedCell) {
    gd_options.debugLevel = 10;
    const std::string text = capture([](FILE* s) {
        gd_options.debugStream = s;
        mark_body_cell(1, 4, 2, 5, 0, 6);
    });
    EXPECT_EQ(text, "[6, 4, 5]\n");
}

TEST_F(BodyCellStore, ZeroWidthCellsBehindOneBodyCellFillTheCorner) {
    // N = 6 points per axis: cells 0 .. 4, the zero-width boundary cells are 0 and 4, the
    // outermost real cells 1 and 3. A body in the real corner cell (1, 1, 1) blocks, pass by
    // pass, the three faces, three edges and the corner behind it.
    mark_body_cell(0, 1, 1, 1, 2, 1);
    mark_body_blocking_zero_width_cells(6, 6, 6);
    EXPECT_EQ(cells(), (Cells{{1, 1, 1},
                              {0, 1, 1},
                              {1, 0, 1},
                              {0, 0, 1},
                              {1, 1, 0},
                              {0, 1, 0},
                              {1, 0, 0},
                              {0, 0, 0}}));
}

TEST_F(BodyCellStore, ZeroWidthCellsOnBothSidesAndOnlyNextToTheBoundary) {
    // NI = 4: the only real X cell is 1 = NI-3, so a cell there adds both (0, J, K) and (2, J, K).
    // (1, 5, 7): J = 5 and K = 7 are inner cells (NJ = 10, NK = 12) and add nothing.
    // (1, 7, 1): J = 7 = NJ-3 adds J = 8; K = 1 adds K = 0 to every cell with K = 1.
    mark_body_cell(0, 1, 1, 5, 2, 7);
    mark_body_cell(0, 1, 1, 7, 2, 1);
    mark_body_blocking_zero_width_cells(4, 10, 12);
    EXPECT_EQ(cells(), (Cells{{1, 5, 7},
                              {1, 7, 1},
                              {0, 5, 7},
                              {2, 5, 7},
                              {0, 7, 1},
                              {2, 7, 1},
                              {1, 8, 1},
                              {0, 8, 1},
                              {2, 8, 1},
                              {1, 7, 0},
                              {0, 7, 0},
                              {2, 7, 0},
                              {1, 8, 0},
                              {0, 8, 0},
                              {2, 8, 0}}));
}

TEST_F(BodyCellStore, SolverListAndDebugListAreExact) {
    EXPECT_EQ(capture(wr_bodyblocks_input_for_solver),
              "#\n# Num. of Body Cells:\n0\n# Body Cells ({I-index, J-index, K-index} of the "
              "cells)\n");
    mark_body_cell(0, 0, 1, 1, 2, 2);
    mark_body_cell(0, 9, 1, 10, 2, 11);
    EXPECT_EQ(capture(wr_bodyblocks_input_for_solver),
              "#\n# Num. of Body Cells:\n2\n# Body Cells ({I-index, J-index, K-index} of the "
              "cells)\n1, 2, 3\n10, 11, 12\n");
    EXPECT_EQ(capture([](FILE* s) { dbgpr_body_cells(s, 1, 2, 3, "Cells"); }),
              "\nCells\nNum. of Body Cells: 2\n[1, 3, 5]\n[10, 12, 14]\n");
}

TEST_F(BodyCellStore, LongListsAreWrittenWhole) {
    // Enough lines to pass through the writer's buffer several times; expected text by printf.
    std::string expected =
        "#\n# Num. of Body Cells:\n3000\n# Body Cells ({I-index, J-index, "
        "K-index} of the cells)\n";
    for (int c = 0; c < 3000; ++c) {
        mark_body_cell(0, c * 10, 1, 32767 - c, 2, c % 3);
        expected += std::to_string(c * 10 + 1) + ", " + std::to_string(32768 - c) + ", " +
                    std::to_string(c % 3 + 1) + "\n";
    }
    EXPECT_EQ(capture(wr_bodyblocks_input_for_solver), expected);
}

}  // namespace
