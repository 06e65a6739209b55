// Helpers of the generator's unit tests: records reset to a known state, lines, specs and bodies
// set by hand, and files and streams read back whole.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "generator/bodies.h"
#include "generator/gdrecords.h"
#include "generator/readFileC.h"

inline std::string read_all(FILE* stream) {
    std::rewind(stream);
    std::string text;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, stream)) > 0) text.append(buf, n);
    return text;
}

inline void set_test_options(int debugLevel = 0, FILE* debugStream = nullptr) {
    gd_options = GdOptions{};
    gd_options.roundOff = 0.5;
    gd_options.gridTol = 1e-8;
    gd_options.cellTol = 1e-5;
    gd_options.debugLevel = debugLevel;
    gd_options.debugStream = debugStream;
}

inline GridLine make_line(int type) {
    GridLine line{};
    line.type = type;
    line.symmPosn = line.fullSpanAbout = line.allBdysMin = line.allBdysMax = UNSET_DBL;
    line.discardBelow = line.discardAfter = UNSET_DBL;
    return line;
}

// Specs and pre-fixed points live in static storage owned by the test.
inline void set_specs(GridLine* line, BdyGdspc* specs, int n) {
    line->gdspcs = specs;
    line->nGdspcs = n;
}

inline BdyGdspc spec(double from, double to, double nGds, double ratio = 1.0, int fxdFrom = 1,
                     int fxdTo = 1) {
    return BdyGdspc{from, to, nGds, ratio, fxdFrom, fxdTo};
}

class BodyBuilder {
  public:
    using Polygon = std::vector<std::pair<double, double>>;

    // A cut-plane body of type 0, 1 or 2 with one polygon per cut plane, in the order given.
    Body cut_body(int type, const std::vector<std::pair<double, Polygon>>& cuts,
                  std::array<double, 3> bdyMin, std::array<double, 3> bdyMax) {
        Body body = plain_body(type, bdyMin, bdyMax);
        std::vector<BodyCut>& stored = cuts_.emplace_back();
        for (const auto& [posn, poly] : cuts) {
            std::vector<double>& pts = pts_.emplace_back();
            for (const auto& [q1, q2] : poly) {
                pts.push_back(q1);
                pts.push_back(q2);
            }
            BodyCut cut{};
            cut.posn = posn;
            cut.pts = reinterpret_cast<double(*)[2]>(pts.data());
            cut.nPts = static_cast<int>(poly.size());
            stored.push_back(cut);
        }
        body.cuts = stored.data();
        body.nCuts = static_cast<int>(stored.size());
        return body;
    }

    // A body of any other type with just its box (a cuboid also gets its corners).
    Body plain_body(int type, std::array<double, 3> bdyMin, std::array<double, 3> bdyMax) {
        Body body{};
        body.name = const_cast<char*>("body");
        body.type = type;
        body.usedInSolver = 1;
        body.fullSpanUsedInSolver = 1;
        body.mirrorAxis = 3;
        body.blockFraction = UNSET_DBL;
        for (int a = 0; a < 3; ++a) {
            body.bdyMin[a] = bdyMin[a];
            body.bdyMax[a] = bdyMax[a];
        }
        if (type == 3) {
            std::vector<double>& corners = pts_.emplace_back();
            corners = {bdyMin[0], bdyMin[1], bdyMin[2], bdyMax[0], bdyMax[1], bdyMax[2]};
            body.cuboid = corners.data();
        }
        return body;
    }

  private:
    std::deque<std::vector<double>> pts_;
    std::deque<std::vector<BodyCut>> cuts_;
};

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

// Puts options, grid lines, the grid-spec collection, the section flags and the body table back to
// the state before a run (the old storage is left behind, as the generator never frees it).
inline void reset_generator_records() {
    init_options2();
    init_all_grid_lines2();
    reset_newBdyGdspc_parms2();
    pref_options = GdOptions{};
    allBdys = nullptr;
    numBdys = maxBdys = numOrigBdys = 0;
    OptionsDefnDone = BodyDefnsDone = XgdSpecDone = YgdSpecDone = ZgdSpecDone = 0;
}

// Writes text to a file named after the process and name in the test temp folder.
inline std::string write_temp_file(const std::string& name, const std::string& text) {
    const std::string path =
        ::testing::TempDir() + "geninput_" + std::to_string(getpid()) + "_" + name;
    FILE* f = std::fopen(path.c_str(), "w");
    EXPECT_NE(f, nullptr) << path;
    if (f) {
        std::fputs(text.c_str(), f);
        std::fclose(f);
    }
    return path;
}

// Everything that write puts on a fresh stream.
inline std::string stream_text(const std::function<void(FILE*)>& write) {
    FILE* f = std::tmpfile();
    write(f);
    std::string text = read_all(f);
    std::fclose(f);
    return text;
}

class GenInputTest : public ::testing::Test {
  protected:
    void SetUp() override { reset_generator_records(); }
};
