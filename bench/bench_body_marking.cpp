// Benchmark of body-cell marking: a tapered cut-plane body clipped against 100 x 100 x 100 cells.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "generator/bodycells.h"
#include "generator/bodymark.h"
#include "generator/gdrecords.h"

namespace {

// X-cut body over x 0.5 .. 99.5: three cuts, 40-gons round (50, 50) of radius 50, 45 and 40,
// on lines of unit cells 0 .. 100 on every axis.
void BM_MarkCutBodyCells(benchmark::State& state) {
    gd_options.cutBlockFraction = 0.12;
    gd_options.cellTol = 1e-5;
    gd_options.debugLevel = 0;
    std::vector<double> line(101);
    for (int i = 0; i <= 100; ++i) line[i] = i;
    for (GridLine* gl : {&Xgdln, &Ygdln, &Zgdln}) {
        gl->gdpts = line.data();
        gl->nGdpts = 101;
    }
    const int nPts = 40;
    const double posns[3] = {0.5, 50, 99.5}, radii[3] = {50, 45, 40};
    std::vector<std::vector<double>> pts(3);
    std::vector<BodyCut> cuts(3);
    for (int c = 0; c < 3; ++c) {
        for (int p = 0; p < nPts; ++p) {
            const double a = 2 * M_PI * p / nPts;
            pts[c].push_back(50 + radii[c] * std::cos(a));
            pts[c].push_back(50 + radii[c] * std::sin(a));
        }
        cuts[c] =
            BodyCut{posns[c], reinterpret_cast<double(*)[2]>(pts[c].data()), nPts, 0, 0, 0, 0};
    }
    Body body{};
    body.type = 0;
    body.cuts = cuts.data();
    body.nCuts = 3;
    body.usedInSolver = 1;
    body.blockFraction = UNSET_DBL;
    const double bdyMin[3] = {0.5, 0, 0}, bdyMax[3] = {99.5, 100, 100};
    for (int a = 0; a < 3; ++a) {
        body.bdyMin[a] = bdyMin[a];
        body.bdyMax[a] = bdyMax[a];
    }
    allBdys = &body;
    numBdys = 1;

    const double cellsTried = 100.0 * 100.0 * 100.0;
    for (auto _ : state) {
        nBodyCells = 0;
        mark_all_body_cells();
        benchmark::DoNotOptimize(nBodyCells);
    }
    state.counters["marked"] = nBodyCells;
    state.counters["time_per_cell"] = benchmark::Counter(
        cellsTried, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    allBdys = nullptr;
    numBdys = 0;
}
BENCHMARK(BM_MarkCutBodyCells)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
