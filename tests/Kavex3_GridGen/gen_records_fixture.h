// Test fixture that resets the line generator's process-wide records before and after each test.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <tuple>
#include <vector>

#include "gdrecords.h"

class GenRecordsTest : public ::testing::Test {
  protected:
    void SetUp() override { reset_records(); }
    void TearDown() override { reset_records(); }

    static void reset_records() {
        for (auto& cells : bodyCells) {
            std::free(cells);
            cells = nullptr;
        }
        nBodyCells = 0;
        gd_options = GdOptions{};
        gd_options.cutBlockFraction = 0.12;
        gd_options.cuboidBlockFraction = 0.12;
        gd_options.gridTol = 1e-8;
        gd_options.cellTol = 1e-5;
        gd_options.debugStream = stdout;
        for (GridLine* line : {&Xgdln, &Ygdln, &Zgdln}) {
            *line = GridLine{};
            line->fullSpanAbout = line->allBdysMin = line->allBdysMax = UNSET_DBL;
            line->discardBelow = line->discardAfter = line->symmPosn = UNSET_DBL;
        }
        Xgdln.type = 0;
        Ygdln.type = 1;
        Zgdln.type = 2;
        allBdys = nullptr;  // tables made by the tests are left to the process's end
        numBdys = maxBdys = numOrigBdys = 0;
    }

    // Points the line at a copy of pts that lives as long as the test.
    void set_line(GridLine* line, std::vector<double> pts) {
        lines_.push_back(std::move(pts));
        line->gdpts = lines_.back().data();
        line->nGdpts = static_cast<int>(lines_.back().size());
    }

    static std::vector<std::array<int, 3>> cells() {
        std::vector<std::array<int, 3>> v;
        for (int c = 0; c < nBodyCells; ++c)
            v.push_back({bodyCells[0][c], bodyCells[1][c], bodyCells[2][c]});
        return v;
    }

  private:
    std::vector<std::vector<double>> lines_;
};

using Cells = std::vector<std::array<int, 3>>;
