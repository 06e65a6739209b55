// End-to-end runs of the Kavex3_GridGen executable: the run's files, its logs and its failures.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "LinkPeer.h"
#include "RunGridGen.h"

namespace {

const std::string kBanner = "Vantor Version 0.9.15 (Beta) Build 396\n\n";

const std::string kCutProject =
    Project("    Grid Start Point: (0.0,0.0,0.0)\n    Debug Level: 0\n    Layer File: layers.dat\n",
            BodyText("Plate", "XcutPlanes", "plate.cut"),
            {"        in: Plate\n        number of Grids: 2\n"});

// A cut-body project; the plate's points are where the driver points the generator: two planes
// of a unit square. Six empty layer lists.
struct CutProjectRun : GridGenRun {
    CutProjectRun()
        : GridGenRun(kCutProject, {"2 4\n0.0\n0 0\n1 0\n1 1\n0 1\n1.0\n0 0\n1 0\n1 1\n0 1\n"}) {}
    std::string Log(const char* suffix) const {
        return Read(std::string("Kavex3_GridGen") + suffix);
    }
};

}  // namespace

// Without one of the three parameters, or with a run directory that can't take the logs, the run
// ends before writing anything.
TEST(GridGenRun, MissingParameterOrLogDirectoryFailsBeforeTheLogs) {
    CutProjectRun run;
    const std::string p = run.strProject, r = run.strRotor, d = run.Path(), no = run / "no-dir";
    const std::string usage = "Incorrect command line arguments";
    for (const auto& [arguments, message] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"-Grid", p, "-SlvrRot", r}, usage},
             {{"-Grid", p, "-pth", d}, usage},
             {{"-SlvrRot", r, "-pth", d}, usage},
             {{"-Grid", p, "-SlvrRot", "-pth", d}, usage},
             {{"Grid", p, "SlvrRot", r, "pth", d}, usage},
             {{"-Grid", p, "-SlvrRot", r, "-pth", no},
              "Could not open the logs in " + no + ": No such file or directory"}}) {
        const RunResult result = run.Run(arguments);
        EXPECT_EQ(result.status, 255);
        EXPECT_EQ(result.strStdout, "");
        EXPECT_EQ(result.strStderr, "GRID GEN ERROR:  " + message + "\n");
        EXPECT_EQ(ReadFolder(run.Path()).size(), 4u);  // the project, rotor, cut and layer files
    }
}

TEST(GridGenRun, LinkIdRules) {
    CutProjectRun run;
    // Negative in the "=" form: an error, reported in the error log after the banner. A valid
    // number that holds no link: links are taken lowest first, so the last one, 99, is free unless
    // a hundred are in use in this user's region.
    for (const auto& [linkid, message] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"-linkid=-1"}, "GRID GEN ERROR:  Valid linkID must be specified\n"},
             {{"--linkid", "0x63"},
              "GRID GEN ERROR: Failed to attach to Con link: Unallocated link ID"}}) {
        std::vector<std::string> arguments = linkid;
        for (const std::string& argument : run.Arguments()) arguments.push_back(argument);
        const RunResult r = run.Run(arguments);
        EXPECT_EQ(r.status, 255);
        EXPECT_EQ(r.strStderr, "");
        EXPECT_EQ(run.Log(".out"), kBanner);
        EXPECT_EQ(run.Log(".err"), message);
        EXPECT_FALSE(run.Temporaries());
    }

    // Written apart, -1 is a parameter name; no value, or no number, means no link.
    for (const std::vector<std::string>& extra :
         {std::vector<std::string>{"-linkid", "-1"}, {"-linkid"}, {"-linkid", "abc"}}) {
        std::vector<std::string> arguments = run.Arguments();
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        EXPECT_EQ(run.Run(arguments).status, 0) << extra.size();
        EXPECT_EQ(run.Log(".out"), run.DriverLog());
        EXPECT_EQ(run.Log(".err"), "");
    }
}

TEST(GridGenRun, MissingOrEmptyProjectAndUnreadableRotorStillFinish) {
    CutProjectRun run;
    run.Write("empty.Grid", "");
    for (const std::string& project : {run / "empty.Grid", run / "missing.Grid"}) {
        const RunResult r =
            run.Run({"-Grid=" + project, "-SlvrRot", run / "none", "-pth", run.Path()});
        EXPECT_EQ(r.status, 0);
        // Without an Options section the generator keeps its default debug level, so its debug
        // output follows the stage lines.
        const std::string stages =
            kBanner + "Reading .Grid file (" + project + ")...\nBegin Grid Generation...\n";
        EXPECT_EQ(run.Log(".out").substr(0, stages.size()), stages);
        EXPECT_NE(run.Log(".out").find("\nGrid Lines - almost just after reading in the spec\n"),
                  std::string::npos);
        EXPECT_EQ(run.Log(".err"), "");
        // No grid lines: each axis is the start twice, one cell of width 0.
        EXPECT_EQ(run.Read("SolverGdInp.dat"), SolverFile({{0, 0}, {0, 0}, {0, 0}}));
        EXPECT_EQ(run.Read("Lcl2Gbl.dat"), "0.000000 0.000000 0.000000 \n");
        EXPECT_FALSE(run.Temporaries());
    }
}

TEST(GridGenRun, UnreadableSurfaceBodyEndsTheProcessByItsException) {
    CutProjectRun run;
    WriteWholeFile(run.strProject, Project("", BodyText("B", "STL", run / "missing.stl"), {}));
    const RunResult r = run.Run();
    // Nobody catches the mesh library's exception: the runtime ends the process, with no exit
    // status and the temporary files left behind.
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(run.Log(".out"),
              kBanner + "Reading .Grid file (" + run.strProject + ")...\nReading bodies...\n");
    // The runtime's line, then the exception's text, which names the file.
    const std::string head =
        "terminate called after throwing an instance of 'FEL_type_detection_error'\n"
        "  what():  Could not determine the filetype of " +
        (run / "missing.stl") + ". Failed in ";
    EXPECT_EQ(run.Log(".err").substr(0, head.size()), head);
    EXPECT_TRUE(PathExists(run / "temp.Grid") && PathExists(run / "temp.SlvrRot"));
}

// The fault: a linked run that failed while its stop check was inside the link ended holding the
// link manager's semaphore, and every later start-up in the user's region waited for good. A
// failing linked run now leaves its link and the region before it ends.
TEST(GridGenRun, FailingLinkedRunLeavesItsLink) {
    CutProjectRun run;
    std::remove((run / "1-x.cut").c_str());
    LinkPeer parent("-", "start conparent wait shutdown");
    const std::string started = parent.Read(2);
    ASSERT_EQ(started.rfind("1\n1 ", 0), 0u) << started;
    const int id = std::stoi(started.substr(4));
    std::vector<std::string> arguments = run.Arguments();
    arguments.insert(arguments.end(), {"-linkid", std::to_string(id)});
    EXPECT_EQ(run.Run(arguments).status, 1);
    EXPECT_EQ(RegionView("DorvaLM1_" + Dorva::GetUsername()).Block(id)[0], 1);  // the parent's
    parent.Go();
    EXPECT_EQ(parent.Read(), "waiting\ngo\ndown\n");
}
