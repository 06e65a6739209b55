// Tests of the driver's pass over a .Grid project and of the "temp.Grid" it writes.
#include "driver/ReadGridFile.h"

#include <gtest/gtest.h>

#include "FEL_exception.h"
#include "ScratchDir.h"
#include "driver/DriverGlobals.h"

namespace {

struct ReadResult {
    bool blnFailed;
    std::string strTempGrid;
    std::string strSolverInput;
    FEL_vector3<float> conversionFactor;
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
    EXPECT_EQ(r.conversionFactor, FEL_vector3<float>(2.0f, 3.0f, 4.0f));
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
    FEL_vector3<float> factor(1.0f, 1.0f, 1.0f);
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
    EXPECT_EQ(r.conversionFactor, FEL_vector3<float>(5.5f, 6.5f, 7.5f));
    // Components that don't scan keep their previous values; a line without "(" scans nothing.
    r = ReadProject("Conversion Factor: (2.0, 3.0, 4.0)\nConversion Factor: (8.0, x, 9.0)\n");
    EXPECT_EQ(r.conversionFactor, FEL_vector3<float>(8.0f, 3.0f, 4.0f));
    r = ReadProject("Conversion Factor: 2.0, 3.0, 4.0\n");
    EXPECT_EQ(r.conversionFactor, FEL_vector3<float>(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(r.strTempGrid, "Conversion Factor: 2.0, 3.0, 4.0\n");

    r = ReadProject("  Solver Input File: a.dat\nSolver Input File: D:\\b.dat\n");
    EXPECT_EQ(r.strSolverInput, "D:\\b.dat");
    r = ReadProject("Solver Input File:\n");
    EXPECT_EQ(r.strSolverInput, "");
    r = ReadProject("Solver Input File: \n");
    EXPECT_EQ(r.strSolverInput, "");
}

TEST(ReadBodies, ReadsSurfaceBodiesAndLeavesCutBodiesWithoutMeshes) {
    const std::string data = KAVEX_SHARED_DATA;
    std::vector<_BodyStruct> bodies(4);
    bodies[0].eBodyType = BODY_XCUT;
    bodies[0].strPointsFile = "no-such-plate.cut";  // never opened
    bodies[1].eBodyType = BODY_STL;
    bodies[1].strPointsFile = data + "/stl/unit_cube.STL";  // binary, 12 facets
    bodies[2].eBodyType = BODY_PLOT3D;
    bodies[2].strPointsFile = data + "/plot3d/multi-ascii.xyz";  // text, 2 zones of 8 x 12 x 12
    bodies[3].eBodyType = BODY_ZCUT;
    bodies[3].strPointsFile = "no-such-fin.cut";
    ReadBodies(bodies);

    EXPECT_TRUE(bodies[0].pMesh.null());
    EXPECT_TRUE(bodies[3].pMesh.null());
    ASSERT_FALSE(bodies[1].pMesh.null());
    EXPECT_TRUE(bodies[1].pMesh->is_unstructured_mesh());
    EXPECT_EQ(bodies[1].pMesh->card(0), 8);  // the cube's corners, shared by the facets
    EXPECT_EQ(bodies[1].pMesh->card(2), 12);
    ASSERT_FALSE(bodies[2].pMesh.null());
    EXPECT_EQ(bodies[2].pMesh->get_n_zones(), 2);
    EXPECT_EQ(bodies[2].pMesh->card(0), 2 * 8 * 12 * 12);

    // A copy shares the mesh through its count, and gives it back when it goes.
    EXPECT_EQ(bodies[1].pMesh->get_reference_count(), 1);
    {
        const _BodyStruct copy = bodies[1];
        EXPECT_EQ(copy.pMesh, bodies[1].pMesh);
        EXPECT_EQ(bodies[1].pMesh->get_reference_count(), 2);
        std::vector<_BodyStruct> copies = bodies;
        EXPECT_EQ(bodies[1].pMesh->get_reference_count(), 3);
    }
    EXPECT_EQ(bodies[1].pMesh->get_reference_count(), 1);
}

TEST(ReadBodies, StlOrP3dAnywhereInThePathSelectsTheUnstructuredTextTry) {
    // One triangle as text unstructured Plot3D: 3 nodes, 1 triangle, 0 tetrahedra, the x, y and z
    // planes, the triangle's nodes and its zone:
    //   (0,1) 3
    //         | ' .
    //         1-----2 (1,0)      in the plane z = 0
    // The form feeds are white space to the text reader but make the file look binary to format
    // detection, so it reads only when the name asks for the unstructured text try first.
    const std::string triangle = "3\f1\f0\n0 1 0\n0 0 1\n0 0 0\n1 2 3\n1\n";
    ScratchDir dir;
    for (const char* sub : {"wing.stl.d", "wing_stl", "WING.STL", "p3d"})
        boost::filesystem::create_directory(dir / sub);
    const std::vector<std::string> readable = {dir / "wing.stl.d/tri.dat", dir / "p3d/tri.p3d",
                                               dir / "p3d/tri.stl.old"};
    const std::vector<std::string> unreadable = {dir / "wing_stl/tri.dat", dir / "WING.STL/tri",
                                                 dir / "p3d/tri.P3D", dir / "p3d/tri.dat"};
    for (const std::string& path : readable) WriteWholeFile(path, triangle);
    for (const std::string& path : unreadable) WriteWholeFile(path, triangle);

    for (const std::string& path : readable) {
        std::vector<_BodyStruct> bodies(1);
        bodies[0].eBodyType = BODY_PLOT3D;
        bodies[0].strPointsFile = path;
        ReadBodies(bodies);
        ASSERT_FALSE(bodies[0].pMesh.null()) << path;
        EXPECT_TRUE(bodies[0].pMesh->is_unstructured_mesh()) << path;
        EXPECT_EQ(bodies[0].pMesh->card(0), 3) << path;
        EXPECT_EQ(bodies[0].pMesh->card(2), 1) << path;
    }
    for (const std::string& path : unreadable) {
        std::vector<_BodyStruct> bodies(1);
        bodies[0].eBodyType = BODY_STL;
        bodies[0].strPointsFile = path;
        EXPECT_THROW(ReadBodies(bodies), FEL_exception) << path;
    }
}
