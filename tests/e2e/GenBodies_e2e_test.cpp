// End-to-end runs of cut-body projects: the blocked cells and rotor centres in the solver file.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "ScratchDir.h"

namespace {

// Runs the executable on dir's project.Grid and rotor file from dir; returns its exit status.
int RunProject(const ScratchDir& dir) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(dir.Path().c_str()) != 0) _exit(120);
        const std::string project = dir / "project.Grid", rotor = dir / "rotor.SlvrRot";
        execl(KAVEX_GRIDGEN_EXE, KAVEX_GRIDGEN_EXE, "-Grid", project.c_str(), "-SlvrRot",
              rotor.c_str(), "-pth", dir.Path().c_str(), static_cast<char*>(nullptr));
        _exit(122);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Options with the given grid start, then the Bodies section around the given body records.
std::string Project(const std::string& gridStart, const std::string& bodies) {
    std::string text = "Start Options\n    Grid Start Point: " + gridStart +
                       "\n    Debug Level: 0\n    Solver Input File: SolverGdInp.dat\n"
                       "    Layer File: layers.dat\nEnd Options\nStart Body Definitions\n" +
                       bodies + "End Body Definitions\n";
    // Each axis: four cells of 25 over the Domain body, 0 .. 100.
    for (const char* axis : {"X", "Y", "Z"}) {
        text += std::string("Body ") + axis +
                "-GridSpec\n    New GridSpec\n        from: Domain L0.0\n"
                "        to: Domain L1.0\n        number of Grids: 4\n        GP Ratio: 1.0\n"
                "    #\nEnd " +
                axis + "-Grid Spec\n";
    }
    return text;
}

std::string CutBody(const std::string& name, bool usedInSolver) {
    return "    New Body\n        name: " + name +
           "\n        type: XcutPlanes\n        Points File: " + name +
           ".cut\n        used in solver: " + (usedInSolver ? "True" : "False") + "\n    #\n";
}

// The domain, not used in the solver: X-cut planes at x = 0 and 100, (y, z) square 0 .. 100.
const char* const kDomainCut =
    "2 4\n0\n0 0\n100 0\n100 100\n0 100\n100\n0 0\n100 0\n100 100\n0 100\n";

std::string Formatted(const char* format, double value, int n) {
    char line[64];
    std::snprintf(line, sizeof line, format, n, value);
    return line;
}

// The solver file of a run without layers over the 0 .. 100 lines: per axis 7 corner points
// (the start twice, 25 .. 100, 100 again), so six widths 0 25 25 25 25 0; then the cells and
// the rotors.
std::string SolverFile(const std::vector<std::string>& cells, const std::string& rotors) {
    std::string text = "# Num. of X, Y & Z Cell-Widths: IE = 6; JE = 6; KE = 6\n";
    for (const char* axis : {"X", "Y", "Z"}) {
        const std::string e = axis == std::string("X")   ? "IE"
                              : axis == std::string("Y") ? "JE"
                                                         : "KE";
        text +=
            "#\n# " + e + " = Num. of " + axis + "-Cell-Widths:\n6\n# " + axis + "-Cell-Widths\n";
        const double widths[6] = {0, 25, 25, 25, 25, 0};
        for (int n = 0; n < 6; ++n) text += Formatted("%3d %27.18G\n", widths[n], n + 1);
    }
    text += "#\n# Num. of Body Cells:\n" + std::to_string(cells.size()) +
            "\n# Body Cells ({I-index, J-index, K-index} of the cells)\n";
    for (const std::string& cell : cells) text += cell + "\n";
    return text + rotors;
}

struct CutRun {
    ScratchDir dir;
    // The driver points the generator at <run dir>/N-x.cut for cut body N: the points go there.
    CutRun(const std::string& project, const std::vector<std::string>& cutFiles) {
        WriteWholeFile(dir / "project.Grid", project);
        WriteWholeFile(dir / "rotor.SlvrRot", "0\n");
        WriteWholeFile(dir / "layers.dat", "0\n0\n0\n0\n0\n0\n");
        for (size_t n = 0; n < cutFiles.size(); ++n) {
            WriteWholeFile(dir / (std::to_string(n + 1) + "-x.cut"), cutFiles[n]);
        }
        status = RunProject(dir);
    }
    int status;
};

//  Block, seen along X (cells of 25 on the 0 .. 100 lines; body ####), from x = 22 to 78:
//
//  z 100 +----+----+----+----+    y 22 .. 78: the end cells hold 3/25 = 12%: not marked.
//     75 +----+----+----+----+    z 20 .. 78: cell 0 holds 20%, cell 3 12%: cells 0 .. 2.
//        |  ##|####|####|##  |    Along X the planes enter cells 0 and 3 by 12%: slabs 1, 2.
//     50 +--##+####+####+##--+    Line cells shift by 1 for the boundary cell, and z cell 0
//        |  ##|####|####|##  |    (now 1) is the outermost real cell: its boundary cell 0 is
//     25 +--##+####+####+##--+    blocked as well. Solver indices count from 1.
//        |  ##|####|####|##  |
//      0 +----+----+----+----+
//        0   25   50   75   100 y
TEST(GenBodiesRun, CutBodyAtTheThresholdInEitherPlaneOrderBlocksItsBoundaryCells) {
    const std::string project =
        Project("(0.0,0.0,0.0)", CutBody("Domain", false) + CutBody("Block", true));
    const std::string section = "22 20\n78 20\n78 78\n22 78\n";
    const std::string ascending = "2 4\n22\n" + section + "78\n" + section;
    const std::string descending =
        "2 4\n# planes from high to low\n78\n" + section + "22\n" + section;
    const std::string expected = SolverFile(
        {"3, 3, 2", "3, 3, 3", "3, 3, 4", "3, 4, 2", "3, 4, 3", "3, 4, 4", "4, 3, 2", "4, 3, 3",
         "4, 3, 4", "4, 4, 2", "4, 4, 3", "4, 4, 4", "3, 3, 1", "3, 4, 1", "4, 3, 1", "4, 4, 1"},
        "#\n# Number of Rotors:\n0\n");
    for (const std::string& block : {ascending, descending}) {
        CutRun run(project, {kDomainCut, block});
        ASSERT_EQ(run.status, 0) << ReadWholeFile(run.dir / "Kavex3_GridGen.err");
        EXPECT_EQ(ReadWholeFile(run.dir / "SolverGdInp.dat"), expected);
        EXPECT_EQ(ReadWholeFile(run.dir / "Lcl2Gbl.dat"), "0.000000 0.000000 0.000000 \n");
    }
}

//  Thin body inside X cell 1 (25 .. 50) from x = 30 to 32, 8% of the cell, kept whole:
//  (y, z) y 25 .. 50 at x = 30 and y 25 .. 100 at x = 32, z 25 .. 75; its one slab is cut at
//  x = 31: y 25 .. 75, z 25 .. 75, that is line cells J, K in 1 .. 2, shifted to 2 .. 3.
//  The grid starts at x = 10, so everything moves by 10 on X, the rotor centre too.
TEST(GenBodiesRun, ThinCutBodyAndRotorCentreInTheSolverFile) {
    const std::string rotor =
        "    New Body\n        name: Fan\n        type: Z-Plane Rotor\n"
        "        center: (50,50,60)\n        radius: 10\n        half thickness: 0.1\n"
        "        Is Absolute Thickness: False\n    #\n";
    const std::string project =
        Project("(10.0,0.0,0.0)", CutBody("Domain", false) + rotor + CutBody("Thin", true));
    const std::string thin =
        "2 4\n30\n25 25\n50 25\n50 75\n25 75\n32\n25 25\n100 25\n100 75\n25 75\n";
    CutRun run(project, {kDomainCut, thin});
    ASSERT_EQ(run.status, 0) << ReadWholeFile(run.dir / "Kavex3_GridGen.err");
    EXPECT_EQ(ReadWholeFile(run.dir / "SolverGdInp.dat"),
              SolverFile({"3, 3, 3", "3, 3, 4", "3, 4, 3", "3, 4, 4"},
                         "#\n# Number of Rotors:\n1\n#\n# Rotor Centers (X, Y, Z):\n"
                         "                60,                 50,                 60\n"));
    EXPECT_EQ(ReadWholeFile(run.dir / "Lcl2Gbl.dat"), "10.000000 0.000000 0.000000 \n");
}

}  // namespace
