// End-to-end runs of projects with surface bodies: the blocked cells in the grid and solver files.
#include <gtest/gtest.h>

#include <array>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "RunGridGen.h"

namespace {

using Corners = std::vector<double>[3];
struct Box {
    double lo[3], hi[3];
};

// Each axis: 2 cells from L-1 to L0 of body B, 4 in it, 2 from L1 to L2.
std::string BProject(const std::string& bodies, const std::string& options = "") {
    return Project("    Debug Level: 0\n    Solver Input File: SolverGdInp.dat\n" + options, bodies,
                   {"from: B L-1.0\nto: B L0.0\nnumber of Grids: 2\nGP Ratio: 1.0\n",
                    "in: B\nnumber of Grids: 4\nGP Ratio: 1.0\n",
                    "from: B L1.0\nto: B L2.0\nnumber of Grids: 2\nGP Ratio: 1.0\n"});
}

// An ASCII STL box, two facets per face, drawn from its eight corners (bit a of c: hi on axis a).
std::string BoxStl(const Box& b) {
    static const int faces[6][4] = {{0, 2, 6, 4}, {1, 5, 7, 3}, {0, 4, 5, 1},
                                    {2, 3, 7, 6}, {0, 1, 3, 2}, {4, 6, 7, 5}};
    std::string text = "solid box\n";
    auto vertex = [&](int c) {
        return Fmt("vertex %g %g %g\n", c & 1 ? b.hi[0] : b.lo[0], c & 2 ? b.hi[1] : b.lo[1],
                   c & 4 ? b.hi[2] : b.lo[2]);
    };
    for (const auto& f : faces)
        for (const int t : {0, 1})
            text += "facet normal 0 0 0\nouter loop\n" + vertex(f[0]) + vertex(f[1 + t]) +
                    vertex(f[2 + t]) + "endloop\nendfacet\n";
    return text + "endsolid box\n";
}

// The corner values of each axis, from the coordinate line of a grid file.
void ReadCorners(const std::string& grid, Corners& c) {
    std::istringstream in(grid.substr(grid.find('\n')));
    int n[3];
    in >> n[0] >> n[1] >> n[2];
    const std::vector<double> all{std::istream_iterator<double>(in), {}};
    const std::size_t block = std::size_t(n[0]) * n[1] * n[2];
    for (int a = 0; a < 3; ++a)
        for (int i = 0; i < n[a]; ++i)
            c[a].push_back(all[a * block + std::size_t(i) * (a == 0   ? 1
                                                             : a == 1 ? n[0]
                                                                      : n[0] * n[1])]);
}

// The cells whose closed box meets a box, "I, J, K", i rising, then j, then k.
std::vector<std::string> Cells(const Corners& c, const std::vector<Box>& boxes) {
    std::vector<std::string> cells;
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
                if (meets) cells.push_back(Fmt("%zu, %zu, %zu", i, j, k));
            }
    return cells;
}

// The grid file's tail after its coordinates.
std::string GridTail(const std::vector<std::string>& cells) {
    std::string text = Fmt("\n# Num. of Body Cells: \n%zu\n", cells.size()) +
                       "# Body Cells ({I-index, J-index, K-index} of the cells)\n";
    for (const std::string& cell : cells) text += cell + "\n";
    return text;
}

std::string Tail(const std::string& text, const std::string& from) {
    const std::size_t at = text.find(from);
    return at == std::string::npos ? "" : text.substr(at);
}

const std::string kCube = std::string(KAVEX_TEST_DATA) + "/stl/unit_cube.STL";
const Box kUnitCube = {{-0.5, -0.5, -0.5}, {0.5, 0.5, 0.5}};

Box Moved(Box b, double by, double scale = 1.0) {
    for (int a = 0; a < 3; ++a) b.lo[a] = b.lo[a] * scale + by, b.hi[a] = b.hi[a] * scale + by;
    return b;
}

}  // namespace

TEST(FullPath, UnitCubeWholeFiles) {
    GridGenRun run(BProject(BodyText("B", "STL", kCube)));
    ASSERT_EQ(run.Run().status, 0);
    EXPECT_EQ(run.Read("Kavex3_GridGen.out"),
              "Vantor Version 0.9.15 (Beta) Build 396\n\nReading .Grid file (" + run.strProject +
                  ")...\nReading bodies...\nWriting bounding boxes...\nBegin Grid Generation...\n"
                  "Reading KX3.grid.dat...\nTranslate bodies...\nWriting translated bodies...\n"
                  "Intersecting bodies with the grid...\nCalculating body cells...\nFinal "
                  "output...\nBody cells: \n216\nWriting grid...\n");
    EXPECT_EQ(run.Read("Kavex3_GridGen.err"), "");
    const std::string centre = "0  0\n0  0\n0  0\n0  0\n0  0\n";
    const std::string ring = "-0.5  -0.5\n-0.5  0.5\n0.5  0.5\n0.5  -0.5\n-0.5  -0.5\n";
    EXPECT_EQ(run.Read("1-x.cut"),
              "4  5\n-0.5\n" + centre + "-0.5\n" + ring + "0.5\n" + ring + "0.5\n" + centre);
    EXPECT_EQ(run.Read("Lcl2Gbl.dat"), "1.500000 1.500000 1.500000 \n");
    // The box [-0.5, 0.5] moved by 1.5: cells of 0.5 outside it, of 0.25 inside, a zero-width
    // cell at each end. The cube's own cells are sealed inside the touched ones.
    const std::vector<double> line = {0, 0, 0.5, 1, 1.25, 1.5, 1.75, 2, 2.5, 3, 3};
    const Corners corners = {line, line, line};
    const std::vector<std::string> cells = Cells(corners, {Moved(kUnitCube, 1.5)});
    std::string grid = "# 1.5 1.5 1.5\n11 11 11\n";
    for (int a = 0; a < 3; ++a)
        for (int n = 0; n < 11 * 11 * 11; ++n)
            grid += Fmt(" %.5f", line[a == 0 ? n % 11 : a == 1 ? n / 11 % 11 : n / 121]);
    EXPECT_EQ(run.Read("KX3.grid.dat"), grid + GridTail(cells));
    EXPECT_EQ(run.Read("SolverGdInp.dat"), SolverFile(corners, cells));
    EXPECT_FALSE(run.Temporaries());
}

// Made bodies on the unit cube's grid: the lists in both files against the closed-box rule.
TEST(FullPath, MadeBodies) {
    const Box side = {{0.6, -0.2, -0.2}, {0.9, 0.2, 0.2}};
    const std::string plate = "-0.25 -0.25\n0.25 -0.25\n0.25 0.25\n-0.25 0.25\n";
    const struct {
        const char* name;
        std::string bodies, options;
        std::vector<Box> blocked;  // in the grid's coordinates
    } cases[] = {
        {"two bodies",
         BodyText("B", "STL", kCube) + BodyText("S", "STL", "side.stl"),
         "",
         {Moved(kUnitCube, 1.5), Moved(side, 1.5)}},
        {"unused body",
         BodyText("B", "STL", kCube) + BodyText("S", "STL", "side.stl", false),
         "",
         {Moved(kUnitCube, 1.5)}},
        {"nothing used", BodyText("B", "STL", kCube, false), "", {}},
        // The generator scales the box too; the translation is in the scaled units.
        {"conversion factor",
         BodyText("B", "STL", kCube),
         "    Conversion Factor: (0.5, 0.5, 0.5)\n",
         {Moved(kUnitCube, 0.75, 0.5)}},
        // Body 2's cut file, as the front end placed it: a square at x = 1.0 and 1.5. Its cells
        // are the generator's: those inside the stack, mirrored into the zero-width end layer.
        {"mixed",
         BodyText("B", "STL", kCube) + BodyText("P", "XcutPlanes", "plate.cut"),
         "",
         {Moved(kUnitCube, 1.5), {{2.55, 1.3, 1.3}, {3.0, 1.7, 1.7}}}},
    };
    for (const auto& c : cases) {
        std::string project = BProject(c.bodies, c.options);
        // Without a solver input file of its own the project gets the generator's default.
        if (std::string(c.name) == "two bodies") project.erase(project.find("    Solver"), 39);
        GridGenRun run(project);
        run.Write("side.stl", BoxStl(side));
        run.Write("2-x.cut", "2 4\n1.0\n" + plate + "1.5\n" + plate);
        ASSERT_EQ(run.Run().status, 0) << c.name;
        const std::string grid = run.Read("KX3.grid.dat");
        Corners corners;
        ReadCorners(grid, corners);
        const std::vector<std::string> cells = Cells(corners, c.blocked);
        EXPECT_EQ(Tail(grid, "\n# Num"), GridTail(cells)) << c.name;
        EXPECT_EQ(run.Read("SolverGdInp.dat"), SolverFile(corners, cells)) << c.name;
        EXPECT_FALSE(run.Temporaries()) << c.name;
    }
}

// Real bodies: both files carry one list, i rising, then j, then k, each cell once, within the
// body's box; the closed unit sphere blocks every cell inside radius 0.98 (its faces lie beyond)
// and none wholly outside radius 1.
TEST(FullPath, RealBodies) {
    const std::string data = KAVEX_TEST_DATA;
    for (const auto& [type, file] : std::vector<std::pair<std::string, std::string>>{
             {"STL", "/stl/unit_sphere.STL"},
             {"STL", "/stl/blade.stl"},
             {"STL", "/stl/bunny.stl"},
             {"Plot3D", "/plot3d/m100_refsurf_p3d.fmt"}}) {
        GridGenRun run(BProject(BodyText("B", type, data + file)));
        ASSERT_EQ(run.Run().status, 0) << file;
        EXPECT_EQ(run.Read("Kavex3_GridGen.err"), "");
        const std::string grid = run.Read("KX3.grid.dat");
        Corners c;
        ReadCorners(grid, c);
        std::istringstream cut(run.Read("1-x.cut")), shift(run.Read("Lcl2Gbl.dat"));
        const std::vector<double> box{std::istream_iterator<double>(cut), {}};
        double t[3];
        shift >> t[0] >> t[1] >> t[2];
        const double lo[3] = {box[2], box[14], box[15]}, hi[3] = {box[24], box[18], box[19]};
        std::istringstream list(Tail(grid, "\n# Num").substr(24));
        std::size_t count;
        list >> count;
        list.ignore(100, ')');
        std::vector<std::string> cells;
        std::set<std::array<int, 3>> listed;
        std::array<int, 3> at, last = {0, 0, 0};
        char comma;
        while (list >> at[0] >> comma >> at[1] >> comma >> at[2]) {
            EXPECT_LT(last, at) << file;
            last = at;
            listed.insert(at);
            cells.push_back(Fmt("%d, %d, %d", at[0], at[1], at[2]));
            for (int a = 0; a < 3; ++a)
                EXPECT_TRUE(c[a][at[a] - 1] <= hi[a] + t[a] + 1e-4 &&
                            c[a][at[a]] >= lo[a] + t[a] - 1e-4)
                    << file;
        }
        EXPECT_EQ(cells.size(), count);
        EXPECT_FALSE(cells.empty()) << file;
        // Widths in the solver file keep all digits, the grid file five decimals: the tails only.
        EXPECT_EQ(Tail(run.Read("SolverGdInp.dat"), "# Num. of Body"),
                  Tail(SolverFile(c, cells), "# Num. of Body"))
            << file;
        if (file.find("sphere") == std::string::npos) continue;
        for (int n = 0; n < int((c[0].size() - 1) * (c[1].size() - 1) * (c[2].size() - 1)); ++n) {
            const int k = n % int(c[2].size() - 1),
                      j = n / int(c[2].size() - 1) % int(c[1].size() - 1),
                      i = n / int((c[2].size() - 1) * (c[1].size() - 1));
            double near = 0, far = 0;
            for (const auto& [a, v] : {std::pair{0, i}, {1, j}, {2, k}}) {
                const double low = c[a][v] - t[a], high = c[a][v + 1] - t[a];
                near += low > 0 ? low * low : high < 0 ? high * high : 0;
                far += std::max(low * low, high * high);
            }
            const bool blocked = listed.count({i + 1, j + 1, k + 1}) != 0;
            EXPECT_TRUE((far >= 0.98 * 0.98 || blocked) && (near <= 1.0 || !blocked)) << n;
        }
    }
}
