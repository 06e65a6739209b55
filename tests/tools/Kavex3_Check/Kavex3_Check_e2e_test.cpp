// Kavex3_Check run on the bundled examples and on mistakes made from them.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "RunGridGen.h"

namespace {

// Kavex3_Check on the project of an example's copy, made without the run's cut files.
RunResult Check(const ExampleRun& copy, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), copy.strProject);
    return copy.Run(KAVEX3_CHECK_EXE, arguments);
}

// A UV ball of radius r about the origin, closed: 2 * lon * (bands - 1) facets, as ASCII STL.
std::string Ball(double r, int lon, int bands) {
    auto at = [&](int i, int j) {
        const double polar = M_PI * i / bands, azimuth = 2 * M_PI * (j % lon) / lon;
        return Fmt("%.9g %.9g %.9g", r * std::sin(polar) * std::cos(azimuth),
                   i == 0 || i == bands ? 0.0 : r * std::sin(polar) * std::sin(azimuth),
                   r * std::cos(polar));
    };
    std::string stl = "solid ball\n";
    auto facet = [&](const std::string& a, const std::string& b, const std::string& c) {
        stl += " facet normal 0 0 0\n  outer loop\n   vertex " + a + "\n   vertex " + b +
               "\n   vertex " + c + "\n  endloop\n endfacet\n";
    };
    for (int i = 0; i < bands; ++i)
        for (int j = 0; j < lon; ++j) {
            if (i > 0) facet(at(i, j), at(i + 1, j), at(i, j + 1));
            if (i < bands - 1) facet(at(i, j + 1), at(i + 1, j), at(i + 1, j + 1));
        }
    return stl + "endsolid ball\n";
}

// Binary STL of two facets sharing the edge (0,0,0)-(0,1,1); the second one's third vertex is
// (1, 0, +inf).
std::string InfiniteVertex() {
    std::string stl(80, '\0');
    auto word = [&stl](const void* p) { stl.append(static_cast<const char*>(p), 4); };
    const std::uint32_t count = 2;
    word(&count);
    const float inf = HUGE_VALF;
    const float facets[2][12] = {{0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 1},
                                 {0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 0, inf}};
    for (const auto& f : facets) {
        for (const float& v : f) word(&v);
        stl.append(2, '\0');
    }
    return stl;
}

// A flat square in the plane z = 0, two facets.
const char* const kPlate =
    "solid plate\n facet normal 0 0 1\n  outer loop\n   vertex 0 0 0\n   vertex 1 0 0\n"
    "   vertex 1 1 0\n  endloop\n endfacet\n facet normal 0 0 1\n  outer loop\n   vertex 0 0 0\n"
    "   vertex 1 1 0\n   vertex 0 1 0\n  endloop\n endfacet\nendsolid plate\n";

struct Mistake {
    const char* name;
    const char* example;
    const char* from;
    const char* to;
    std::string extraFile;  // written into the copy as "extra.stl" unless empty
    const char* expected;   // one line of the output; "@" stands for the copy's directory
};

TEST(Kavex3Check, EachMistakeIsAnErrorWithItsFileAndLine) {
    const std::string ball = Ball(0.1, 60, 40);  // 4,680 facets
    const Mistake rows[] = {
        {"misspelt keyword", "stl_body", "number of Grids: 12", "numbr of Grids: 12", "",
         "pyramid.Grid:25: error: 'numbr of Grids: 12' is passed over in a grid spec record; did "
         "you mean 'number of Grids:'?"},
        {"misspelt body line", "stl_body", "Points File:", "Points Fiel:", "",
         "pyramid.Grid:12: error: a body's second line must hold \"Points File: \": the run stops "
         "reading the project here"},
        {"misspelt section", "stl_body", "Body Y-GridSpec", "Body Y-GridSpek", "",
         "pyramid.Grid:35: error: 'Body Y-GridSpek' is passed over outside any section; did you "
         "mean 'Body Y-GridSpec'? Everything up to the next section is passed over with it."},
        {"section not closed", "cut_body", "End Z-Grid Spec", "", "",
         "block.Grid:54: error: never closed: 'End Z-Grid Spec' expected before the end of the "
         "project"},
        {"text outside sections", "cut_body", "Start Options", "Options\nStart Options", "",
         "block.Grid:2: error: 'Options' is passed over outside any section"},
        {"unknown body type", "stl_body", "type: STL", "type: STl", "",
         "pyramid.Grid:11: error: unknown body type 'STl': the run ignores this body; did you "
         "mean 'STL'?"},
        {"body without points", "rotor_disc", "type: Z-Plane Rotor", "name: Disc", "",
         "rotor.Grid:9: error: body without a \"type: \" line: the run ignores it"},
        {"missing body file", "stl_body", "File: pyramid.stl", "File: gone.stl", "",
         "pyramid.Grid:12: error: body 1 ('gone.stl'): cannot open its surface 'gone.stl' "
         "(relative to @): No such file or directory"},
        {"body file of no form", "stl_body", "File: pyramid.stl", "File: extra.stl", "junk\n",
         "pyramid.Grid:12: error: body 1 ('extra.stl'): the file reads as no known mesh: Could "
         "not determine the filetype of extra.stl."},
        {"flat body", "stl_body", "File: pyramid.stl", "File: extra.stl", kPlate,
         "pyramid.Grid:12: error: body 1 ('extra.stl'): the surface has no extent along Z (all its "
         "vertices at 0.000000): its box gives the Z grid line a single distinct point"},
        {"infinite vertex", "stl_body", "File: pyramid.stl", "File: extra.stl", InfiniteVertex(),
         "pyramid.Grid:12: error: body 1 ('extra.stl'): vertex 4 is not finite (1, 0, inf)"},
        {"missing layer file", "cut_body", "layers.dat", "nolayers.dat", "",
         "block.Grid:6: error: cannot open the layer file 'nolayers.dat' (relative to @): No such "
         "file or directory"},
        {"unknown body in a spec", "stl_body", "from: Pyramid L1.0", "from: Pyramd L1.0", "",
         "pyramid.Grid:29: error: the run stops: Incorrect body name 'Pyramd'"},
        {"count the worker refuses", "cut_body", "number of Grids: 6", "number of Grids: 1e9", "",
         "block.Grid:20: error: the run stops: file 'block.Grid', X number of Grids = 1000000000: "
         "an axis holds at most 32767 cells"},
        {"body lost far from the origin", "stl_body", "(0.0,0.0,0.0)", "(100.0,100.0,100.0)", "",
         nullptr},
    };
    for (const Mistake& row : rows) {
        SCOPED_TRACE(row.name);
        const ExampleRun copy(row.example, false);
        ASSERT_TRUE(copy.Edit(row.from, row.to));
        std::string expected = row.expected ? row.expected : "";
        if (!row.extraFile.empty()) WriteWholeFile(copy / "extra.stl", row.extraFile);
        if (!row.expected) {  // the ball, placed where the grid starts at (100, 100, 100)
            WriteWholeFile(copy / "extra.stl", ball);
            ASSERT_TRUE(copy.Edit("File: pyramid.stl", "File: extra.stl"));
            expected =
                "pyramid.Grid:12: error: body 1 ('extra.stl'): the run drops all 4680 triangles";
        }
        for (std::string::size_type at; (at = expected.find('@')) != std::string::npos;)
            expected.replace(at, 1, copy.strRunDir);
        const RunResult run = Check(copy);
        EXPECT_EQ(run.status, 1);
        EXPECT_NE(run.strStdout.find(expected), std::string::npos) << run.strStdout;
    }
}

// The same ball with the grid starting at (16, 16, 16): thinned out, not lost, and open.
TEST(Kavex3Check, BallThinnedOutAwayFromTheOriginIsAWarning) {
    const std::string ball = Ball(0.1, 60, 40);
    const std::string prefix = "pyramid.Grid:12: warning: body 1 ('extra.stl'): the run drops ";
    for (const char* start : {"(0.0,0.0,0.0)", "(16.0,16.0,16.0)"}) {
        const ExampleRun copy("stl_body", false);
        WriteWholeFile(copy / "extra.stl", ball);
        ASSERT_TRUE(copy.Edit("File: pyramid.stl", "File: extra.stl"));
        ASSERT_TRUE(copy.Edit("(0.0,0.0,0.0)", start));
        const RunResult run = Check(copy);
        EXPECT_EQ(run.status, 0) << run.strStdout;
        const std::string::size_type at = run.strStdout.find(prefix);
        if (start[1] == '0') {  // at the origin nothing is dropped, and the ball is closed
            EXPECT_EQ(at, std::string::npos) << run.strStdout;
            EXPECT_EQ(run.strStdout.find("open edges"), std::string::npos) << run.strStdout;
            continue;
        }
        ASSERT_NE(at, std::string::npos) << run.strStdout;
        const long dropped = std::atol(run.strStdout.c_str() + at + prefix.size());
        EXPECT_GT(dropped, 0);
        EXPECT_LT(dropped, 4680);
        EXPECT_NE(run.strStdout.find(" of 4680 triangles", at), std::string::npos);
        EXPECT_NE(run.strStdout.find("; what remains has ", at), std::string::npos);
    }
}

TEST(Kavex3Check, MissingOrEmptyProjectAndMissingRotorFile) {
    const ExampleRun copy("cut_body", false);
    WriteWholeFile(copy / "empty.Grid", "\n  \n");
    const std::pair<std::vector<std::string>, std::string> rows[] = {
        {{"block.Grid", "-SlvrRot", "none.SlvrRot"},
         "none.SlvrRot: error: cannot open the rotor file: No such file or directory\n"},
        {{"empty.Grid"},
         "empty.Grid: error: the project is empty: the run would make a 2 x 2 x 2 grid of zeros\n"},
        {{"none.Grid"}, "none.Grid: error: cannot open the project: No such file or directory"},
    };
    for (const auto& [arguments, expected] : rows) {
        const RunResult run = copy.Run(KAVEX3_CHECK_EXE, arguments);
        EXPECT_EQ(run.status, 1);
        EXPECT_NE(run.strStdout.find(expected), std::string::npos) << run.strStdout;
    }
}

TEST(Kavex3Check, EveryExampleChecksWithoutErrors) {
    for (const char* example : {"cut_body", "rotor_disc", "stl_body", "mixed_bodies"}) {
        SCOPED_TRACE(example);
        const ExampleRun copy(example, false);
        const RunResult run = Check(copy);
        EXPECT_EQ(run.status, 0) << run.strStdout;
        EXPECT_NE(run.strStdout.find("\n0 errors, "), std::string::npos) << run.strStdout;
    }
}

// The summary's counts and sizes against a real run of the cut-body example.
TEST(Kavex3Check, SummaryMatchesARealRun) {
    const ExampleRun copy("cut_body", false);
    const RunResult check = Check(copy, {"--json", "-pth", copy.strRunDir});
    WriteWholeFile(copy / "1-x.cut", ReadWholeFile(copy / "block.cut"));
    const RunResult checkWithCut = Check(copy, {"--json", "-pth", copy.strRunDir});
    EXPECT_EQ(check.status, 1);  // the run directory has no 1-x.cut yet
    ASSERT_EQ(checkWithCut.status, 0) << checkWithCut.strStdout;
    const nlohmann::json doc = nlohmann::json::parse(checkWithCut.strStdout);
    const RunResult run = copy.Run(KAVEX_GRIDGEN_EXE, copy.Arguments());
    ASSERT_EQ(run.status, 0);
    const std::string grid = ReadWholeFile(copy / "KX3.grid.dat");
    int n[3] = {0, 0, 0};
    ASSERT_EQ(std::sscanf(grid.c_str(), "%*[^\n]\n%d %d %d", &n[0], &n[1], &n[2]), 3);
    const nlohmann::json& s = doc["summary"];
    for (int a = 0; a < 3; ++a) EXPECT_EQ(s["axes"][a]["points"], n[a]);
    EXPECT_EQ(s["cells"], (long long)(n[0] - 1) * (n[1] - 1) * (n[2] - 1));
    EXPECT_EQ(s["grid_file_bytes"], grid.size());
    EXPECT_EQ(s["solver_file"], "SolverGdInp.dat");
    EXPECT_EQ(s["solver_file_bytes"], ReadWholeFile(copy / "SolverGdInp.dat").size());
    EXPECT_TRUE(s["sizes_exact"]);
    EXPECT_EQ(doc["errors"], 0);
    // The JSON diagnostics are the text form's lines.
    const RunResult text = Check(copy, {"-pth", copy.strRunDir});
    ASSERT_FALSE(doc["diagnostics"].empty());
    const nlohmann::json& d = doc["diagnostics"][0];
    EXPECT_EQ(text.strStdout.substr(0, text.strStdout.find('\n')),
              d["file"].get<std::string>() + ":" + std::to_string(d["line"].get<int>()) + ": " +
                  d["severity"].get<std::string>() + ": " + d["message"].get<std::string>());
}

}  // namespace
