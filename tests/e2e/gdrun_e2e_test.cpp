// End-to-end runs of the executable on cut-body projects: every output file compared byte for
// byte with files built here from the grid rules, by independent arithmetic and formatting.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "RunGridGen.h"

namespace {

using Pts = std::vector<double>;

// The body of every project: a cube [0,10]^3 as two X cut planes of the square (Y, Z).
//   Z
//   10 +-----+        planes at X = 0 and X = 10
//      |     |
//    0 +-----+ Y
//      0     10
const char* kCube = "2 5\n0\n0 0\n0 10\n10 10\n10 0\n0 0\n10\n0 0\n0 10\n10 10\n10 0\n0 0\n";

// ---- Project text -------------------------------------------------------------------------

std::string spec(const std::string& from, const std::string& to, const std::string& nGds,
                 const std::string& extra = "") {
    return "from: Box L" + from + "\nto: Box L" + to + "\nnumber of Grids: " + nGds + "\n" + extra;
}

// The options, the cube as body "Box" not used in the solver, and the specs of each axis.
std::string cube_project(int debugLevel, const std::string& start, bool layers,
                         const std::vector<std::string>& x, const std::vector<std::string>& y,
                         const std::vector<std::string>& z) {
    return Project(Fmt("Grid Start Point: %s\nDebug Level: %d\n", start.c_str(), debugLevel) +
                       (layers ? "Layer File: layers.dat\n" : ""),
                   BodyText("Box", "XcutPlanes", "cube.cut", false), x, y, z);
}

// One run of a project on the cube with the given layer file; it says nothing on its own streams
// and leaves the project as it was.
struct RunDir : GridGenRun {
    RunDir(const std::string& project, const std::string& layers = "")
        : GridGenRun(project, {kCube}, layers) {
        const RunResult r = Run();
        EXPECT_EQ(r.strStdout + r.strStderr, "");
        EXPECT_EQ(Read("proj.Grid"), project);
        status = r.status;
    }
    int status;
};

// ---- Grid rules, worked independently ------------------------------------------------------

// A position "Box L v" on a cube axis [0, 10].
double at(double v) {
    return 0.0 + (10.0 - 0.0) * v;
}

// Inner points of n cells over [from, to): uniform by repeated addition, or graded by ratio r.
void cells(Pts& out, double from, double to, int n, double r = 1.0) {
    out.push_back(from);
    double x = from;
    if (r == 1.0) {
        for (int k = 1; k < n; ++k) out.push_back(x = x + (to - from) / n);
        return;
    }
    std::vector<double> w(n);
    double sum = 0.0;
    for (int k = 0; k < n; ++k) sum += (w[k] = k == 0 ? 1.0 : w[k - 1] * r);
    for (int k = 0; k + 1 < n; ++k) out.push_back(x = x + w[k] * ((to - from) / sum));
}

struct Axis {
    Pts line, before, after, final;
    double start = 0.0, t = 0.0;
    // Corner points: start twice, before-widths, shifted line, after-widths, last point again.
    void finish() {
        final = {start, start};
        for (double w : before) final.push_back(final.back() + w);
        t = final.back() - line[0];
        final.pop_back();
        for (double p : line) final.push_back(p + t);
        for (double w : after) final.push_back(final.back() + w);
        final.push_back(final.back());
    }
};

std::string column(const Pts& x, int i) {
    const int n = int(x.size());
    if (i >= n) return Fmt(" %18s %18s %18s", " ", " ", " ");
    if (i == n - 1) return Fmt(" %18.12G %18.12G %18s", x[i], 0.0, "N/A");
    if (i == 0) return Fmt(" %18.12G %18.12G %18s", x[0], x[1] - x[0], "N/A");
    const double w = x[i + 1] - x[i];
    if (w == 0) return Fmt(" %18.12G %18.12G %18s", x[i], w, "infinity");
    return Fmt(" %18.12G %18.12G %18.12G", x[i], w, (x[i] - x[i - 1]) / w);
}

std::string corner_table(const Axis a[3]) {
    std::string text = Fmt("\nNum. Of I, J, K Corner Points: IE = %d; JE = %d; KE = %d\n",
                           int(a[0].final.size()), int(a[1].final.size()), int(a[2].final.size()));
    text += "\nSeq";
    for (char c : {'X', 'Y', 'Z'})
        text += Fmt(" %18s %18s %18s", Fmt("%c Corner-Pts", c).c_str(), Fmt("%c Widths", c).c_str(),
                    Fmt("%cW[(n-1)/n]", c).c_str());
    text += "\n";
    const size_t rows = std::max({a[0].final.size(), a[1].final.size(), a[2].final.size()});
    for (size_t n = 0; n < rows; ++n)
        text += Fmt("%3d", int(n + 1)) + column(a[0].final, int(n)) + column(a[1].final, int(n)) +
                column(a[2].final, int(n)) + "\n";
    return text +
           "\nBody Cells (adjusted to Solver F77 array starting at 1 instead of 0)\nNum. of Body "
           "Cells: 0\n";
}

void expect_files(const RunDir& run, const Axis a[3], const std::string& debug) {
    const Pts corners[3] = {a[0].final, a[1].final, a[2].final};
    EXPECT_EQ(run.Read("KX3.grid.dat"),
              GridFile(corners, Fmt("# %f %f %f", a[0].t, a[1].t, a[2].t)));
    EXPECT_EQ(run.Read("SolverGdInp.dat"), SolverFile(corners));
    EXPECT_EQ(run.Read("Lcl2Gbl.dat"), Fmt("%f %f %f \n", a[0].t, a[1].t, a[2].t));
    EXPECT_EQ(run.Read("Kavex3_GridGen.out"), run.DriverLog() + debug);
    EXPECT_EQ(run.Read("Kavex3_GridGen.err"), "");
    EXPECT_FALSE(run.Temporaries());
}

TEST(GdRunE2E, UniformGradedOverlappingForcedFractionalAndReversedSpecs) {
    // X: 10 cells over the cube and 10 more over [4,6]: pieces of 4, 10 and 4 cells.
    // Y: 5 cells of ratio 1.2 with a forced point at 5: 3.0468 and 1.9532 cells, rounded to 3, 2.
    // Z: 3.5 cells over [0,7], rounded to 4; "from 10 to 7" with ratio 2 is [7,10] with ratio 0.5.
    // No layer file: no layers.
    const std::string project =
        cube_project(0, "(-5.0,1.5,100.0)", false, {spec("0", "1", "10"), spec("0.4", "0.6", "10")},
                     {spec("0", "1", "5", "GP Ratio: 1.2\n"), spec("0.5", "0.5", "0")},
                     {spec("0", "0.7", "3.5"), spec("1", "0.7", "3", "GP Ratio: 2\n")});
    RunDir run(project);
    ASSERT_EQ(run.status, 0) << run.Read("Kavex3_GridGen.err");

    Axis a[3];
    a[0].start = -5.0, a[1].start = 1.5, a[2].start = 100.0;
    cells(a[0].line, at(0), at(0.4), 4);
    cells(a[0].line, at(0.4), at(0.6), 10);
    cells(a[0].line, at(0.6), at(1), 4);
    a[0].line.push_back(at(1));
    cells(a[1].line, at(0), at(0.5), 3, 1.2);
    cells(a[1].line, at(0.5), at(1), 2, 1.2);
    a[1].line.push_back(at(1));
    cells(a[2].line, at(0), at(0.7), 4);
    cells(a[2].line, at(0.7), at(1), 3, 1.0 / 2);
    a[2].line.push_back(at(1));
    for (Axis& axis : a) axis.finish();
    expect_files(run, a, "");
}

const char* kLayers =
    "# X before: a chain of 2 cells ratio 2 into 2 cells ratio -1.25, length 3*1 + 1*1\n"
    "2\n1 3.0 1.0 -2 2\n2 1.0 1.0 2 -1.25\n"
    "# Y before: one layer, ratio 0 meaning 1\n1\n1 2 2 4 0\n"
    "# Z before\n0\n"
    "# X after: one graded layer\n1\n1 7 1 3 2\n"
    "# Y after\n0\n"
    "# Z after: negative count on the last layer\n1\n1 1 3 -3 1\n";

void layer_widths(Axis a[3]) {
    // X before: raw widths 1, 2 | 2, 1.6, scaled to 4 over their sum.
    const double raw[4] = {1.0, 2.0, 2.0, 2.0 * (-1.0 / -1.25)};
    const double sum = raw[0] + raw[1] + raw[2] + raw[3];
    for (double w : raw) a[0].before.push_back(w * (4.0 / sum));
    a[1].before = {1.0, 1.0, 1.0, 1.0};
    a[0].after = {1.0, 2.0, 4.0};
    a[2].after = {1.0, 1.0, 1.0};
}

TEST(GdRunE2E, SymmetryAndLayersWithTheCornerTable) {
    // X: 7 cells over [2,10] kept symmetric about 5: folded pieces [0,2] with 1.75 cells (from
    // the mirror [0,8]) and [2,5] with 2.625 cells, rounded to 2 and 3, then reflected about 5.
    const std::string project = cube_project(
        3, "(0.0,0.0,0.0)", true, {spec("0.2", "1", "7", "Maintain Symmetry About: Box L0.5\n")},
        {spec("0", "1", "2")}, {spec("0", "1", "1")});
    RunDir run(project, kLayers);
    ASSERT_EQ(run.status, 0) << run.Read("Kavex3_GridGen.err");

    Axis a[3];
    cells(a[0].line, 0, 2, 2);
    cells(a[0].line, 2, 5, 3);
    a[0].line.push_back(5);
    for (int q = 4; q >= 0; --q) a[0].line.push_back(2 * 5.0 - a[0].line[q]);
    ASSERT_EQ(a[0].line.size(), 11u);
    cells(a[1].line, 0, 10, 2);
    a[1].line.push_back(10);
    a[2].line = {0, 10};
    layer_widths(a);
    for (Axis& axis : a) axis.finish();
    expect_files(run, a, corner_table(a));
    EXPECT_NE(run.Read("Kavex3_GridGen.out").find("infinity"), std::string::npos);
}

}  // namespace
