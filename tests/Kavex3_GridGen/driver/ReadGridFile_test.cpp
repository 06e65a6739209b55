// Tests of the driver's pass over a .Grid project and of the "temp.Grid" it writes.
#include "driver/ReadGridFile.h"

#include <gtest/gtest.h>

#include "FEL_exception.h"
#include "ScratchDir.h"

namespace {

// What ReadGridFile gave back, starting from an unset solver name and two bodies in the list.
struct ReadResult {
    bool blnFailed = false;
    std::string strTempGrid;
    std::string strSolverInput = "<unset>";
    FEL_vector3<float> conversionFactor{1.0f, 1.0f, 1.0f};
    std::vector<_BodyStruct> bodies = std::vector<_BodyStruct>(2);
    // A line per body: kind (0 to 4), points file, cut file, T if used in the solver or else F.
    std::string strBodies;
    bool blnDebug = false;
    std::vector<std::string> vecstrTempFiles;
};

// Writes the project text as "p.Grid", runs ReadGridFile on the file name with run directory
// runDir and the debug switch set to debugBefore, and returns all it produced.
ReadResult ReadProject(const std::string& projectText, const std::string& runDir = "/run/dir",
                       const std::string& name = "p.Grid", bool debugBefore = false) {
    ScratchDir dir;
    WriteWholeFile(dir / "p.Grid", projectText);
    DriverContext run(runDir);
    run.m_vecstrTempFiles = {"earlier"};
    run.m_intersect.m_blnDebug = debugBefore;
    ReadResult result;
    std::ofstream tempGrid(dir / "temp.Grid");
    result.blnFailed = ReadGridFile(run, dir / name, result.strSolverInput, tempGrid,
                                    result.conversionFactor, result.bodies);
    tempGrid.close();
    result.strTempGrid = ReadWholeFile(dir / "temp.Grid");
    result.blnDebug = run.m_intersect.m_blnDebug;
    result.vecstrTempFiles = run.m_vecstrTempFiles;
    for (const _BodyStruct& b : result.bodies)
        result.strBodies += std::to_string(b.eBodyType) + " " + b.strPointsFile + " " +
                            b.strCutFile + (b.blnUsedInSolver ? " T\n" : " F\n");
    return result;
}

const std::string kTypeX = "                            type: XcutPlanes";  // 28 blanks
const std::string kPoints = "                     Points File: ";           // 21 blanks

}  // namespace

// A body record with the given type and points lines, as the project writes it.
std::string Body(const std::string& name, const std::string& typeLine,
                 const std::string& pointsLine, const std::string& used) {
    return "    New Body\n                          name: " + name + "\n" + typeLine + "\n" +
           pointsLine + "\n                used in solver: " + used + "\n    #\n";
}

TEST(ReadGridFile, RewritesCutStlAndPlot3DBodiesByteForByte) {
    const std::string options =
        "Start Options\n    Grid Start Point: (0.0,0.0,0.0)\n"
        "    Conversion Factor: 9\n    Conversion Factor: (9, x\n"
        "    Conversion Factor: (2.0, 3.0, 4.0)\n    Debug Level: 1\n"
        "    Solver Input File: C:\\runs\\SolverGdInp.dat\n    Layer File: layers.dat\n"
        "End Options\nStart Body Definitions\n";
    const std::string rest =
        "End Body Definitions\nBody X-GridSpec\n    New GridSpec\n        in: Plate\n"
        "        number of Grids: 4\n    #\nEnd X-Grid Spec\n";
    const std::string type = "                          type: ";    // 26 blanks
    const std::string points = "                   Points File: ";  // 19 blanks
    const std::string project =
        options + Body("Plate", type + "XcutPlanes", points + "plate.cut", "True") +
        Body("Hull", type + "STL", points + "/data/hull.stl", "False") +
        Body("Wing", type + "Plot3D", points + "C:\\models\\wing.p3d", "True") +
        Body("Fin", type + "ZcutPlanes", points + "fin.cut", "yes, True") + rest;
    // Every body becomes an X cut body in the run directory; an X one keeps its type line.
    const std::string expected =
        options + Body("Plate", type + "XcutPlanes", kPoints + "/run/dir/1-x.cut", "True") +
        Body("Hull", kTypeX, kPoints + "/run/dir/2-x.cut", "False") +
        Body("Wing", kTypeX, kPoints + "/run/dir/3-x.cut", "True") +
        Body("Fin", kTypeX, kPoints + "/run/dir/4-x.cut", "yes, True") + rest;
    const ReadResult r = ReadProject(project, "/run/dir/");
    EXPECT_FALSE(r.blnFailed);
    EXPECT_EQ(r.strTempGrid, expected);

    EXPECT_EQ(r.strBodies,
              "0 plate.cut /run/dir/1-x.cut T\n3 /data/hull.stl /run/dir/2-x.cut F\n"
              "4 C:\\models\\wing.p3d /run/dir/3-x.cut T\n2 fin.cut /run/dir/4-x.cut T\n");
    EXPECT_EQ(r.vecstrTempFiles,
              (std::vector<std::string>{"earlier", "/run/dir/1-x.cut", "/run/dir/2-x.cut",
                                        "/run/dir/3-x.cut", "/run/dir/4-x.cut"}));
}

TEST(ReadGridFile, ShortRecordsUnknownTypesAndAMissingProject) {
    const std::tuple<std::string, std::string, std::string, std::string, std::string> rows[] = {
        // No "Points File: " behind the type line: no body, and that line isn't written.
        {"a\n  type: STL\n  Points File:x\nafter\n", "/d", "p.Grid", "", "a\n" + kTypeX + "\n"},
        // No "used in solver:" line: the body stands, the reading stops after its points line.
        {"  type: YcutPlanes\n  Points File: y.cut\n  used: True\nafter\n", "/r", "p.Grid",
         "1 y.cut /r/1-x.cut F\n", kTypeX + "\n" + kPoints + "/r/1-x.cut\n"},
        // The type line is the file's last line.
        {"x\n type: XcutPlanes", "/d", "p.Grid", "", "x\n type: XcutPlanes\n"},
        // Unknown type words pass unchanged and number no body.
        {"  type: X-Plane Rotor\n  Points File: rotor.dat\n  used in solver: True\n"
         "  type: STL\n  Points File: b.stl\n  used in solver: False\n",
         "run", "p.Grid", "3 b.stl run/1-x.cut F\n",
         "  type: X-Plane Rotor\n  Points File: rotor.dat\n  used in solver: True\n" + kTypeX +
             "\n" + kPoints + "run/1-x.cut\n  used in solver: False\n"},
        // A missing project gives no bodies and leaves the solver file's name alone.
        {"", "/d", "missing.Grid", "", ""},
    };
    for (const auto& [text, runDir, name, bodies, tempGrid] : rows) {
        const ReadResult r = ReadProject(text, runDir, name);
        EXPECT_EQ(std::make_tuple(r.blnFailed, r.strBodies, r.strTempGrid, r.strSolverInput),
                  std::make_tuple(false, bodies, tempGrid, std::string("<unset>")))
            << text;
    }
}

TEST(ReadGridFile, DebugLevelConversionFactorAndSolverInputLines) {
    // Debug is on only without any zero in the level. The last line of each kind decides;
    // conversion components that don't scan keep their previous values, and a line without "("
    // scans nothing.
    const std::pair<const char*, std::tuple<bool, FEL_vector3<float>, std::string>> rows[] = {
        {"Debug Level: 10\nConversion Factor: (2.0, 3.0, 4.0)\nConversion Factor: (5.5, 6.5, 7.5)\n"
         "  Solver Input File: a.dat\nSolver Input File: D:\\b.dat\n",
         {false, {5.5f, 6.5f, 7.5f}, "D:\\b.dat"}},
        {"Debug Level: 2\nConversion Factor: (2.0, 3.0, 4.0)\nConversion Factor: (8.0, x, 9.0)\n"
         "Solver Input File:\n",
         {true, {8.0f, 3.0f, 4.0f}, ""}},
        {"Debug Level: 0\n  Debug Level: 3\nConversion Factor: 2.0, 3.0, 4.0\n"
         "Solver Input File: \n",
         {true, {1.0f, 1.0f, 1.0f}, ""}}};
    for (const auto& [text, expected] : rows) {
        const ReadResult r = ReadProject(text, "/run/dir", "p.Grid", !std::get<0>(expected));
        EXPECT_EQ(std::make_tuple(r.blnDebug, r.conversionFactor, r.strSolverInput), expected)
            << text;
    }
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
    const std::pair<std::string, bool> rows[] = {
        {"wing.stl.d/tri.dat", true}, {"p3d/tri.p3d", true},   {"p3d/tri.stl.old", true},
        {"wing_stl/tri.dat", false},  {"WING.STL/tri", false}, {"p3d/tri.P3D", false},
        {"p3d/tri.dat", false}};
    for (const auto& [name, readable] : rows) {
        WriteWholeFile(dir / name, triangle);
        std::vector<_BodyStruct> bodies(1);
        bodies[0].eBodyType = readable ? BODY_PLOT3D : BODY_STL;
        bodies[0].strPointsFile = dir / name;
        if (!readable) {
            EXPECT_THROW(ReadBodies(bodies), FEL_exception) << name;
            continue;
        }
        ReadBodies(bodies);
        ASSERT_FALSE(bodies[0].pMesh.null()) << name;
        const FEL_mesh& mesh = *bodies[0].pMesh;
        EXPECT_EQ(std::make_tuple(mesh.is_unstructured_mesh(), mesh.card(0), mesh.card(2)),
                  std::make_tuple(true, 3, 1))
            << name;
    }
}
