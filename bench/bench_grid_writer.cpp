// Benchmark of the grid file writer on a 200^3-point grid against a plain fprintf loop, and of the
// same writer into a run's checked output file (temporary name, checked writes, rename).
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "generator/gdoutfile.h"
#include "generator/gridwriter.h"

namespace {

struct Grid {
    int n[3];
    std::vector<double> pts[3];
    explicit Grid(int size) : n{size, size, size} {
        for (int a = 0; a < 3; ++a) {
            double x = -10.0 * (a + 1);
            for (int i = 0; i < size; ++i) pts[a].push_back(x = x + 0.0123456789 * (i % 7 + 1));
        }
    }
    const double* p(int a) const { return pts[a].data(); }
};

void plain_values(FILE* stream, const Grid& g) {
    for (int a = 0; a < 3; ++a)
        for (int k = 0; k < g.n[2]; ++k)
            for (int j = 0; j < g.n[1]; ++j)
                for (int i = 0; i < g.n[0]; ++i)
                    std::fprintf(stream, " %12.5f", g.p(a)[a == 0 ? i : a == 1 ? j : k]);
}

void fast_values(FILE* stream, const Grid& g) {
    const double* pts[3] = {g.p(0), g.p(1), g.p(2)};
    wr_grid_values(stream, g.n, pts);
}

std::vector<char> contents(FILE* f) {
    std::vector<char> bytes(std::ftell(f));
    std::rewind(f);
    if (std::fread(bytes.data(), 1, bytes.size(), f) != bytes.size()) bytes.clear();
    return bytes;
}

// Both writers give the same bytes on a smaller grid; a mismatch stops the benchmark.
bool same_bytes() {
    const Grid g(40);
    FILE* a = std::tmpfile();
    FILE* b = std::tmpfile();
    plain_values(a, g);
    fast_values(b, g);
    const bool same = contents(a) == contents(b);
    std::fclose(a);
    std::fclose(b);
    return same;
}

template <void (*Write)(FILE*, const Grid&)>
void BM_GridValues(benchmark::State& state) {
    if (!same_bytes()) {
        state.SkipWithError("writer output differs from the fprintf loop");
        return;
    }
    const Grid g(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        FILE* f = std::tmpfile();
        Write(f, g);
        std::fflush(f);
        state.counters["bytes"] = static_cast<double>(std::ftell(f));
        std::fclose(f);
    }
    state.counters["values"] = 3.0 * g.n[0] * g.n[1] * g.n[2];
}

FILE* plain_open(const char* path) {
    return std::fopen(path, "w");
}

void plain_close(FILE* f) {
    std::fclose(f);
}

// The writer into a named file, opened and closed the plain way or as a run's checked file.
template <FILE* (*Open)(const char*), void (*Close)(FILE*)>
void BM_NamedFile(benchmark::State& state) {
    const Grid g(static_cast<int>(state.range(0)));
    const double* pts[3] = {g.p(0), g.p(1), g.p(2)};
    char path[] = "/tmp/bench_grid_writer_XXXXXX";
    const int fd = mkstemp(path);
    if (fd < 0) {
        state.SkipWithError("no temporary file");
        return;
    }
    close(fd);
    for (auto _ : state) {
        FILE* f = Open(path);
        wr_grid_values(f, g.n, pts);
        Close(f);
    }
    std::remove(path);
    state.counters["values"] = 3.0 * g.n[0] * g.n[1] * g.n[2];
}

BENCHMARK_TEMPLATE(BM_GridValues, plain_values)
    ->Name("fprintf_loop")
    ->Arg(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_GridValues, fast_values)
    ->Name("wr_grid_values")
    ->Arg(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_NamedFile, plain_open, plain_close)
    ->Name("named_file_plain")
    ->Arg(200)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_NamedFile, gd_open_output, gd_close_output)
    ->Name("named_file_checked")
    ->Arg(200)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
