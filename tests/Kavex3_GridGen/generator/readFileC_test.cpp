// Tests of the generator's specification reader and its grid specs.
#include "generator/readFileC.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>

#include "gdtest_util.h"

namespace {

using ReadFileCTest = GenTest;

// The specs' fields in a row: from, to, nGds, ratio, FxdFrom, FxdTo.
Pts spec_fields(const BdyGdspc* s, int n) {
    Pts v;
    for (int i = 0; i < n; ++i)
        v.insert(v.end(), {s[i].from, s[i].to, s[i].nGds, s[i].gp_ratio, double(s[i].FxdFrom),
                           double(s[i].FxdTo)});
    return v;
}

// What the run's projects leave out: a solver file name, an absolute thickness given as
// "Yes, True", a negative ratio (its inverse, negated), a grid line off at its From end and a spec
// without grids. The rotors span X [-1, 1] and [2, 4].
const char* const kProject = R"(Start Options
    Debug Level: 0
    Solver Input File: run/solver.inp
End Options
Start Body Definitions
    New Body
        name: Rotor1
        type: Z-Plane Rotor
        center: (0.0,0.0,0.0)
        radius: 1
        half thickness: 0.5
        Is Absolute Thickness: Yes, True
    #
    New Body
        name: Rotor2
        type: Z-Plane Rotor
        center: (3.0,0.0,0.0)
        radius: 1
        half thickness: 0.1
    #
End Body Definitions
Body X-GridSpec
    New GridSpec
        from: Rotor1 L0.5
        to: Rotor2 L1.0
        number of Grids: 4
        GP Ratio: -1.25
        Grid Line On From: False
    #
    New GridSpec
        in: Rotor1
    #
End X-Grid Spec
)";

TEST_F(ReadFileCTest, ProjectFillsOptionsLinesAndBodies) {
    manage_gridgen_input(file("project.spec", kProject).c_str());
    EXPECT_STREQ(gd_options.solverInpFile, "run/solver.inp");
    EXPECT_EQ(allBdys[0].rotor->isAbsThickness, 1);
    EXPECT_EQ((Pts{Xgdln.allBdysMin, Xgdln.allBdysMax}), (Pts{-1, 4}));
    EXPECT_EQ(spec_fields(Xgdln.gdspcs, Xgdln.nGdspcs), (Pts{0, 4, 4, 0.8, 0, 1}));
    EXPECT_EQ(Pts(Xgdln.frcdGdpts, Xgdln.frcdGdpts + Xgdln.nFrcdGdpts), (Pts{-1, 1}));
}

TEST_F(ReadFileCTest, DerivedOptionsTakePreferredNamesAndDebugFile) {
    gd_options.debugLevel = 1;  // a debug file is opened only for debug output
    pref_options.layerFile = record_text("pref.lyr");
    pref_options.solverInpFile = record_text("pref.inp");
    gd_options.layerFile = record_text("own.lyr");
    gd_options.debugFile = record_text(file("debug.out", ""));
    set_derived_options2();
    EXPECT_STREQ(gd_options.layerFile, "pref.lyr");
    EXPECT_STREQ(gd_options.solverInpFile, "pref.inp");
    ASSERT_NE(gd_options.debugStream, stdout);
    std::fclose(gd_options.debugStream);

    reset_generator_records(1);
    gd_options.solverInpFile = record_text("");
    gd_options.debugFile = record_text("/nonexistent-dir/debug.out");
    testing::internal::CaptureStderr();
    set_derived_options2();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "using stdout - fopen: No such file or directory\n");
    EXPECT_EQ(gd_options.debugStream, stdout);
    EXPECT_STREQ(gd_options.solverInpFile, "SolverGdInp.dat");
}

// Body "Box" spans X [-1, 3], Y [2, 6], Z [10, 20]; rotor "Hub" has its centre off its box middle.
TEST_F(ReadFileCTest, PositionsRelativeToBodies) {
    BodyBuilder build;
    Rotor hubRotor{{7, 8, 9}, 1, 0.1, 0, 0.009};
    *new_body_struct() = build.plain_body(BDY_NONE, {-1, 2, 10}, {3, 6, 20});
    *new_body_struct() = build.plain_body(BDY_YROTOR, {0, 0, 0}, {10, 10, 10});
    allBdys[0].name = const_cast<char*>("Box");
    allBdys[1].name = const_cast<char*>("Hub");
    allBdys[1].rotor = &hubRotor;
    // Rows: name, length code, fraction, axis, position. Length code 0 is the middle (a rotor's
    // centre), 1 the maximum, 2 the minimum plus the fraction of the length, any other the middle
    // plus it; an unknown or empty name is unset.
    const std::tuple<const char*, int, double, int, double> rows[] = {
        {"Box", 2, 0.25, 0, -1.0 + 4.0 * 0.25},
        {"Box", 1, DBL_MAX, 1, 6.0},
        {"Box", 0, DBL_MAX, 2, 15.0},
        {"Box", 7, -0.5, 2, 15.0 - 10.0 * 0.5},
        {"Hub", 0, DBL_MAX, 1, 8.0},
        {"Nobody", 2, 0.0, 0, DBL_MAX},
        {"", 2, 0.0, 0, DBL_MAX}};
    for (const auto& [name, code, fraction, axis, expected] : rows) {
        const BodyLengthPosn posn{const_cast<char*>(name), code, fraction};
        const Body* own = std::strcmp(name, "Box") == 0 && code ? &allBdys[0] : nullptr;
        EXPECT_EQ(reltd_bdyposn_to_abs_posn(&posn, own, axis), expected) << name << code;
    }
    allBdys[1].rotor = nullptr;  // a rotor type without its rotor takes the box middle
    const BodyLengthPosn hubMid{const_cast<char*>("Hub"), 0, DBL_MAX};
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&hubMid, nullptr, 1), 5.0);
}

// Keyword quirks: "#" inside a value, rotor keys without a rotor, unknown words, names with
// blanks, other sections' end keywords, reversed specs, empty positions and CRLF names.
// "Main Wing" is two X planes at 0 and 8, each a single point (0, 0). The blank behind
// "from:" is part of the key: that position is empty.
TEST_F(ReadFileCTest, RecordEndsAndSplitPositions) {
    const std::string wing = file("mainwing.cut", "2 1\n0.0\n0 0\n8.0\n0 0\n");
    const std::string text = R"(Start Body Definitions
New Body
center: (9.0,9.0,9.0)
name: Odd#1
type: X-Plane Rotor
New Body
name: Main Wing
type: XcutPlanes
Points File: )" + wing +
                             R"(
#
New Body
name: Ball
type: Sphere
#
)"
                             "New Body\r\nname: Cr\r\n#\r\n"
                             R"(End Body Definitions
Body X-GridSpec
End Y-Grid Spec
New GridSpec
from: Main Wing L0.25
to: Main Wing L-0.5
GP Ratio: 1.2
Grid Line On To: False
number of Grids: 2.5
#
New GridSpec
to: Main Wing L0.5
from: 
number of Grids: 1
Maintain Symmetry About: Nowhere
#
End X-Grid Spec
Start Options
Debug Level: 0
End Options
)";
    manage_gridgen_input(file("quirks.spec", text).c_str());
    std::vector<std::pair<std::string, int>> names;  // "-" for a body without a name
    for (int b = 0; b < numBdys; ++b)
        names.emplace_back(allBdys[b].name ? allBdys[b].name : "-", allBdys[b].type);
    EXPECT_EQ(names, (decltype(names){{"-", 10}, {"Main Wing", 0}, {"Ball", 10}, {"Cr\r", 10}}));
    EXPECT_EQ(allBdys[0].rotor, nullptr);
    EXPECT_EQ(std::make_pair(allBdys[1].bdyMax[0], allBdys[2].bdyMin[0]),
              std::make_pair(8.0, DBL_MAX));
    ASSERT_EQ(Xgdln.nGdspcs, 2);
    // 2 .. -4 read reversed: ends swapped, 1.2 inverted, the cleared To flag stays on To.
    // An empty from: leaves DBL_MAX, which the end swaps behind the set to: end.
    EXPECT_EQ(spec_fields(Xgdln.gdspcs, 2),
              (Pts{-4, 2, 2.5, 1.0 / 1.2, 1, 0, 4.0, DBL_MAX, 1, 1, 1, 1}));
    EXPECT_EQ(std::make_pair(Xgdln.hasSymm, Xgdln.symmPosn), std::make_pair(0, DBL_MAX));
}

TEST_F(ReadFileCTest, ZeroGridSpecsBecomeForcedPoints) {
    BdyGdspc specs[5] = {
        {1, 2, 0.0, 1, 1, 1},        // both ends forced
        {0, 9, 5.0, 1.1, 1, 1},      // kept
        {3, 4, 1e-8, 1, 0, 1},       // nGds equal to gridTol is not above it: To only
        {DBL_MAX, 7, 0.0, 1, 1, 1},  // unset From is not noted
        {5, 6, 2e-8, 1, 0, 0},       // kept
    };
    GridLine line = make_line(0);
    set_specs(&line, specs, 5);
    line.frcdGdpts = static_cast<double*>(malloc(sizeof(double)));
    line.frcdGdpts[0] = 0.5;
    line.nFrcdGdpts = 1;
    rm_gdspc_with_nGds_zero_to_gen_frcd_gdpts(&line);
    EXPECT_EQ(spec_fields(line.gdspcs, line.nGdspcs),
              (Pts{0, 9, 5.0, 1.1, 1, 1, 5, 6, 2e-8, 1, 0, 0}));
    EXPECT_EQ(Pts(line.frcdGdpts, line.frcdGdpts + line.nFrcdGdpts), (Pts{0.5, 1, 2, 4, 7}));
    free(line.frcdGdpts);
}

using ReadFileCDeathTest = GenTest;

TEST_F(ReadFileCDeathTest, FatalInputEndsWithStatusOne) {
    // Without a blank before the L the name loses its last letter.
    const std::string wing = file("w.cut", "1 1\n0.0\n0 0\n");
    std::string glued = "Start Body Definitions\nNew Body\nname: Wing\ntype: XcutPlanes\n";
    glued += "Points File: " + wing + "\n#\nEnd Body Definitions\nBody Y-GridSpec\nNew GridSpec\n";
    const std::pair<std::string, const char*> rows[] = {
        {"/nonexistent-dir/none.spec", "^ERROR: File not found\n$"},
        {file("unknown.spec", "Body Z-GridSpec\nNew GridSpec\nin: Nope\n#\nEnd Z-Grid Spec\n"),
         "^\nError: Incorrect body name 'Nope'\n$"},
        {file("glued.spec", glued + "to: Wing L1\nfrom: WingL0.5\n"),
         "^\nError: Incorrect body name 'Win'\n$"}};
    for (const auto& [path, message] : rows)
        EXPECT_EXIT(manage_gridgen_input(path.c_str()), testing::ExitedWithCode(1), message);
}

}  // namespace
