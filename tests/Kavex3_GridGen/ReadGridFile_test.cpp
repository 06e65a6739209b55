// Tests of the driver's pass over a .Grid project and of the "temp.Grid" it writes.
#include "ReadGridFile.h"

#include <gtest/gtest.h>

#include "DriverGlobals.h"
#include "ScratchDir.h"

namespace {

struct ReadResult {
    bool blnFailed;
    std::string strTempGrid;
    std::string strSolverInput;
    std::array<float, 3> conversionFactor;
    std::vector<_BodyStruct> bodies;
};

// Writes the project text, runs ReadGridFile with run directory runDir, returns all it produced.
ReadResult ReadProject(const std::string& projectText, const std::string& runDir = "/run/dir") {
    ScratchDir dir;
    WriteWholeFile(dir / "p.Grid", projectText);
    g_strTempDir = runDir;
    ReadResult result{false, "", "<unset>", {1.0f, 1.0f, 1.0f}, {}};
    std::ofstream tempGrid(dir / "temp.Grid");
    result.blnFailed = ReadGridFile(dir / "p.Grid", result.strSolverInput, tempGrid,
                                    result.conversionFactor, result.bodies);
    tempGrid.close();
    result.strTempGrid = ReadWholeFile(dir / "temp.Grid");
    return result;
}

const std::string kTypeX = "                            type: XcutPlanes";  // 28 blanks
const std::string kPoints = "                     Points File: ";           // 21 blanks

}  // namespace

TEST(ReadGridFile, RewritesCutStlAndPlot3DBodiesByteForByte) {
    const std::string project = R"(Start Options
    Grid Start Point: (0.0,0.0,0.0)
    Conversion Factor: (2.0, 3.0, 4.0)
    Debug Level: 1
    Solver Input File: C:\runs\SolverGdInp.dat
    Layer File: layers.dat
End Options
Start Body Definitions
    New Body
                          name: Plate
                          type: XcutPlanes
                   Points File: plate.cut
                used in solver: True
    #
    New Body
                          name: Hull
                          type: STL
                   Points File: /data/hull.stl
                used in solver: False
    #
    New Body
                          name: Wing
                          type: Plot3D
                   Points File: C:\models\wing.p3d
                used in solver: True
    #
    New Body
                          name: Fin
                          type: ZcutPlanes
                   Points File: fin.cut
                used in solver: yes, True
    #
End Body Definitions
Body X-GridSpec
    New GridSpec
        in: Plate
        number of Grids: 4
    #
End X-Grid Spec
)";
    const std::string expected = R"(Start Options
    Grid Start Point: (0.0,0.0,0.0)
    Conversion Factor: (2.0, 3.0, 4.0)
    Debug Level: 1
    Solver Input File: C:\runs\SolverGdInp.dat
    Layer File: layers.dat
End Options
Start Body Definitions
    New Body
                          name: Plate
                          type: XcutPlanes
                     Points File: /run/dir/1-x.cut
                used in solver: True
    #
    New Body
                          name: Hull
                            type: XcutPlanes
                     Points File: /run/dir/2-x.cut
                used in solver: False
    #
    New Body
                          name: Wing
                            type: XcutPlanes
                     Points File: /run/dir/3-x.cut
                used in solver: True
    #
    New Body
                          name: Fin
                            type: XcutPlanes
                     Points File: /run/dir/4-x.cut
                used in solver: yes, True
    #
End Body Definitions
Body X-GridSpec
    New GridSpec
        in: Plate
        number of Grids: 4
    #
End X-Grid Spec
)";
    g_vecstrTempFiles = {"earlier"};
    g_blnDebug = false;
    const ReadResult r = ReadProject(project, "/run/dir/");
    EXPECT_FALSE(r.blnFailed);
    EXPECT_EQ(r.strTempGrid, expected);
    EXPECT_EQ(r.strSolverInput, "C:\\runs\\SolverGdInp.dat");
    EXPECT_EQ(r.conversionFactor, (std::array<float, 3>{2.0f, 3.0f, 4.0f}));
    EXPECT_TRUE(g_blnDebug);

    ASSERT_EQ(r.bodies.size(), 4u);
    const BodyType kinds[] = {BODY_XCUT, BODY_STL, BODY_PLOT3D, BODY_ZCUT};
    const char* files[] = {"plate.cut", "/data/hull.stl", "C:\\models\\wing.p3d", "fin.cut"};
    const bool used[] = {true, false, true, true};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(r.bodies[i].eBodyType, kinds[i]) << i;
        EXPECT_EQ(r.bodies[i].strPointsFile, files[i]) << i;
        EXPECT_EQ(r.bodies[i].strCutFile, "/run/dir/" + std::to_string(i + 1) + "-x.cut") << i;
        EXPECT_EQ(r.bodies[i].blnUsedInSolver, used[i]) << i;
    }
    EXPECT_EQ(g_vecstrTempFiles,
              (std::vector<std::string>{"earlier", "/run/dir/1-x.cut", "/run/dir/2-x.cut",
                                        "/run/dir/3-x.cut", "/run/dir/4-x.cut"}));
}

TEST(ReadGridFile, MissingOrEmptyProjectGivesNoBodies) {
    ScratchDir dir;
    std::ofstream tempGrid(dir / "temp.Grid");
    std::string solver = "unchanged";
    std::array<float, 3> factor = {1.0f, 1.0f, 1.0f};
    std::vector<_BodyStruct> bodies(2);
    EXPECT_FALSE(ReadGridFile(dir / "missing.Grid", solver, tempGrid, factor, bodies));
    tempGrid.close();
    EXPECT_TRUE(bodies.empty());
    EXPECT_EQ(solver, "unchanged");
    EXPECT_EQ(ReadWholeFile(dir / "temp.Grid"), "");

    const ReadResult r = ReadProject("");
    EXPECT_FALSE(r.blnFailed);
    EXPECT_TRUE(r.bodies.empty());
    EXPECT_EQ(r.strTempGrid, "");
}

TEST(ReadGridFile, BodyCutShortStopsReadingSilently) {
    // No "Points File: " behind the type line: no body, and that line isn't written.
    ReadResult r = ReadProject("a\n  type: STL\n  Points File:x\nafter\n");
    EXPECT_FALSE(r.blnFailed);
    EXPECT_TRUE(r.bodies.empty());
    EXPECT_EQ(r.strTempGrid, "a\n" + kTypeX + "\n");

    // No "used in solver:" line: the body stands, the reading stops after its points line.
    r = ReadProject("  type: YcutPlanes\n  Points File: y.cut\n  used: True\nafter\n", "/r");
    EXPECT_FALSE(r.blnFailed);
    ASSERT_EQ(r.bodies.size(), 1u);
    EXPECT_EQ(r.bodies[0].eBodyType, BODY_YCUT);
    EXPECT_EQ(r.bodies[0].strPointsFile, "y.cut");
    EXPECT_EQ(r.strTempGrid, kTypeX + "\n" + kPoints + "/r/1-x.cut\n");

    // The type line is the file's last line.
    r = ReadProject("x\n type: XcutPlanes");
    EXPECT_TRUE(r.bodies.empty());
    EXPECT_EQ(r.strTempGrid, "x\n type: XcutPlanes\n");
}

TEST(ReadGridFile, UnknownTypeWordsPassUnchangedAndNumberNoBody) {
    const ReadResult r = ReadProject(
        "  type: X-Plane Rotor\n  Points File: rotor.dat\n  used in solver: True\n"
        "  type: STL\n  Points File: b.stl\n  used in solver: False\n",
        "run");
    ASSERT_EQ(r.bodies.size(), 1u);
    EXPECT_EQ(r.bodies[0].strCutFile, "run/1-x.cut");
    EXPECT_EQ(r.strTempGrid,
              "  type: X-Plane Rotor\n  Points File: rotor.dat\n  used in solver: True\n" + kTypeX +
                  "\n" + kPoints + "run/1-x.cut\n  used in solver: False\n");
}

TEST(ReadGridFile, DebugLevelIsOnOnlyWithoutAnyZero) {
    g_blnDebug = true;
    ReadProject("Debug Level: 10\n");
    EXPECT_FALSE(g_blnDebug);
    ReadProject("Debug Level: 2\n");
    EXPECT_TRUE(g_blnDebug);
    ReadProject("Debug Level: 0\n");
    EXPECT_FALSE(g_blnDebug);
    // The last such line decides.
    ReadProject("Debug Level: 0\n  Debug Level: 3\n");
    EXPECT_TRUE(g_blnDebug);
}

TEST(ReadGridFile, ConversionFactorAndSolverInputLines) {
    ReadResult r =
        ReadProject("Conversion Factor: (2.0, 3.0, 4.0)\nConversion Factor: (5.5, 6.5, 7.5)\n");
    EXPECT_EQ(r.conversionFactor, (std::array<float, 3>{5.5f, 6.5f, 7.5f}));
    // Components that don't scan keep their previous values; a line without "(" scans nothing.
    r = ReadProject("Conversion Factor: (2.0, 3.0, 4.0)\nConversion Factor: (8.0, x, 9.0)\n");
    EXPECT_EQ(r.conversionFactor, (std::array<float, 3>{8.0f, 3.0f, 4.0f}));
    r = ReadProject("Conversion Factor: 2.0, 3.0, 4.0\n");
    EXPECT_EQ(r.conversionFactor, (std::array<float, 3>{1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(r.strTempGrid, "Conversion Factor: 2.0, 3.0, 4.0\n");

    r = ReadProject("  Solver Input File: a.dat\nSolver Input File: D:\\b.dat\n");
    EXPECT_EQ(r.strSolverInput, "D:\\b.dat");
    r = ReadProject("Solver Input File:\n");
    EXPECT_EQ(r.strSolverInput, "");
    r = ReadProject("Solver Input File: \n");
    EXPECT_EQ(r.strSolverInput, "");
}
