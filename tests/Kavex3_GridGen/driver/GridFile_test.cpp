// The grid file both ways: the generator's and the blanked grid's writers (values formatted once),
// the reader (repeated tokens not converted again) and the grid held as axes, against plain
// per-value formatting and reading, alone and in whole runs of the worker; and the sizes of the
// largest grid the worker accepts.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <boost/filesystem.hpp>
#include <cstdlib>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "FEL_axis_aligned_mesh.h"
#include "RunGridGen.h"
#include "driver/GridGenRun.h"
#include "driver/Write.h"
#include "generator/gdcheck.h"
#include "generator/gdrecords.h"  // nBodyCells
#include "generator/gridwriter.h"
#include "readers/FEL_plot3d_text_reader.h"
#include "readers/FEL_reader.h"

namespace {

enum Shape { GRADED, LAYERED, SYMMETRIC, MIDPOINTS, ODD };

// One axis: graded widths; layers with zero-width cells and runs of equal values; mirrored about 0
// with values that print as "-0.00000"; odd multiples of 1/64, whose sixth decimal is a 5 that
// "%.5f" must round exactly (as floats too); odd values, unordered.
std::vector<double> Axis(Shape shape, int n, std::mt19937& rng) {
    std::uniform_real_distribution<double> u(0.0, 1.0);
    std::vector<double> v(n);
    double x = (u(rng) - 0.5) * 1e4, w = u(rng) + 1e-3, r = 0.8 + 0.4 * u(rng);
    const long m = std::lround(u(rng) * 1e6);
    const double odd[] = {-3.0, -1e-7, 0.123456789, 12345678.9, 1e20, -0.000005, 2.5};
    for (int i = 0; i < n; ++i, x += w, w *= r)
        v[i] = shape == SYMMETRIC   ? (2.0 * i - (n - 1)) * (u(rng) < 0.2 ? 1e-6 : w + 0.1)
               : shape == MIDPOINTS ? (2 * (i + m) + 1) / 64.0
               : shape == ODD       ? odd[i % 7]
               : shape == LAYERED && i > 0 && (i == 1 || i == n - 1 || u(rng) < 0.3) ? v[i - 1]
                                                                                     : x;
    return v;
}

// The plain reading: every number after the dimension line converted on its own, as "%f" does.
std::vector<float> PlainRead(const std::string& text) {
    const char* p = text.c_str() + text.find('\n', text.find('\n') + 1) + 1;
    std::vector<float> v;
    for (char* end;; p = end) {
        const float f = std::strtof(p, &end);
        if (end == p) return v;
        v.push_back(f);
    }
}

// What a mesh holds, in the file's order: all x, all y, all z.
std::vector<float> MeshValues(FEL_pointer<FEL_mesh> mesh) {
    int n[3];
    mesh->get_structured_dimensions(n);
    std::vector<float> v;
    FEL_vector3<float> p;
    for (int a = 0; a < 3; ++a)
        for (int k = 0; k < n[2]; ++k)
            for (int j = 0; j < n[1]; ++j)
                for (int i = 0; i < n[0]; ++i)
                    if (mesh->coordinates_at_vertex_cell(FEL_vertex_cell(i, j, k), &p))
                        v.push_back(p[a]);
    return v;
}

// Every file a run of the worker leaves in dir, by name; its exit status under "status".
std::map<std::string, std::string> WholeRun(const ScratchDir& dir, bool plain) {
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        plain_grid_text = FEL_plot3d_text_plain = plain;
        std::string args[] = {"Kavex3_GridGen",      "-Grid", dir / "proj.Grid", "-SlvrRot",
                              dir / "rotor.SlvrRot", "-pth",  dir.Path()};
        char* argv[] = {args[0].data(), args[1].data(), args[2].data(), args[3].data(),
                        args[4].data(), args[5].data(), args[6].data(), nullptr};
        // Whatever the run throws ends the child here, not in the test's own harness.
        try {
            _exit(chdir(dir.Path().c_str()) == 0 ? GridGenMain(7, argv) : 120);
        } catch (...) {
            _exit(121);
        }
    }
    int status = 0;
    waitpid(pid, &status, 0);
    std::map<std::string, std::string> files = ReadFolder(dir.Path());
    files["status"] = std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1);
    return files;
}

}  // namespace

TEST(GridFile, WritersReaderAndAxesMatchThePlainFormattingAndReading) {
    std::mt19937 rng(20);
    ScratchDir dir;
    const std::string path = dir / "KX3.grid.dat";
    for (int round = 0; round < 10; ++round)
        for (Shape shape : {GRADED, LAYERED, SYMMETRIC, MIDPOINTS, ODD}) {
            SCOPED_TRACE("shape " + std::to_string(shape) + " round " + std::to_string(round));
            const int n[3] = {2 + int(rng() % 30), 2 + int(rng() % 30), 2 + int(rng() % 30)};
            std::vector<double> axes[3];
            for (int a = 0; a < 3; ++a) axes[a] = Axis(shape, n[a], rng);
            const double* pts[3] = {axes[0].data(), axes[1].data(), axes[2].data()};
            const double t[3] = {1.5, -0.25, 1e-7};
            const bool translation = round % 2;
            FILE* file = std::fopen(path.c_str(), "w");
            wr_grid_file(file, translation, t, n, pts);
            std::fclose(file);
            const std::string dims = Fmt("%d %d %d\n", n[0], n[1], n[2]);
            std::string text = (translation ? "# 1.500000 -0.250000 0.000000\n" : "\n") + dims;
            for (int a = 0; a < 3; ++a)
                for (int node = 0; node < n[0] * n[1] * n[2]; ++node)
                    text += Fmt(" %12.5f", axes[a][a == 0   ? node % n[0]
                                                   : a == 1 ? node / n[0] % n[1]
                                                            : node / n[0] / n[1]]);
            ASSERT_EQ(ReadWholeFile(path), text + "\n# Num. of Body Cells:\n0\n");
            EXPECT_EQ(grid_file_size(translation, t, n, pts), (long long)(text.size() + 25));
            if (translation) continue;  // the run reads back only the form without it

            unsigned flags = 0;
            FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(path, flags, -1);
            std::vector<float> plain = PlainRead(text);
            ASSERT_EQ(MeshValues(mesh), plain);
            FEL_pointer<FEL_mesh> held = GridAsAxes(mesh);
            ASSERT_NE(held.get(), mesh.get());
            // Midpoints as floats as well: the blanked grid formats the floats it holds.
            float* f[3];
            for (int a = 0; a < 3; ++a) {
                f[a] = new float[n[a]];
                for (int i = 0; i < n[a]; ++i) f[a][i] = float(axes[a][i]);
            }
            FEL_pointer<FEL_mesh> floats(new FEL_axis_aligned_mesh(
                new FEL_irregular_axis(n[0], f[0]), new FEL_irregular_axis(n[1], f[1]),
                new FEL_irregular_axis(n[2], f[2]), "floats"));
            for (FEL_pointer<FEL_mesh> grid : {mesh, held, floats}) {
                if (grid.get() == floats.get()) plain = MeshValues(floats);
                ASSERT_EQ(MeshValues(grid), plain);
                std::vector<FEL_vector3<int>> cells = {{2, 1, 1}, {1, 1, 1}};
                OutputIBlankedGrid(path, grid, cells, true, true, 1.5, -0.25, 1e-7);
                std::string blanked = "# 1.5 -0.25 1e-07\n" + dims;
                for (float v : plain) blanked += Fmt(" %.5f", v);
                ASSERT_EQ(ReadWholeFile(path),
                          blanked +
                              "\n# Num. of Body Cells: \n2\n# Body Cells ({I-index, "
                              "J-index, K-index} of the cells)\n1, 1, 1\n2, 1, 1\n");
            }
        }
}

// The largest accepted grids: 32768 x 32767 x 2 points, whose file passes 2^31 bytes and must be
// sized exactly; 1290^3 points, whose cells two overlapping bodies may block more than 2^31 times.
TEST(GridFile, SizesOfTheLargestAcceptedGridsPassTwoToTheThirtyFirst) {
    const int n[3] = {int(kMaxAxisCells + 1), int(kMaxAxisCells), 2};
    const long long points = (long long)n[0] * n[1] * n[2];
    ASSERT_LE(points, kMaxGridPoints);
    std::vector<double> axes[3];
    long long size = std::string("\n32768 32767 2\n\n# Num. of Body Cells:\n0\n").size();
    for (int a = 0; a < 3; ++a)
        for (int i = 0; i < n[a]; ++i) {
            axes[a].push_back(i * 1e3);  // " %12.5f" of 13 to 18 bytes
            size += (long long)Fmt(" %12.5f", i * 1e3).size() * (points / n[a]);
        }
    const double* pts[3] = {axes[0].data(), axes[1].data(), axes[2].data()};
    const double t[3] = {0, 0, 0};
    EXPECT_GT(size, 40LL << 30);
    EXPECT_EQ(grid_file_size(false, t, n, pts), size);

    const long long c = 1290;
    ASSERT_LE(c * c * c, kMaxGridPoints);
    const double blocked = 2.0 * (c - 1) * (c - 1) * (c - 1);
    EXPECT_GT(blocked, double(std::numeric_limits<int>::max()));
    EXPECT_GE(double(std::numeric_limits<decltype(nBodyCells)>::max()), blocked);
}

// The worker on the unit cube, graded, layered, symmetric, and with every line at an odd multiple
// of 1/64 (a rounding midpoint of both five-decimal forms): the same files with the plain paths.
TEST(GridFile, WholeRunsMatchThePlainTextPaths) {
    std::mt19937 rng(2020);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    for (int round = 0; round < 2; ++round)
        for (Shape shape : {GRADED, LAYERED, SYMMETRIC, MIDPOINTS}) {
            SCOPED_TRACE("shape " + std::to_string(shape) + " round " + std::to_string(round));
            const bool uniform = shape == MIDPOINTS;
            const std::string ratio = uniform ? "1.0" : Fmt("%.3f", 1.05 + 0.2 * u(rng));
            const std::string core = uniform ? "64" : std::to_string(3 + rng() % 9);
            const std::string outer = uniform ? "4" : std::to_string(2 + rng() % 5);
            // Outer blocks of up to 200 cube lengths give values of six and more digits.
            const double reach = uniform ? 0.5 : 1 + 199 * u(rng);
            const std::string before = Fmt("%.4f", -reach), after = Fmt("%.4f", 1 + reach);
            const std::string symmetry =
                shape == SYMMETRIC ? " Maintain Symmetry About: B L0.5\n" : "";
            const std::string project = Project(
                Fmt("    Debug Level: %d\n    Solver Input File: SolverGdInp.dat\n", round) +
                    (shape == LAYERED ? "    Layer File: layers.dat\n" : ""),
                BodyText("B", "STL", KAVEX_TEST_DATA "/stl/unit_cube.STL"),
                {" from: B L" + before + "\n to: B L0.0\n number of Grids: " + outer +
                     "\n GP Ratio: -" + ratio + "\n",
                 " in: B\n number of Grids: " + core + "\n GP Ratio: 1.0\n" + symmetry,
                 " from: B L1.0\n to: B L" + after + "\n number of Grids: " + outer +
                     "\n GP Ratio: " + ratio + "\n"});
            std::string layers;
            for (int list = 0; list < 6; ++list)
                layers += "1\n1 " + Fmt("%.4f", 0.5 + u(rng)) + " 1.0 " +
                          std::to_string(2 + rng() % 3) + " " + (list % 2 ? "1.0" : ratio) + "\n";
            ScratchDir dir;
            const std::pair<std::string, std::string> inputs[] = {
                {"proj.Grid", project}, {"rotor.SlvrRot", "0\n"}, {"layers.dat", layers}};
            std::map<std::string, std::string> runs[2];
            for (bool plain : {true, false}) {
                boost::filesystem::remove_all(dir.Path());
                boost::filesystem::create_directory(dir.Path());
                for (const auto& [name, text] : inputs) WriteWholeFile(dir / name, text);
                runs[plain] = WholeRun(dir, plain);
            }
            ASSERT_EQ(runs[0]["status"], "0") << runs[0]["Kavex3_GridGen.err"];
            EXPECT_NE(runs[0]["KX3.grid.dat"].find("# Num. of Body Cells: \n"), std::string::npos);
            EXPECT_EQ(runs[0].size(), runs[1].size());
            for (const auto& [name, text] : runs[1]) EXPECT_TRUE(runs[0][name] == text) << name;
        }
}
