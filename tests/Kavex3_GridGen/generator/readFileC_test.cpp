// Tests of the generator's specification reader, its grid specs and its debug dump.
#include "generator/readFileC.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "gdtest_util.h"
#include "generator/readFileC_dbg.h"

namespace {

using ReadFileCTest = GenInputTest;

// Two X planes of a wing, four points each; the pairs are (Y, Z). Scaled by 2 on reading.
const char* const kWingCuts =
    "# wing sections\n"
    "2  4\n"
    "# root\n"
    "0.0\n"
    " -1.0  0.0\n"
    "  1.0  0.0\n"
    "  1.0  0.5\n"
    " -1.0  0.5\n"
    "# tip\n"
    "3.0\n"
    " -0.5  0.0\n"
    "  0.5  0.0\n"
    "  0.5  0.25\n"
    " -0.5  0.25\n";

// Replaces the first "@FILE@" of text by path.
std::string with_file(std::string text, const std::string& path) {
    return text.replace(text.find("@FILE@"), 6, path);
}

const char* const kProject = R"(# generator specification
Start Options
    Grid Start Point: (-1.5,0.0,2.0)
    Conversion Factor: (2.0,2.0,2.0)
    Debug Level: 0
    Solver Input File: run/solver.inp
    Layer File: run/layers.lyr
End Options
Start Body Definitions
    New Body
        name: Wing
        type: XcutPlanes
        Points File: @FILE@
        used in solver: True
    #
    New Body
        name: Rotor1
        type: Z-Plane Rotor
        center: (1.0,2.0,3.0)
        radius: 0.5
        half thickness: 0.1
        Is Absolute Thickness: False
        used in solver: False
    #
End Body Definitions
Body X-GridSpec
    New GridSpec
        in: Wing
        number of Grids: 10
    #
    New GridSpec
        from: Wing L1.0
        to: Wing L0.5
        number of Grids: 4
        GP Ratio: -1.2
        Grid Line On From: False
    #
    New GridSpec
        from: Rotor1 L0
        to: Rotor1 L1
    #
End X-Grid Spec
Body Y-GridSpec
    New GridSpec
        from: Wing L0
        to: Wing L0.5
        number of Grids: 7.5
        GP Ratio: 1.1
        Maintain Symmetry About: Wing L0.5
    #
    New GridSpec
        in: Rotor1
        number of Grids: 0
        Grid Line On From: Yes, True
        Grid Line On To: False
    #
End Y-Grid Spec
Body Z-GridSpec
    New GridSpec
        in: Rotor1
        number of Grids: 3
    #
End Z-Grid Spec
)";

void expect_spec(const BdyGdspc& s, double from, double to, double nGds, double ratio, int fxdFrom,
                 int fxdTo) {
    EXPECT_EQ(s.from, from);
    EXPECT_EQ(s.to, to);
    EXPECT_EQ(s.nGds, nGds);
    EXPECT_EQ(s.gp_ratio, ratio);
    EXPECT_EQ(s.FxdFrom, fxdFrom);
    EXPECT_EQ(s.FxdTo, fxdTo);
}

// The wing's box after scaling by 2 is X [0, 6], Y [-2, 2], Z [0, 1]; the rotor's is
// X [1, 3], Y [3, 5], Z [6 - 0.1, 6 + 0.1] (centre (2, 4, 6), radius 1, thickness ratio 0.1).
TEST_F(ReadFileCTest, RealisticProjectFillsOptionsLinesAndBodies) {
    const std::string wing = write_temp_file("wing.cut", kWingCuts);
    manage_gridgen_input(write_temp_file("project.spec", with_file(kProject, wing)).c_str());

    EXPECT_EQ(gd_options.gridStart[0], -1.5);
    EXPECT_EQ(gd_options.gridStart[1], 0.0);
    EXPECT_EQ(gd_options.gridStart[2], 2.0);
    EXPECT_EQ(gd_options.debugLevel, 0);
    EXPECT_STREQ(gd_options.solverInpFile, "run/solver.inp");
    EXPECT_STREQ(gd_options.layerFile, "run/layers.lyr");
    EXPECT_EQ(gd_options.debugStream, stdout);
    EXPECT_EQ(gd_options.plotThicknessRatio, 0.009);
    EXPECT_EQ(gd_options.gridTol, 1e-8);
    EXPECT_EQ(OptionsDefnDone + BodyDefnsDone + XgdSpecDone + YgdSpecDone + ZgdSpecDone, 5);

    ASSERT_EQ(numBdys, 2);
    EXPECT_EQ(numOrigBdys, 2);
    const Body& w = allBdys[0];
    EXPECT_STREQ(w.name, "Wing");
    EXPECT_EQ(w.type, 0);
    ASSERT_EQ(w.nCuts, 2);
    EXPECT_EQ(w.cuts[1].posn, 6.0);
    EXPECT_EQ(w.cuts[1].pts[2][1], 0.5);
    EXPECT_EQ(w.fullSpanUsedInSolver, 1);
    const double wMin[3] = {0, -2, 0}, wMax[3] = {6, 2, 1};
    const Body& r = allBdys[1];
    EXPECT_STREQ(r.name, "Rotor1");
    EXPECT_EQ(r.type, 6);
    ASSERT_NE(r.rotor, nullptr);
    EXPECT_EQ(r.rotor->radius, 1.0);
    EXPECT_EQ(r.rotor->thickness, 0.1);
    EXPECT_EQ(r.rotor->isAbsThickness, 0);
    EXPECT_EQ(r.usedInSolver, 0);
    EXPECT_EQ(r.fullSpanUsedInSolver, 0);
    const double rMin[3] = {1, 3, 6.0 - 0.1}, rMax[3] = {3, 5, 6.0 + 0.1};
    for (int a = 0; a < 3; ++a) {
        EXPECT_EQ(w.bdyMin[a], wMin[a]);
        EXPECT_EQ(w.bdyMax[a], wMax[a]);
        EXPECT_EQ(r.bdyMin[a], rMin[a]);
        EXPECT_EQ(r.bdyMax[a], rMax[a]);
        EXPECT_EQ(r.rotor->center[a], 2.0 * (a + 1));
    }
    EXPECT_EQ(Xgdln.allBdysMin, 0.0);
    EXPECT_EQ(Xgdln.allBdysMax, 6.0);
    EXPECT_EQ(Ygdln.allBdysMin, -2.0);
    EXPECT_EQ(Ygdln.allBdysMax, 5.0);
    EXPECT_EQ(Zgdln.allBdysMin, 0.0);
    EXPECT_EQ(Zgdln.allBdysMax, 6.0 + 0.1);

    // X: the reversed grid spec (6 to 3) is swapped, its ratio inverted, its flags kept; the grid
    // spec without grids leaves the rotor's X ends 1 and 3 as forced points.
    ASSERT_EQ(Xgdln.nGdspcs, 2);
    expect_spec(Xgdln.gdspcs[0], 0, 6, 10, 1.0, 1, 1);
    expect_spec(Xgdln.gdspcs[1], 3, 6, 4, 1.0 / (-1.0 / -1.2), 0, 1);
    ASSERT_EQ(Xgdln.nFrcdGdpts, 2);
    EXPECT_EQ(Xgdln.frcdGdpts[0], 1.0);
    EXPECT_EQ(Xgdln.frcdGdpts[1], 3.0);
    EXPECT_EQ(Xgdln.hasSymm, 0);
    EXPECT_EQ(Xgdln.symmPosn, DBL_MAX);
    // Y: symmetry about the wing's Y middle; only the From end of the empty spec is forced.
    ASSERT_EQ(Ygdln.nGdspcs, 1);
    expect_spec(Ygdln.gdspcs[0], -2, 0, 7.5, 1.1, 1, 1);
    EXPECT_EQ(Ygdln.hasSymm, 1);
    EXPECT_EQ(Ygdln.symmPosn, 0.0);
    ASSERT_EQ(Ygdln.nFrcdGdpts, 1);
    EXPECT_EQ(Ygdln.frcdGdpts[0], 3.0);
    ASSERT_EQ(Zgdln.nGdspcs, 1);
    expect_spec(Zgdln.gdspcs[0], 6.0 - 0.1, 6.0 + 0.1, 3, 1.0, 1, 1);
    EXPECT_EQ(Zgdln.nFrcdGdpts, 0);
    EXPECT_EQ(Zgdln.commonSymm + Zgdln.nGdpts, 0);
    EXPECT_EQ(Zgdln.fullSpanAbout, DBL_MAX);
    EXPECT_EQ(Zgdln.discardBelow, DBL_MAX);
    EXPECT_EQ(Zgdln.discardAfter, DBL_MAX);

    const std::string dump = stream_text([](FILE* f) { dbgpr_gridLines_info2(f, "Lines"); });
    EXPECT_EQ(dump,
              "\nLines\n"
              "\nGrid Line Type: X Line\n"
              "All Bodies X Minimum: 0.000000\nAll Bodies X Maximum: 6.000000\n"
              "\nNo. of Grid Specs: 2\n"
              "\nFrom: 0.000000\nTo: 6.000000\nNum. Grids: 10.000000\nGP Ratio: 1.000000\n"
              "From Line Fxd: True\nTo Line Fxd: True\n"
              "\nFrom: 3.000000\nTo: 6.000000\nNum. Grids: 4.000000\nGP Ratio: 1.200000\n"
              "From Line Fxd: False\nTo Line Fxd: True\n"
              "\nNumber of Forced Grid Points: 2\nForced Grid Points: 1.000000, 3.000000\n"
              "\nGrid Line Type: Y Line\n"
              "Symmetry must be maintained about: 0.000000\nCommon Symmetry: False\n"
              "All Bodies Y Minimum: -2.000000\nAll Bodies Y Maximum: 5.000000\n"
              "\nNo. of Grid Specs: 1\n"
              "\nFrom: -2.000000\nTo: 0.000000\nNum. Grids: 7.500000\nGP Ratio: 1.100000\n"
              "From Line Fxd: True\nTo Line Fxd: True\n"
              "\nNumber of Forced Grid Points: 1\nForced Grid Points: 3.000000\n"
              "\nGrid Line Type: Z Line\n"
              "All Bodies Z Minimum: 0.000000\nAll Bodies Z Maximum: 6.100000\n"
              "\nNo. of Grid Specs: 1\n"
              "\nFrom: 5.900000\nTo: 6.100000\nNum. Grids: 3.000000\nGP Ratio: 1.000000\n"
              "From Line Fxd: True\nTo Line Fxd: True\n"
              "\nNumber of Forced Grid Points: 0\nForced Grid Points: \n");
}

TEST_F(ReadFileCTest, DumpGoesToDebugStreamAboveLevelFive) {
    const std::string spec =
        write_temp_file("nooptions.spec", "Body X-GridSpec\nEnd X-Grid Spec\n");
    testing::internal::CaptureStdout();
    manage_gridgen_input(spec.c_str());
    const std::string out = testing::internal::GetCapturedStdout();
    EXPECT_EQ(out.rfind("\nGrid Lines - almost just after reading in the spec\n"
                        "\nGrid Line Type: X Line\nAll Bodies X Minimum: ",
                        0),
              0u);
    EXPECT_NE(out.find("\nGrid Line Type: Z Line\n"), std::string::npos);
    // Without an Options section the file names stay unset.
    EXPECT_EQ(gd_options.solverInpFile, nullptr);
    EXPECT_EQ(gd_options.layerFile, nullptr);
    EXPECT_EQ(XgdSpecDone, 1);

    const std::string quiet =
        write_temp_file("quiet.spec", "Start Options\nDebug Level: 5\nEnd Options\n");
    testing::internal::CaptureStdout();
    manage_gridgen_input(quiet.c_str());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_STREQ(gd_options.solverInpFile, "SolverGdInp.dat");
}

TEST_F(ReadFileCTest, DerivedOptionsTakePreferredNamesAndDebugFile) {
    pref_options.layerFile = strdup("pref.lyr");
    pref_options.solverInpFile = strdup("pref.inp");
    gd_options.layerFile = strdup("own.lyr");
    gd_options.debugFile = strdup(write_temp_file("debug.out", "").c_str());
    set_derived_options2();
    EXPECT_STREQ(gd_options.layerFile, "pref.lyr");
    EXPECT_STREQ(gd_options.solverInpFile, "pref.inp");
    ASSERT_NE(gd_options.debugStream, stdout);
    std::fclose(gd_options.debugStream);

    reset_generator_records();
    gd_options.solverInpFile = strdup("");
    gd_options.debugFile = strdup("/nonexistent-dir/debug.out");
    testing::internal::CaptureStderr();
    set_derived_options2();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "using stdout - fopen: No such file or directory\n");
    EXPECT_EQ(gd_options.debugStream, stdout);
    EXPECT_STREQ(gd_options.solverInpFile, "SolverGdInp.dat");
}

// Body "Box" spans X [-1, 3], Y [2, 6], Z [10, 20]; rotor "Hub" has its centre off its box middle.
TEST_F(ReadFileCTest, PositionsRelativeToBodies) {
    Body* box = new_body_struct();
    box->name = strdup("Box");
    const double lo[3] = {-1, 2, 10}, hi[3] = {3, 6, 20};
    for (int a = 0; a < 3; ++a) box->bdyMin[a] = lo[a], box->bdyMax[a] = hi[a];
    Rotor hubRotor{{7, 8, 9}, 1, 0.1, 0, 0.009};
    Body* hub = new_body_struct();
    hub->name = strdup("Hub");
    hub->type = 5;
    hub->rotor = &hubRotor;
    for (int a = 0; a < 3; ++a) hub->bdyMin[a] = 0, hub->bdyMax[a] = 10;
    box = &allBdys[0];

    char boxName[] = "Box", hubName[] = "Hub", noName[] = "Nobody", empty[] = "";
    const BodyLengthPosn low{boxName, 2, 0.25}, high{boxName, 1, DBL_MAX};
    const BodyLengthPosn mid{boxName, 0, DBL_MAX}, midMinus{boxName, 7, -0.5};
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&low, box, 0), -1.0 + 4.0 * 0.25);
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&high, box, 1), 6.0);
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&mid, nullptr, 2), 15.0);
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&midMinus, box, 2), 15.0 - 10.0 * 0.5);
    const BodyLengthPosn hubMid{hubName, 0, DBL_MAX}, unknown{noName, 2, 0.0};
    const BodyLengthPosn unnamed{empty, 2, 0.0};
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&hubMid, nullptr, 1), 8.0);
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&unknown, nullptr, 0), DBL_MAX);
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&unnamed, nullptr, 0), DBL_MAX);
    allBdys[1].rotor = nullptr;  // a rotor type without its rotor takes the box middle
    EXPECT_EQ(reltd_bdyposn_to_abs_posn(&hubMid, nullptr, 1), 5.0);

    int found = 7;
    EXPECT_STREQ(getSubstring("  from: Box L0.5", "from: ", &found), "Box L0.5");
    EXPECT_EQ(found, 1);
    EXPECT_STREQ(getSubstring("  From: Box L0.5", "from: ", &found), "");
    EXPECT_EQ(found, 0);
}

// Keyword quirks: "#" inside a value, rotor keys without a rotor, unknown words, names with
// blanks, other sections' end keywords, reversed specs, empty positions and CRLF names.
// "Main Wing" is two X planes at 0 and 8, each a single point (0, 0). The blank behind
// "from:" is part of the key: that position is empty.
TEST_F(ReadFileCTest, RecordEndsAndSplitPositions) {
    const std::string wing = write_temp_file("mainwing.cut", "2 1\n0.0\n0 0\n8.0\n0 0\n");
    const char* const text = R"(Start Body Definitions
New Body
center: (9.0,9.0,9.0)
name: Odd#1
type: X-Plane Rotor
New Body
name: Main Wing
type: XcutPlanes
Points File: @FILE@
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
    const std::string spec = write_temp_file("quirks.spec", with_file(text, wing));
    manage_gridgen_input(spec.c_str());
    ASSERT_EQ(numBdys, 4);
    EXPECT_EQ(allBdys[0].name, nullptr);
    EXPECT_EQ(allBdys[0].type, 10);
    EXPECT_EQ(allBdys[0].rotor, nullptr);
    EXPECT_STREQ(allBdys[1].name, "Main Wing");
    EXPECT_EQ(allBdys[1].bdyMax[0], 8.0);
    EXPECT_STREQ(allBdys[2].name, "Ball");
    EXPECT_EQ(allBdys[2].type, 10);
    EXPECT_EQ(allBdys[2].bdyMin[0], DBL_MAX);
    EXPECT_STREQ(allBdys[3].name, "Cr\r");
    EXPECT_EQ(YgdSpecDone, 0);
    EXPECT_EQ(XgdSpecDone, 1);
    ASSERT_EQ(Xgdln.nGdspcs, 2);
    // 2 .. -4 read reversed: ends swapped, 1.2 inverted, the cleared To flag stays on To.
    expect_spec(Xgdln.gdspcs[0], -4.0, 2.0, 2.5, 1.0 / 1.2, 1, 0);
    // An empty from: leaves DBL_MAX, which the end swaps behind the set to: end.
    expect_spec(Xgdln.gdspcs[1], 4.0, DBL_MAX, 1.0, 1.0, 1, 1);
    EXPECT_EQ(Xgdln.hasSymm, 0);
    EXPECT_EQ(Xgdln.symmPosn, DBL_MAX);
}

TEST_F(ReadFileCTest, ZeroGridSpecsBecomeForcedPoints) {
    BdyGdspc specs[5] = {
        {1, 2, 0.0, 1, 1, 1},        // both ends forced
        {0, 9, 5.0, 1.1, 1, 1},      // kept
        {3, 4, 1e-8, 1, 0, 1},       // nGds equal to gridTol is not above it: To only
        {DBL_MAX, 7, 0.0, 1, 1, 1},  // unset From is not noted
        {5, 6, 2e-8, 1, 0, 0},       // kept
    };
    GridLine line;
    init_gridln(&line, 0);
    line.gdspcs = specs;
    line.nGdspcs = 5;
    line.frcdGdpts = static_cast<double*>(malloc(sizeof(double)));
    line.frcdGdpts[0] = 0.5;
    line.nFrcdGdpts = 1;
    rm_gdspc_with_nGds_zero_to_gen_frcd_gdpts(&line);
    ASSERT_EQ(line.nGdspcs, 2);
    expect_spec(line.gdspcs[0], 0, 9, 5.0, 1.1, 1, 1);
    expect_spec(line.gdspcs[1], 5, 6, 2e-8, 1, 0, 0);
    const double forced[] = {0.5, 1, 2, 4, 7};
    ASSERT_EQ(line.nFrcdGdpts, 5);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(line.frcdGdpts[i], forced[i]) << i;
    free(line.frcdGdpts);
}

TEST_F(ReadFileCTest, SpecCollectionGrowsAndIsHandedOver) {
    for (int i = 0; i < 23; ++i) newBdyGdspc2()->nGds = i;
    ASSERT_EQ(getNBdyGdspcs(), 23);
    BdyGdspc* all = getAllBdyGdspcs();
    EXPECT_EQ(all[22].nGds, 22.0);
    expect_spec(all[0], DBL_MAX, DBL_MAX, 0.0, 1.0, 1, 1);
    reset_newBdyGdspc_parms2();
    EXPECT_EQ(getNBdyGdspcs(), 0);
    EXPECT_EQ(getAllBdyGdspcs(), nullptr);
    EXPECT_EQ(all[22].nGds, 22.0);  // the handed-over records are still there
    free(all);
}

using ReadFileCDeathTest = GenInputTest;

TEST_F(ReadFileCDeathTest, FatalInputEndsWithStatusOne) {
    EXPECT_EXIT(manage_gridgen_input("/nonexistent-dir/none.spec"), testing::ExitedWithCode(1),
                "^ERROR: File not found\n$");
    const std::string bodyless = write_temp_file(
        "unknown.spec", "Body Z-GridSpec\nNew GridSpec\nin: Nope\n#\nEnd Z-Grid Spec\n");
    EXPECT_EXIT(manage_gridgen_input(bodyless.c_str()), testing::ExitedWithCode(1),
                "^\nError: Incorrect body name 'Nope'\n$");
    // Without a blank before the L the name loses its last letter.
    const std::string wing = write_temp_file("w.cut", "1 1\n0.0\n0 0\n");
    const char* const text =
        "Start Body Definitions\nNew Body\nname: Wing\ntype: XcutPlanes\nPoints File: @FILE@\n"
        "#\nEnd Body Definitions\nBody Y-GridSpec\nNew GridSpec\nto: Wing L1\nfrom: WingL0.5\n";
    const std::string glued = write_temp_file("glued.spec", with_file(text, wing));
    EXPECT_EXIT(manage_gridgen_input(glued.c_str()), testing::ExitedWithCode(1),
                "^\nError: Incorrect body name 'Win'\n$");
}

}  // namespace
