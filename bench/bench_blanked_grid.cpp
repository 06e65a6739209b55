// The blanked grid's coordinates: OutputIBlankedGrid on a Cartesian 201^3-point mesh against the
// plain stream writing of every value (fixed, precision 5); the two files must be identical.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iomanip>
#include <string>

#include "FEL_curvilinear_mesh.h"
#include "driver/Write.h"

namespace {

const int kPoints = 201;

std::string TempPath(const char* name) {
    return "/tmp/bench_blanked_grid_" + std::to_string(getpid()) + "_" + name;
}

FEL_pointer<FEL_mesh> CartesianMesh() {
    const std::size_t n = std::size_t(kPoints) * kPoints * kPoints;
    auto* xyz = new FEL_vector3<float>[n];
    for (int k = 0; k < kPoints; ++k)
        for (int j = 0; j < kPoints; ++j)
            for (int i = 0; i < kPoints; ++i)
                xyz[i + kPoints * (j + std::size_t(kPoints) * k)] = {
                    -2.5f + 0.0123f * i, 1.0f + 0.37f * j * j / kPoints, -7.125f + 0.0625f * k};
    return FEL_pointer<FEL_mesh>(
        new FEL_curvilinear_mesh_xyz_layout(kPoints, kPoints, kPoints, xyz));
}

// The writing as the text describes it: one stream, every value through operator<<.
void StreamWrite(const std::string& path, const FEL_pointer<FEL_mesh>& mesh) {
    std::ofstream out(path.c_str(), std::ios::trunc);
    out << "# " << 1.5 << ' ' << 0.0 << ' ' << -2.25 << '\n'
        << kPoints << ' ' << kPoints << ' ' << kPoints << '\n'
        << std::fixed << std::setprecision(5);
    const auto* m = static_cast<const FEL_curvilinear_mesh*>(mesh.get());
    const int total = kPoints * kPoints * kPoints;
    for (int axis = 0; axis < 3; ++axis)
        for (int n = 0; n < total; ++n) out << ' ' << m->node(n)[axis];
    out << "\n# Num. of Body Cells: \n0\n# Body Cells ({I-index, J-index, K-index} of the cells)\n";
}

void BM_stream_fixed5(benchmark::State& state) {
    const FEL_pointer<FEL_mesh> mesh = CartesianMesh();
    for (auto _ : state) StreamWrite(TempPath("stream"), mesh);
}
BENCHMARK(BM_stream_fixed5)->Unit(benchmark::kMillisecond)->Iterations(2);

void BM_output_iblanked_grid(benchmark::State& state) {
    const FEL_pointer<FEL_mesh> mesh = CartesianMesh();
    std::vector<FEL_vector3<int>> cells;
    for (auto _ : state)
        OutputIBlankedGrid(TempPath("fast"), mesh, cells, true, true, 1.5, 0.0, -2.25);
    StreamWrite(TempPath("stream"), mesh);
    std::ifstream a(TempPath("fast")), b(TempPath("stream"));
    if (std::string(std::istreambuf_iterator<char>(a), {}) !=
        std::string(std::istreambuf_iterator<char>(b), {}))
        state.SkipWithError("the files differ");
}
BENCHMARK(BM_output_iblanked_grid)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::remove(TempPath("fast").c_str());
    std::remove(TempPath("stream").c_str());
    return 0;
}
