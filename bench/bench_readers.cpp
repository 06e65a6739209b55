// Reading speed: the grid file read back through detection against one plain parse of its numbers,
// and a million-facet ASCII STL surface.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <string>

#include "readers/FEL_reader.h"
#include "readers/FEL_text_scan.h"

namespace {

std::string temp_path(const char* name) {
    return "/tmp/bench_readers_" + std::to_string(getpid()) + "_" + name;
}

// The grid file exactly as the generator writes it: an empty first line, the counts, every value
// " %12.5f" on one line (x of index i, then y of j, then z of k, i fastest), then the fixed tail.
const std::string& grid_file() {
    static const std::string path = [] {
        const int n = 200;
        std::string p = temp_path("grid.dat");
        FILE* f = std::fopen(p.c_str(), "w");
        std::fprintf(f, "\n%d %d %d\n", n, n, n);
        for (int axis = 0; axis < 3; ++axis)
            for (int k = 0; k < n; ++k)
                for (int j = 0; j < n; ++j)
                    for (int i = 0; i < n; ++i) {
                        const int index = axis == 0 ? i : axis == 1 ? j : k;
                        std::fprintf(f, " %12.5f", -2.5 + 0.125 * index);
                    }
        std::fprintf(f, "\n# Num. of Body Cells:\n0\n");
        std::fclose(f);
        return p;
    }();
    return path;
}

// A flat sheet of 500 by 1000 squares, two facets each.
const std::string& stl_file() {
    static const std::string path = [] {
        std::string p = temp_path("sheet.stl");
        FILE* f = std::fopen(p.c_str(), "w");
        std::fprintf(f, "solid sheet\n");
        auto facet = [f](float ax, float ay, float bx, float by, float cx, float cy) {
            std::fprintf(f,
                         "  facet normal 0 0 1\n    outer loop\n      vertex %g %g 0\n"
                         "      vertex %g %g 0\n      vertex %g %g 0\n    endloop\n  endfacet\n",
                         ax, ay, bx, by, cx, cy);
        };
        for (int j = 0; j < 1000; ++j)
            for (int i = 0; i < 500; ++i) {
                const float x = 0.01f * i, y = 0.01f * j, x1 = 0.01f * (i + 1),
                            y1 = 0.01f * (j + 1);
                facet(x, y, x1, y, x1, y1);
                facet(x, y, x1, y1, x, y1);
            }
        std::fprintf(f, "endsolid sheet\n");
        std::fclose(f);
        return p;
    }();
    return path;
}

// The yardstick: every number of the file converted once by from_chars, nothing else.
void BM_grid_plain_from_chars(benchmark::State& state) {
    const std::string& path = grid_file();
    for (auto _ : state) {
        FEL_mapped_file file(path);
        const char* p = file.begin();
        const char* end = file.end();
        double sum = 0;
        std::size_t count = 0;
        while (true) {
            while (p != end && FEL_is_space(*p)) ++p;
            if (p == end || *p == '#') break;
            float v;
            auto r = std::from_chars(p, end, v);
            p = r.ptr;
            sum += v;
            ++count;
        }
        benchmark::DoNotOptimize(sum);
        state.counters["numbers"] = double(count);
    }
}
BENCHMARK(BM_grid_plain_from_chars)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_grid_read_mesh(benchmark::State& state) {
    const std::string& path = grid_file();
    for (auto _ : state) {
        unsigned flags = 0;
        FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(path, flags, -1);
        benchmark::DoNotOptimize(mesh.get());
        if (flags != 0x120) state.SkipWithError("grid not read as a single text zone");
    }
}
BENCHMARK(BM_grid_read_mesh)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_stl_ascii_million_facets(benchmark::State& state) {
    const std::string& path = stl_file();
    for (auto _ : state) {
        unsigned flags = 0;
        FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(path, flags, -1);
        benchmark::DoNotOptimize(mesh.get());
    }
}
BENCHMARK(BM_stl_ascii_million_facets)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::remove(grid_file().c_str());
    std::remove(stl_file().c_str());
    return 0;
}
