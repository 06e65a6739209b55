// Timed run of the intersector's stages on an STL surface and a rectilinear grid:
//   bench_intersect SURFACE.stl GRID [--threads N] [--plain]
// GRID: corner counts NX NY NZ on the first line, then all X, all Y and all Z corner values.
// Prints "key value" lines: stage seconds, cell counts, bytes kept per cell, peak resident MB.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

#include "FEL.h"
#include "intersector/Classify.h"
#include "intersector/Intersector.h"
#include "reference/Reference.h"

namespace {
double Seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

FEL_pointer<FEL_mesh> ReadGrid(const std::string& path) {
    std::ifstream in(path);
    int n[3];
    if (!(in >> n[0] >> n[1] >> n[2]) || n[0] < 2 || n[1] < 2 || n[2] < 2) {
        std::cerr << "bench_intersect: cannot read the corner counts of " << path << "\n";
        std::exit(1);
    }
    FEL_axis* axes[3];
    for (int a = 0; a < 3; ++a) {
        float* values = new float[n[a]];
        for (int c = 0; c < n[a]; ++c) {
            double v;
            if (!(in >> v)) {
                std::cerr << "bench_intersect: " << path << " ends before its corner values\n";
                std::exit(1);
            }
            values[c] = float(v);
        }
        axes[a] = new FEL_irregular_axis(n[a], values);
    }
    return FEL_pointer<FEL_mesh>(new FEL_axis_aligned_mesh(axes[0], axes[1], axes[2], "grid"));
}
}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::cerr << "usage: bench_intersect SURFACE.stl GRID [--threads N] [--plain]\n";
        return 0;
    }
    IntersectContext run;
    for (int a = 3; a < argc; ++a) {
        if (!std::strcmp(argv[a], "--plain")) {
            run.m_options.m_pReference = &kPlainProcedure;
        } else if (!std::strcmp(argv[a], "--threads") && a + 1 < argc) {
            run.m_options.m_intThreads = std::atoi(argv[++a]);
        } else {
            std::cerr << "bench_intersect: unknown option " << argv[a] << "\n";
            return 2;
        }
    }
    auto t0 = std::chrono::steady_clock::now();
    unsigned flags = 0;
    _BodyStruct body;
    body.eBodyType = BODY_STL;
    body.blnUsedInSolver = true;
    body.pMesh = FEL_read_mesh(argv[1], flags, -1);
    FEL_pointer<FEL_mesh> grid = ReadGrid(argv[2]);
    double read = Seconds(t0);

    t0 = std::chrono::steady_clock::now();
    IntersectGrid(run, grid, {body}, ".");
    double intersect = Seconds(t0);

    t0 = std::chrono::steady_clock::now();
    ClassifyCells(run);
    double classify = Seconds(t0);

    t0 = std::chrono::steady_clock::now();
    long long intersected = 0;
    long long bodyCells = DecideCells(run, intersected);
    double scan = Seconds(t0);

    rusage use;
    getrusage(RUSAGE_SELF, &use);
    std::printf("read_s %.3f\nintersect_s %.3f\nclassify_s %.3f\nscan_s %.3f\n", read, intersect,
                classify, scan);
    std::printf("body_cells %lld\nintersected_cells %lld\n", bodyCells, intersected);
    std::printf("cell_bytes %zu\npeak_mb %.1f\n", IntersectBytesPerCell(), use.ru_maxrss / 1024.0);
    return 0;
}
