// The grid file: the grid held as axes, the sizes of the largest grid the worker accepts, and
// whole runs of the worker against plain per-value formatting and reading.
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

#include "FEL_curvilinear_mesh.h"
#include "RunGridGen.h"
#include "driver/GridGenRun.h"
#include "driver/Write.h"
#include "generator/gdcheck.h"
#include "generator/gdrecords.h"  // nBodyCells
#include "generator/gridwriter.h"
#include "readers/FEL_plot3d_text_reader.h"

namespace {

enum Shape { GRADED, LAYERED, SYMMETRIC, MIDPOINTS };

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

// A grid read back is held as its axes when every node lies on them; any other stays as read, and
// the blanked writer formats its nodes one by one. 2 x 2 x 2 nodes at 0 and 1.5, then node 7
// (the far corner) moved to x = 2.25.
TEST(GridFile, CartesianGridIsHeldAsAxesAndAnyOtherWrittenNodeByNode) {
    auto* xyz = new FEL_vector3<float>[8];
    for (int n = 0; n < 8; ++n) xyz[n] = {1.5f * (n & 1), 1.5f * (n >> 1 & 1), 1.5f * (n >> 2)};
    const FEL_pointer<FEL_mesh> grid(new FEL_curvilinear_mesh_xyz_layout(2, 2, 2, xyz));
    EXPECT_NE(GridAsAxes(grid).get(), grid.get());
    xyz[7].x = 2.25f;
    EXPECT_EQ(GridAsAxes(grid).get(), grid.get());
    std::string text = "# 1.5 -0.25 1e-07\n2 2 2\n";
    for (int a = 0; a < 3; ++a)
        for (int n = 0; n < 8; ++n) text += Fmt(" %.5f", xyz[n][a]);
    ScratchDir dir;
    std::vector<FEL_vector3<int>> cells = {{2, 1, 1}, {1, 1, 1}};
    OutputIBlankedGrid(dir / "grid", grid, cells, true, true, 1.5, -0.25, 1e-7);
    EXPECT_EQ(ReadWholeFile(dir / "grid"), text +
                                               "\n# Num. of Body Cells: \n2\n# Body Cells "
                                               "({I-index, J-index, K-index} of the cells)\n"
                                               "1, 1, 1\n2, 1, 1\n");
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
