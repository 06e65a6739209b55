// The grid file both ways: the generator's and the blanked grid's writers and the mesh reader's
// shortcuts (values formatted once, repeated tokens not converted again) against plain per-value
// formatting and reading; and the sizes of the largest grid the worker accepts.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ScratchDir.h"
#include "driver/Write.h"
#include "generator/gdcheck.h"
#include "generator/gdrecords.h"  // nBodyCells
#include "generator/gridwriter.h"
#include "readers/FEL_reader.h"

namespace {

enum Shape { GRADED, LAYERED, SYMMETRIC, MIDPOINTS };

// One axis of n values, ascending: graded widths; layers with zero-width cells and runs of equal
// values; mirrored about 0 with values that print as "-0.00000"; odd multiples of 1/64, whose
// sixth decimal is a 5 that "%.5f" must round exactly.
std::vector<double> Axis(Shape shape, int n, std::mt19937& rng) {
    std::uniform_real_distribution<double> u(0.0, 1.0);
    std::vector<double> v(n);
    double x = (u(rng) - 0.5) * 1e4, w = u(rng) + 1e-3;
    const double r = 0.8 + 0.4 * u(rng);
    for (int i = 0; i < n; ++i, x += w, w *= r) v[i] = x;
    if (shape == LAYERED)
        for (int i = 1; i < n; ++i)
            if (i == 1 || i == n - 1 || u(rng) < 0.3) v[i] = v[i - 1];
    if (shape == SYMMETRIC)
        for (int i = 0; i < n; ++i)
            v[i] = (2.0 * i - (n - 1)) * (u(rng) < 0.2 ? 1e-6 : std::fabs(w) + 0.1);
    if (shape == MIDPOINTS)
        for (int i = 0; i < n; ++i) v[i] = (2 * (i + std::lround(u(rng) * 1e6)) + 1) / 64.0;
    return v;
}

// The plain reading: every number after the dimension line converted on its own, as "%f" does.
std::vector<float> PlainRead(const std::string& text) {
    const char* p = text.c_str() + text.find('\n', text.find('\n') + 1) + 1;
    std::vector<float> v;
    for (char* end;; p = end) {
        const float f = std::strtof(p, &end);
        if (end == p) break;
        v.push_back(f);
    }
    return v;
}

// What a mesh holds, in the file's order: all x, all y, all z.
std::vector<float> MeshValues(FEL_pointer<FEL_mesh> mesh) {
    int n[3];
    mesh->get_structured_dimensions(n);
    std::vector<float> v;
    for (int a = 0; a < 3; ++a)
        for (int k = 0; k < n[2]; ++k)
            for (int j = 0; j < n[1]; ++j)
                for (int i = 0; i < n[0]; ++i) {
                    FEL_vector3<float> p;
                    mesh->coordinates_at_vertex_cell(FEL_vertex_cell(i, j, k), &p);
                    v.push_back(p[a]);
                }
    return v;
}

std::string Fmt(const char* format, double v) {
    std::string s;
    append_formatted(s, format, v);
    return s;
}

}  // namespace

TEST(GridFile, WritersAndReaderMatchThePlainFormattingAndReading) {
    const Shape shapes[] = {GRADED, LAYERED, SYMMETRIC, MIDPOINTS};
    std::mt19937 rng(20);
    ScratchDir dir;
    for (int round = 0; round < 8; ++round)
        for (Shape shape : shapes) {
            SCOPED_TRACE("shape " + std::to_string(shape) + " round " + std::to_string(round));
            const int n[3] = {2 + int(rng() % 30), 2 + int(rng() % 30), 2 + int(rng() % 30)};
            std::vector<double> axes[3];
            for (int a = 0; a < 3; ++a) axes[a] = Axis(shape, n[a], rng);
            const double* pts[3] = {axes[0].data(), axes[1].data(), axes[2].data()};
            const double t[3] = {1.5, -0.25, 1e-7};
            const bool translation = round % 2;
            const std::string path = dir / "KX3.grid.dat";
            FILE* file = std::fopen(path.c_str(), "w");
            wr_grid_file(file, translation, t, n, pts);
            std::fclose(file);

            // The generator's form, formatted value by value.
            const std::string dims = std::to_string(n[0]) + ' ' + std::to_string(n[1]) + ' ' +
                                     std::to_string(n[2]) + '\n';
            std::string text = (translation ? "# 1.500000 -0.250000 0.000000\n" : "\n") + dims;
            for (int a = 0; a < 3; ++a)
                for (int k = 0; k < n[2]; ++k)
                    for (int j = 0; j < n[1]; ++j)
                        for (int i = 0; i < n[0]; ++i)
                            text += Fmt(" %12.5f", axes[a][a == 0 ? i : a == 1 ? j : k]);
            ASSERT_EQ(ReadWholeFile(path), text + "\n# Num. of Body Cells:\n0\n");
            EXPECT_EQ(grid_file_size(translation, t, n, pts),
                      (long long)ReadWholeFile(path).size());

            // The run reads back the form without translation, holds it as axes, then rewrites
            // it blanked (the solver's form, never read back): each against the plain way.
            if (translation) continue;
            unsigned flags = 0;
            FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(path, flags, -1);
            const std::vector<float> plain = PlainRead(text);
            ASSERT_EQ(MeshValues(mesh), plain);
            FEL_pointer<FEL_mesh> held = GridAsAxes(mesh);
            ASSERT_NE(held.get(), mesh.get());
            ASSERT_EQ(MeshValues(held), plain);
            std::string blanked = "# 1.5 -0.25 1e-07\n" + dims;
            for (float v : plain) blanked += Fmt(" %.5f", v);
            blanked +=
                "\n# Num. of Body Cells: \n2\n# Body Cells ({I-index, J-index, K-index} of "
                "the cells)\n1, 1, 1\n2, 1, 1\n";
            std::vector<FEL_vector3<int>> cells = {{2, 1, 1}, {1, 1, 1}};
            for (FEL_pointer<FEL_mesh> grid : {mesh, held}) {
                OutputIBlankedGrid(path, grid, cells, true, true, 1.5, -0.25, 1e-7);
                ASSERT_EQ(ReadWholeFile(path), blanked);
            }
        }
}

// Largest accepted grid: 32767 cells on two axes (32768 points) and as many points on the third as
// keep the count within the mesh library's 2^31 - 1. Sizes past 2^31 must be exact; counts that
// can pass it must be held in 64 bits.
TEST(GridFile, SizesOfTheLargestAcceptedGridPassTwoToTheThirtyFirstExactly) {
    const int n[3] = {int(kMaxAxisCells + 1), int(kMaxAxisCells + 1),
                      int(kMaxGridPoints / ((kMaxAxisCells + 1) * (kMaxAxisCells + 1)))};
    const long long points = (long long)n[0] * n[1] * n[2];
    ASSERT_LE(points, kMaxGridPoints);
    std::vector<double> axes[3];
    long long expected = 1 + std::snprintf(nullptr, 0, "%d %d %d\n", n[0], n[1], n[2]) +
                         std::string("\n# Num. of Body Cells:\n0\n").size();
    for (int a = 0; a < 3; ++a) {
        for (int i = 0; i < n[a]; ++i) axes[a].push_back(i * 1e3);  // " %12.5f" of 13 to 18 bytes
        for (double v : axes[a]) expected += (long long)Fmt(" %12.5f", v).size() * (points / n[a]);
    }
    const double* pts[3] = {axes[0].data(), axes[1].data(), axes[2].data()};
    const double t[3] = {0, 0, 0};
    EXPECT_GT(expected, 40LL << 30);
    EXPECT_EQ(grid_file_size(false, t, n, pts), expected);

    // Each body may block every cell, and bodies overlap: two bodies pass 2^31 cells.
    const double twoBodies = 2.0 * (n[0] - 1) * (n[1] - 1) * (n[2] - 1);
    EXPECT_GE(double(std::numeric_limits<decltype(nBodyCells)>::max()), twoBodies);
}
