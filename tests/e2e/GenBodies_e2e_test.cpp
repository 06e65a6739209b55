// End-to-end runs of cut-body projects: the blocked cells and rotor centres in the solver file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "RunGridGen.h"

namespace {

// Options with the given grid start, the given body records, and on each axis four cells of 25
// over the Domain body, 0 .. 100.
std::string DomainProject(const std::string& gridStart, const std::string& bodies) {
    return Project("    Grid Start Point: " + gridStart +
                       "\n    Debug Level: 0\n    Solver Input File: SolverGdInp.dat\n"
                       "    Layer File: layers.dat\n",
                   bodies,
                   {"from: Domain L0.0\nto: Domain L1.0\nnumber of Grids: 4\nGP Ratio: 1.0\n"});
}

std::string CutBody(const std::string& name, bool used) {
    return BodyText(name, "XcutPlanes", name + ".cut", used);
}

// The domain, not used in the solver: X-cut planes at x = 0 and 100, (y, z) square 0 .. 100.
const char* const kDomainCut =
    "2 4\n0\n0 0\n100 0\n100 100\n0 100\n100\n0 0\n100 0\n100 100\n0 100\n";

// Per axis 7 corner points without layers: the start twice, 25 .. 100, 100 again.
const std::vector<double> kCorners[3] = {
    {0, 0, 25, 50, 75, 100, 100}, {0, 0, 25, 50, 75, 100, 100}, {0, 0, 25, 50, 75, 100, 100}};

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
        DomainProject("(0.0,0.0,0.0)", CutBody("Domain", false) + CutBody("Block", true));
    const std::string section = "22 20\n78 20\n78 78\n22 78\n";
    const std::string ascending = "2 4\n22\n" + section + "78\n" + section;
    const std::string descending =
        "2 4\n# planes from high to low\n78\n" + section + "22\n" + section;
    const std::string expected =
        SolverFile(kCorners, {"3, 3, 2", "3, 3, 3", "3, 3, 4", "3, 4, 2", "3, 4, 3", "3, 4, 4",
                              "4, 3, 2", "4, 3, 3", "4, 3, 4", "4, 4, 2", "4, 4, 3", "4, 4, 4",
                              "3, 3, 1", "3, 4, 1", "4, 3, 1", "4, 4, 1"});
    for (const std::string& block : {ascending, descending}) {
        GridGenRun run(project, {kDomainCut, block});
        ASSERT_EQ(run.Run().status, 0) << run.Read("Kavex3_GridGen.err");
        EXPECT_EQ(run.Read("SolverGdInp.dat"), expected);
        EXPECT_EQ(run.Read("KX3.grid.dat"), GridFile(kCorners, "# 0.000000 0.000000 0.000000"));
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
        DomainProject("(10.0,0.0,0.0)", CutBody("Domain", false) + rotor + CutBody("Thin", true));
    const std::string thin =
        "2 4\n30\n25 25\n50 25\n50 75\n25 75\n32\n25 25\n100 25\n100 75\n25 75\n";
    GridGenRun run(project, {kDomainCut, thin});
    ASSERT_EQ(run.Run().status, 0) << run.Read("Kavex3_GridGen.err");
    EXPECT_EQ(run.Read("SolverGdInp.dat"),
              SolverFile(kCorners, {"3, 3, 3", "3, 3, 4", "3, 4, 3", "3, 4, 4"},
                         "#\n# Number of Rotors:\n1\n#\n# Rotor Centers (X, Y, Z):\n"
                         "                60,                 50,                 60\n"));
}

}  // namespace
