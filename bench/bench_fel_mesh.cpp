// Benchmarks of the mesh walk and node lookups: a full cell walk allocates nothing, a cell's
// coordinates cost the same at every mesh size, and a curvilinear mesh holds 12 bytes a node.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include "FEL.h"

namespace {

std::atomic<long> g_allocations{0};

}  // namespace

// The replacements below pair malloc with free throughout; GCC cannot see that across inlining.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

// Every allocation of the program passes here, so a walk that allocates shows in the counter.
void* operator new(std::size_t size) {
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return operator new(size);
}
void operator delete(void* p) noexcept {
    std::free(p);
}
void operator delete[](void* p) noexcept {
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    std::free(p);
}

namespace {

// A walk over every cell of a 256^3-node lattice; range(0) is the decomposition mode.
void BM_WalkAllCells256(benchmark::State& state) {
    FEL_pointer<FEL_mesh> mesh(new FEL_structured_mesh(256, 256, 256, "lattice"));
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, int(state.range(0)));
    long cells = 0, allocations = 0;
    for (auto _ : state) {
        const long before = g_allocations.load();
        FEL_cell_iter it;
        long count = 0;
        for (mesh->begin(&it); !it.done; ++it) ++count;
        allocations += g_allocations.load() - before;
        cells = count;
        benchmark::DoNotOptimize(count);
    }
    state.counters["cells"] = double(cells);
    state.counters["allocations_per_walk"] = double(allocations) / double(state.iterations());
    state.counters["ns_per_cell"] =
        benchmark::Counter(double(cells) * double(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_WalkAllCells256)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

FEL_pointer<FEL_curvilinear_mesh> numbered_mesh(int n) {
    const long nodes = long(n) * n * n;
    FEL_vector3<float>* xyz = new FEL_vector3<float>[nodes];
    for (long p = 0; p < nodes; ++p)
        xyz[p] = FEL_vector3<float>(float(p % n), float(p / n % n), float(p / n / n));
    return new FEL_curvilinear_mesh_xyz_layout(n, n, n, xyz);
}

// coordinates_at_cell of hexahedra in walk order over an n^3-node curvilinear mesh.
void BM_CoordinatesAtCellInWalkOrder(benchmark::State& state) {
    const int n = int(state.range(0));
    FEL_pointer<FEL_curvilinear_mesh> mesh = numbered_mesh(n);
    FEL_cell cell(FEL_CELL_HEXAHEDRON, 0, 0, 0);
    FEL_vector3<float> corners[8];
    for (auto _ : state) {
        mesh->coordinates_at_cell(cell, corners);
        benchmark::DoNotOptimize(corners);
        if (++cell.i == n - 1) {
            cell.i = 0;
            if (++cell.j == n - 1) {
                cell.j = 0;
                if (++cell.k == n - 1) cell.k = 0;
            }
        }
    }
    state.counters["bytes_per_node"] =
        double(mesh->node_storage_bytes()) / (double(n) * double(n) * double(n));
}
BENCHMARK(BM_CoordinatesAtCellInWalkOrder)->Arg(16)->Arg(64)->Arg(128)->Arg(256);

// The same at scattered cells: the lookup is the same work, memory latency grows with the mesh.
void BM_CoordinatesAtCellScattered(benchmark::State& state) {
    const int n = int(state.range(0));
    FEL_pointer<FEL_curvilinear_mesh> mesh = numbered_mesh(n);
    std::vector<FEL_cell> cells;
    std::uint32_t seed = 12345;
    for (int c = 0; c < 4096; ++c) {
        int index[3];
        for (int& v : index) {
            seed = seed * 1664525u + 1013904223u;
            v = int((seed >> 8) % std::uint32_t(n - 1));
        }
        cells.push_back(FEL_cell(FEL_CELL_HEXAHEDRON, index[0], index[1], index[2]));
    }
    FEL_vector3<float> corners[8];
    std::size_t next = 0;
    for (auto _ : state) {
        mesh->coordinates_at_cell(cells[next], corners);
        benchmark::DoNotOptimize(corners);
        next = (next + 1) & 4095;
    }
}
BENCHMARK(BM_CoordinatesAtCellScattered)->Arg(16)->Arg(64)->Arg(128)->Arg(256);

}  // namespace

BENCHMARK_MAIN();
