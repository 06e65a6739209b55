// End-to-end runs of projects with surface bodies: the blocked cells in the grid and solver files.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "ScratchDir.h"

namespace {

using Corners = std::array<std::vector<double>, 3>;
struct Box {
    double lo[3], hi[3];
};

// Runs dir's project.Grid from dir; the status as a shell sees it (128 + signal when killed).
int RunWorker(const ScratchDir& dir) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(dir.Path().c_str()) != 0) _exit(120);
        const std::string project = dir / "project.Grid", rotor = dir / "rotor.SlvrRot";
        WriteWholeFile(rotor, "0\n");
        execl(KAVEX_GRIDGEN_EXE, KAVEX_GRIDGEN_EXE, "-Grid", project.c_str(), "-SlvrRot",
              rotor.c_str(), "-pth", dir.Path().c_str(), static_cast<char*>(nullptr));
        _exit(122);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// Grid specs refer to the body named B.
std::string Body(const std::string& type, const std::string& points, bool used = true,
                 const std::string& name = "B") {
    return "    New Body\n        name: " + name + "\n        type: " + type +
           "\n        Points File: " + points +
           "\n        used in solver: " + (used ? "True" : "False") + "\n    #\n";
}

// Each axis: 2 cells from L-1 to L0 of the first body, 4 in it, 2 from L1 to L2.
std::string Project(const std::string& bodies, const std::string& options = "") {
    std::string text =
        "Start Options\n    Debug Level: 0\n    Solver Input File: SolverGdInp.dat\n" + options +
        "End Options\nStart Body Definitions\n" + bodies + "    #\nEnd Body Definitions\n";
    for (const char* axis : {"X", "Y", "Z"}) {
        text += std::string("Body ") + axis + "-GridSpec\n";
        for (const char* spec :
             {"from: B L-1.0\n to: B L0.0\n number of Grids: 2\n", "in: B\n number of Grids: 4\n",
              "from: B L1.0\n to: B L2.0\n number of Grids: 2\n"})
            text += std::string("    New GridSpec\n ") + spec + " GP Ratio: 1.0\n    #\n";
        text += std::string("End ") + axis + "-Grid Spec\n";
    }
    return text;
}

// An ASCII STL box, two facets per face, drawn from its eight corners (bit a of c: hi on axis a).
std::string BoxStl(const Box& b) {
    static const int faces[6][4] = {{0, 2, 6, 4}, {1, 5, 7, 3}, {0, 4, 5, 1},
                                    {2, 3, 7, 6}, {0, 1, 3, 2}, {4, 6, 7, 5}};
    std::ostringstream out;
    out << "solid box\n";
    auto vertex = [&](int c) {
        out << "vertex " << (c & 1 ? b.hi[0] : b.lo[0]) << ' ' << (c & 2 ? b.hi[1] : b.lo[1]) << ' '
            << (c & 4 ? b.hi[2] : b.lo[2]) << '\n';
    };
    for (const auto& f : faces)
        for (const int t : {0, 1}) {
            out << "facet normal 0 0 0\nouter loop\n";
            vertex(f[0]), vertex(f[1 + t]), vertex(f[2 + t]);
            out << "endloop\nendfacet\n";
        }
    out << "endsolid box\n";
    return out.str();
}

// The corner values of each axis, from the coordinate line of a grid file.
Corners ReadCorners(const std::string& grid) {
    std::istringstream in(grid);
    std::string first;
    std::getline(in, first);
    int n[3];
    in >> n[0] >> n[1] >> n[2];
    std::vector<double> all(std::size_t(3) * n[0] * n[1] * n[2]);
    for (double& v : all) in >> v;
    Corners c;
    const std::size_t block = all.size() / 3;
    for (int i = 0; i < n[0]; ++i) c[0].push_back(all[i]);
    for (int j = 0; j < n[1]; ++j) c[1].push_back(all[block + std::size_t(n[0]) * j]);
    for (int k = 0; k < n[2]; ++k) c[2].push_back(all[2 * block + std::size_t(n[0]) * n[1] * k]);
    return c;
}

// The count and the list of the cells whose closed box meets a box, i rising, then j, then k.
std::string CellList(const Corners& c, const std::vector<Box>& boxes) {
    std::ostringstream cells;
    int count = 0;
    for (std::size_t i = 1; i < c[0].size(); ++i)
        for (std::size_t j = 1; j < c[1].size(); ++j)
            for (std::size_t k = 1; k < c[2].size(); ++k) {
                const std::size_t at[3] = {i, j, k};
                bool meets = false;
                for (const Box& b : boxes) {
                    bool all = true;
                    for (int a = 0; a < 3; ++a)
                        all = all && c[a][at[a] - 1] <= b.hi[a] && c[a][at[a]] >= b.lo[a];
                    meets = meets || all;
                }
                if (!meets) continue;
                ++count;
                cells << i << ", " << j << ", " << k << '\n';
            }
    return std::to_string(count) + "\n# Body Cells ({I-index, J-index, K-index} of the cells)\n" +
           cells.str();
}

std::string Tail(const std::string& text, const std::string& from) {
    const std::size_t at = text.find(from);
    return at == std::string::npos ? "" : text.substr(at);
}

const std::string kCube = std::string(KAVEX_SHARED_DATA) + "/stl/unit_cube.STL";
const Box kUnitCube = {{-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}};

Box Shifted(Box b, double by, double scale = 1.0) {
    for (int a = 0; a < 3; ++a) b.lo[a] = b.lo[a] * scale + by, b.hi[a] = b.hi[a] * scale + by;
    return b;
}

}  // namespace

TEST(FullPath, UnitCubeWholeFiles) {
    ScratchDir dir;
    WriteWholeFile(dir / "project.Grid", Project(Body("STL", kCube)));
    ASSERT_EQ(RunWorker(dir), 0);
    EXPECT_EQ(ReadWholeFile(dir / "Kavex3_GridGen.out"),
              "Vantor Version 0.9.15 (Beta) Build 396\n\nReading .Grid file (" +
                  (dir / "project.Grid") +
                  ")...\nReading bodies...\nWriting bounding boxes...\nBegin Grid Generation...\n"
                  "Reading KX3.grid.dat...\nTranslate bodies...\nWriting translated bodies...\n"
                  "Intersecting bodies with the grid...\nCalculating body cells...\nFinal "
                  "output...\nBody cells: \n216\nWriting grid...\n");
    EXPECT_EQ(ReadWholeFile(dir / "Kavex3_GridGen.err"), "");
    const std::string centre = "0  0\n0  0\n0  0\n0  0\n0  0\n";
    const std::string ring = "-0.5  -0.5\n-0.5  0.5\n0.5  0.5\n0.5  -0.5\n-0.5  -0.5\n";
    EXPECT_EQ(ReadWholeFile(dir / "1-x.cut"),
              "4  5\n-0.5\n" + centre + "-0.5\n" + ring + "0.5\n" + ring + "0.5\n" + centre);
    EXPECT_EQ(ReadWholeFile(dir / "Lcl2Gbl.dat"), "1.500000 1.500000 1.500000 \n");
    // The box [-0.5, 0.5] moved by 1.5: cells of 0.5 outside it, of 0.25 inside, a zero-width
    // cell at each end.
    const std::vector<double> line = {0, 0, 0.5, 1, 1.25, 1.5, 1.75, 2, 2.5, 3, 3};
    const Corners corners = {line, line, line};
    const std::string cells = CellList(corners, {Shifted(kUnitCube, 1.5)});
    std::string grid = "# 1.5 1.5 1.5\n11 11 11\n";
    char value[48];
    for (int a = 0; a < 3; ++a)
        for (int n = 0; n < 11 * 11 * 11; ++n) {
            const int at[3] = {n % 11, n / 11 % 11, n / 121};
            std::snprintf(value, sizeof value, " %.5f", line[at[a]]);
            grid += value;
        }
    EXPECT_EQ(ReadWholeFile(dir / "KX3.grid.dat"), grid + "\n# Num. of Body Cells: \n" + cells);
    std::string solver = "# Num. of X, Y & Z Cell-Widths: IE = 10; JE = 10; KE = 10\n";
    for (const char* axis :
         {"X-Cell-Widths:\n10\n# X", "Y-Cell-Widths:\n10\n# Y", "Z-Cell-Widths:\n10\n# Z"}) {
        solver += std::string("#\n# ") +
                  (axis[0] == 'X'   ? "IE"
                   : axis[0] == 'Y' ? "JE"
                                    : "KE") +
                  " = Num. of " + axis + "-Cell-Widths\n";
        for (int c = 1; c <= 10; ++c) {
            std::snprintf(value, sizeof value, "%3d%28g\n", c, line[c] - line[c - 1]);
            solver += value;
        }
    }
    EXPECT_EQ(ReadWholeFile(dir / "SolverGdInp.dat"),
              solver + "#\n# Num. of Body Cells:\n" + cells + "#\n# Number of Rotors:\n0\n");
    EXPECT_FALSE(PathExists(dir / "temp.Grid") || PathExists(dir / "temp.SlvrRot") ||
                 PathExists(dir / "temp.ClWdths"));
}

// Made bodies on the unit cube's grid: the lists in both files against the closed-box rule.
TEST(FullPath, MadeBodies) {
    const Box side = {{0.6, -0.2, -0.2}, {0.9, 0.2, 0.2}};
    const struct {
        const char* name;
        std::string bodies, options;
        std::vector<Box> blocked;  // in the grid's coordinates
    } cases[] = {
        {"two bodies",
         Body("STL", kCube) + Body("STL", "side.stl", true, "S"),
         "",
         {Shifted(kUnitCube, 1.5), Shifted(side, 1.5)}},
        {"unused body",
         Body("STL", kCube) + Body("STL", "side.stl", false, "S"),
         "",
         {Shifted(kUnitCube, 1.5)}},
        {"nothing used", Body("STL", kCube, false), "", {}},
        // The generator scales the box too; the translation is in the scaled units.
        {"conversion factor",
         Body("STL", kCube),
         "    Conversion Factor: (0.5, 0.5, 0.5)\n",
         {Shifted(kUnitCube, 0.75, 0.5)}},
        // The cut body's cells are the generator's: those inside its stack of planes, mirrored
        // into the zero-width end layer.
        {"mixed",
         Body("STL", kCube) + Body("XcutPlanes", "plate.cut", true, "P"),
         "",
         {Shifted(kUnitCube, 1.5), {{2.55, 1.3, 1.3}, {3.0, 1.7, 1.7}}}},
    };
    // The front end's cut file of body 2 in the mixed project: a square at x = 1.0 and 1.5.
    const std::string plate = "-0.25 -0.25\n0.25 -0.25\n0.25 0.25\n-0.25 0.25\n";
    for (const auto& c : cases) {
        ScratchDir dir;
        WriteWholeFile(dir / "side.stl", BoxStl(side));
        WriteWholeFile(dir / "2-x.cut", "2 4\n1.0\n" + plate + "1.5\n" + plate);
        WriteWholeFile(dir / "project.Grid", Project(c.bodies, c.options));
        ASSERT_EQ(RunWorker(dir), 0) << c.name;
        const std::string grid = ReadWholeFile(dir / "KX3.grid.dat");
        const std::string cells = CellList(ReadCorners(grid), c.blocked);
        EXPECT_EQ(Tail(grid, "\n# Num. of Body Cells: \n"), "\n# Num. of Body Cells: \n" + cells)
            << c.name;
        EXPECT_EQ(Tail(ReadWholeFile(dir / "SolverGdInp.dat"), "# Num. of Body Cells:\n"),
                  "# Num. of Body Cells:\n" + cells + "#\n# Number of Rotors:\n0\n")
            << c.name;
    }
}

// Real bodies: both files carry one list, i rising, then j, then k, each cell once, within the
// body's box; the closed unit sphere blocks every cell inside radius 0.98 (its faces lie beyond)
// and none wholly outside radius 1.
TEST(FullPath, RealBodies) {
    const std::string data = KAVEX_SHARED_DATA;
    for (const auto& [type, file] : std::vector<std::pair<std::string, std::string>>{
             {"STL", "/stl/unit_sphere.STL"},
             {"STL", "/stl/blade.stl"},
             {"STL", "/stl/bunny.stl"},
             {"Plot3D", "/plot3d/m100_refsurf_p3d.fmt"}}) {
        ScratchDir dir;
        WriteWholeFile(dir / "project.Grid", Project(Body(type, data + file)));
        ASSERT_EQ(RunWorker(dir), 0) << file;
        EXPECT_EQ(ReadWholeFile(dir / "Kavex3_GridGen.err"), "");
        const std::string grid = ReadWholeFile(dir / "KX3.grid.dat");
        std::string list = Tail(grid, "\n# Num. of Body Cells: \n").substr(24);
        const std::string solver =
            Tail(ReadWholeFile(dir / "SolverGdInp.dat"), "# Num. of Body Cells:\n");
        EXPECT_EQ(solver, "# Num. of Body Cells:\n" + list + "#\n# Number of Rotors:\n0\n") << file;
        EXPECT_NE(ReadWholeFile(dir / "Kavex3_GridGen.out")
                      .find("Body cells: \n" + list.substr(0, list.find('\n'))),
                  std::string::npos);

        const Corners c = ReadCorners(grid);
        std::istringstream cut(ReadWholeFile(dir / "1-x.cut")),
            shift(ReadWholeFile(dir / "Lcl2Gbl.dat"));
        std::vector<double> box{std::istream_iterator<double>(cut), {}};
        double t[3];
        shift >> t[0] >> t[1] >> t[2];
        const double lo[3] = {box[2], box[14], box[15]}, hi[3] = {box[24], box[18], box[19]};
        std::istringstream cells(list.substr(list.find(")\n") + 2));
        std::array<int, 3> at, last = {0, 0, 0};
        char comma;
        std::set<std::array<int, 3>> listed;
        while (cells >> at[0] >> comma >> at[1] >> comma >> at[2]) {
            EXPECT_LT(last, at) << file;
            last = at;
            listed.insert(at);
            for (int a = 0; a < 3; ++a)
                EXPECT_TRUE(c[a][at[a] - 1] <= hi[a] + t[a] + 1e-4 &&
                            c[a][at[a]] >= lo[a] + t[a] - 1e-4)
                    << file;
        }
        EXPECT_FALSE(listed.empty()) << file;
        if (file.find("sphere") == std::string::npos) continue;
        for (std::size_t i = 1; i < c[0].size(); ++i)
            for (std::size_t j = 1; j < c[1].size(); ++j)
                for (std::size_t k = 1; k < c[2].size(); ++k) {
                    double near = 0, far = 0;
                    const std::size_t n[3] = {i, j, k};
                    for (int a = 0; a < 3; ++a) {
                        const double lo = c[a][n[a] - 1] - t[a], hi = c[a][n[a]] - t[a];
                        near += lo > 0 ? lo * lo : hi < 0 ? hi * hi : 0;
                        far += std::max(lo * lo, hi * hi);
                    }
                    const std::array<int, 3> cell = {int(i), int(j), int(k)};
                    if (far < 0.98 * 0.98) {
                        EXPECT_TRUE(listed.count(cell)) << i << " " << j << " " << k;
                    }
                    if (near > 1.0) {
                        EXPECT_FALSE(listed.count(cell)) << i << " " << j << " " << k;
                    }
                }
    }
}

TEST(FullPath, UnreadableBodyEndsWithTheExceptionText) {
    ScratchDir dir;
    WriteWholeFile(dir / "project.Grid", Project(Body("STL", dir / "missing.stl")));
    EXPECT_EQ(RunWorker(dir), 134);
    // The runtime's line, then the message, which names the file and the throwing source line.
    const std::string err = ReadWholeFile(dir / "Kavex3_GridGen.err");
    const std::string head =
        "terminate called after throwing an instance of 'FEL_type_detection_error'\n"
        "  what():  Could not determine the filetype of " +
        (dir / "missing.stl") + ". Failed in ";
    EXPECT_EQ(err.substr(0, head.size()), head);
    EXPECT_NE(err.find("FEL_file_type.cpp on line "), std::string::npos);
    EXPECT_EQ(err.back(), '\n');
    EXPECT_TRUE(PathExists(dir / "temp.Grid"));
}
