// Helpers of the generator's unit tests: records reset to a known state, lines, specs and bodies
// set by hand, and files and streams read back whole.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ScratchDir.h"
#include "generator/bodies.h"
#include "generator/bodycells.h"
#include "generator/gdrecords.h"
#include "generator/readFileC.h"

// Everything that write puts on a fresh stream.
inline std::string stream_text(const std::function<void(FILE*)>& write) {
    char* buf = nullptr;
    size_t len = 0;
    FILE* stream = open_memstream(&buf, &len);
    write(stream);
    std::fclose(stream);
    std::string text(buf, len);
    std::free(buf);
    return text;
}

// Options at their defaults but quiet, empty grid lines, no bodies, no body cells and no spec
// section read (the old storage is left behind, as the generator never frees it).
inline void reset_generator_records(int debugLevel = 0) {
    init_options2();
    gd_options.debugLevel = debugLevel;
    init_all_grid_lines2();
    reset_newBdyGdspc_parms2();
    pref_options = GdOptions{};
    allBdys = nullptr;
    numBdys = maxBdys = numOrigBdys = 0;
    OptionsDefnDone = BodyDefnsDone = XgdSpecDone = YgdSpecDone = ZgdSpecDone = 0;
    for (auto& cells : bodyCells) std::free(std::exchange(cells, nullptr));
    nBodyCells = 0;
}

inline GridLine make_line(int type) {
    GridLine line{};
    init_gridln(&line, type);
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

// A malloc'ed copy of text for a generator record, which keeps it to the end of the process
// (tests/lsan.supp names this function).
inline char* record_text(const std::string& text) {
    return strdup(text.c_str());
}

// Points the line at a malloc'ed copy of pts, as the generator keeps them.
inline void set_line(GridLine* line, const std::vector<double>& pts) {
    line->gdpts = static_cast<double*>(std::malloc(sizeof(double) * pts.size()));
    std::memcpy(line->gdpts, pts.data(), sizeof(double) * pts.size());
    line->nGdpts = static_cast<int>(pts.size());
}

using Pts = std::vector<double>;

inline Pts points(const GridLine& line) {
    return Pts(line.gdpts, line.gdpts + line.nGdpts);
}

// Points of n uniform cells over [from, to] by repeated addition, without the end point.
inline Pts uniform(double from, double to, int n) {
    Pts out = {from};
    for (int k = 1; k < n; ++k) out.push_back(out.back() + (to - from) / n);
    return out;
}

inline Pts operator+(Pts a, const Pts& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

using Cells = std::vector<std::array<int, 3>>;

inline Cells marked_cells() {
    Cells v;
    for (long long c = 0; c < nBodyCells; ++c)
        v.push_back({bodyCells[0][c], bodyCells[1][c], bodyCells[2][c]});
    return v;
}

// A body's box: its minimum corner, then its maximum corner.
inline Pts box(const Body& b) {
    return {b.bdyMin[0], b.bdyMin[1], b.bdyMin[2], b.bdyMax[0], b.bdyMax[1], b.bdyMax[2]};
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
            for (const auto& [q1, q2] : poly) pts.insert(pts.end(), {q1, q2});
            const int nPts = static_cast<int>(poly.size());
            stored.push_back({posn, reinterpret_cast<double(*)[2]>(pts.data()), nPts, 0, 0, 0, 0});
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
        body.usedInSolver = body.fullSpanUsedInSolver = 1;
        body.mirrorAxis = 3;
        body.blockFraction = UNSET_DBL;
        std::copy(bdyMin.begin(), bdyMin.end(), body.bdyMin);
        std::copy(bdyMax.begin(), bdyMax.end(), body.bdyMax);
        if (type == 3) {
            pts_.push_back({bdyMin[0], bdyMin[1], bdyMin[2], bdyMax[0], bdyMax[1], bdyMax[2]});
            body.cuboid = pts_.back().data();
        }
        return body;
    }

  private:
    std::deque<std::vector<double>> pts_;
    std::deque<std::vector<BodyCut>> cuts_;
};

class GenTest : public ::testing::Test {
  protected:
    void SetUp() override { reset_generator_records(); }
    void TearDown() override {
        for (GridLine* line : {&Xgdln, &Ygdln, &Zgdln}) std::free(line->gdpts);
        reset_generator_records();
    }
    // Writes text to a file of that name in the test's own folder; returns its path.
    std::string file(const std::string& name, const std::string& text) const {
        WriteWholeFile(dir_ / name, text);
        return dir_ / name;
    }
    ScratchDir dir_;
};
