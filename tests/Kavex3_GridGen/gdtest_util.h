// Helpers of the line generator's unit tests: default options, lines and specs set by hand.
#pragma once

#include <cstdio>
#include <string>

#include "gdrecords.h"

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

inline std::string read_all(FILE* stream) {
    std::rewind(stream);
    std::string text;
    char buf[4096];
    size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, stream)) > 0) text.append(buf, n);
    return text;
}
