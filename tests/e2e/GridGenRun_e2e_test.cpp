// End-to-end runs of the Kavex3_GridGen executable in fresh run directories.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <boost/filesystem/operations.hpp>
#include <set>
#include <string>
#include <vector>

#include "ScratchDir.h"

namespace {

struct RunResult {
    int status;  // exit status as the shell sees it, or -1 when the program didn't exit
    std::string strStdout;
    std::string strStderr;
};

// Runs the executable with the given arguments from workDir, capturing its inherited streams.
RunResult RunProgram(const std::string& workDir, const std::vector<std::string>& arguments) {
    ScratchDir capture;
    const std::string outPath = capture / "stdout", errPath = capture / "stderr";
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(workDir.c_str()) != 0) _exit(120);
        if (!freopen(outPath.c_str(), "w", stdout) || !freopen(errPath.c_str(), "w", stderr)) {
            _exit(121);
        }
        std::vector<char*> argv = {const_cast<char*>(KAVEX_GRIDGEN_EXE)};
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(KAVEX_GRIDGEN_EXE, argv.data());
        _exit(122);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadWholeFile(outPath),
            ReadWholeFile(errPath)};
}

std::set<std::string> FilesIn(const std::string& directory) {
    std::set<std::string> names;
    for (const auto& entry : boost::filesystem::directory_iterator(directory)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

const std::string kBanner = "Vantor Version 0.9.15 (Beta) Build 396\n\n";

const std::string kCutProject = R"(Start Options
    Grid Start Point: (0.0,0.0,0.0)
    Debug Level: 0
    Layer File: layers.dat
End Options
Start Body Definitions
    New Body
                          name: Plate
                          type: XcutPlanes
                   Points File: plate.cut
                used in solver: True
    #
End Body Definitions
Body X-GridSpec
    New GridSpec
        in: Plate
        number of Grids: 2
    #
End X-Grid Spec
)";

// The plate's points file, as the generator finds it in the run directory: two planes of a square.
const std::string kPlateCut = "2 4\n0.0\n0 0\n1 0\n1 1\n0 1\n1.0\n0 0\n1 0\n1 1\n0 1\n";
// Six empty layer lists: X, Y, Z before the body, then after it.
const std::string kNoLayers = "0\n0\n0\n0\n0\n0\n";

// The files a run directory holds before the run.
const std::set<std::string> kInputs = {"cut.Grid", "rotor.SlvrRot", "1-x.cut", "layers.dat"};

// The same with the two logs added.
std::set<std::string> InputsAndLogs() {
    std::set<std::string> names = kInputs;
    names.insert({"Kavex3_GridGen.out", "Kavex3_GridGen.err"});
    return names;
}

// A run directory holding a project with one cut body, its points file, a layer file and a rotor
// file.
struct CutProjectRun {
    ScratchDir dir;
    std::string strProject = dir / "cut.Grid";
    std::string strRotor = dir / "rotor.SlvrRot";
    CutProjectRun() {
        WriteWholeFile(strProject, kCutProject);
        WriteWholeFile(strRotor, "0\n");
        WriteWholeFile(dir / "1-x.cut", kPlateCut);
        WriteWholeFile(dir / "layers.dat", kNoLayers);
    }
    std::vector<std::string> Arguments() const {
        return {"-Grid", strProject, "-SlvrRot", strRotor, "-pth", dir.Path()};
    }
    std::string Log(const char* suffix) const {
        return ReadWholeFile(dir / "Kavex3_GridGen" + suffix);
    }
};

}  // namespace

TEST(GridGenRun, CutBodyProjectTakesTheShortPathAndCleansUp) {
    CutProjectRun run;
    const RunResult r = RunProgram(run.dir.Path(), run.Arguments());
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.strStdout, "");
    EXPECT_EQ(r.strStderr, "");
    EXPECT_EQ(run.Log(".out"), kBanner + "Reading .Grid file (" + run.strProject +
                                   ")...\nBegin Grid Generation...\n");
    EXPECT_EQ(run.Log(".err"), "");
    // The temporary files are gone; the generator's files stay.
    std::set<std::string> expected = InputsAndLogs();
    expected.insert({"KX3.grid.dat", "SolverGdInp.dat", "Lcl2Gbl.dat"});
    EXPECT_EQ(FilesIn(run.dir.Path()), expected);
    EXPECT_EQ(ReadWholeFile(run.strProject), kCutProject);
}

TEST(GridGenRun, MissingParameterFailsBeforeTheLogs) {
    CutProjectRun run;
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"-Grid", run.strProject, "-SlvrRot", run.strRotor},
          {"-Grid", run.strProject, "-pth", run.dir.Path()},
          {"-SlvrRot", run.strRotor, "-pth", run.dir.Path()},
          {"-Grid", run.strProject, "-SlvrRot", "-pth", run.dir.Path()},
          {"Grid", run.strProject, "SlvrRot", run.strRotor, "pth", run.dir.Path()}}) {
        const RunResult r = RunProgram(run.dir.Path(), arguments);
        EXPECT_EQ(r.status, 255);
        EXPECT_EQ(r.strStdout, "");
        EXPECT_EQ(r.strStderr, "GRID GEN ERROR:  Incorrect command line arguments\n");
        EXPECT_EQ(FilesIn(run.dir.Path()), kInputs);
    }
}

TEST(GridGenRun, RunDirectoryThatCantTakeTheLogs) {
    CutProjectRun run;
    const std::string missing = run.dir / "no-such-dir";
    const RunResult r = RunProgram(
        run.dir.Path(), {"-Grid", run.strProject, "-SlvrRot", run.strRotor, "-pth", missing});
    EXPECT_EQ(r.status, 255);
    EXPECT_EQ(r.strStdout, "");
    EXPECT_EQ(r.strStderr, "GRID GEN ERROR:  Could not open the logs in " + missing +
                               ": No such file or directory\n");
}

TEST(GridGenRun, LinkIdRules) {
    CutProjectRun run;
    // Negative in the "=" form: an error, reported in the error log after the banner.
    std::vector<std::string> arguments = run.Arguments();
    arguments.push_back("-linkid=-1");
    RunResult r = RunProgram(run.dir.Path(), arguments);
    EXPECT_EQ(r.status, 255);
    EXPECT_EQ(r.strStderr, "");
    EXPECT_EQ(run.Log(".out"), kBanner);
    EXPECT_EQ(run.Log(".err"), "GRID GEN ERROR:  Valid linkID must be specified\n");
    EXPECT_FALSE(PathExists(run.dir / "temp.Grid"));
    EXPECT_FALSE(PathExists(run.dir / "temp.SlvrRot"));

    // A valid link number: the run can't reach its parent and says so rather than run unlinked.
    arguments = run.Arguments();
    arguments.insert(arguments.begin(), {"--linkid", "0x10"});
    r = RunProgram(run.dir.Path(), arguments);
    EXPECT_EQ(r.status, 255);
    EXPECT_EQ(run.Log(".out"), kBanner);
    EXPECT_EQ(run.Log(".err"),
              "GRID GEN ERROR: Failed to start the link manager: Couldn't open shared memory");

    // Written apart, -1 is a parameter name; no value, or no number, means no link.
    const std::string done =
        kBanner + "Reading .Grid file (" + run.strProject + ")...\nBegin Grid Generation...\n";
    for (const std::vector<std::string>& extra :
         {std::vector<std::string>{"-linkid", "-1"}, {"-linkid"}, {"-linkid", "abc"}}) {
        arguments = run.Arguments();
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        r = RunProgram(run.dir.Path(), arguments);
        EXPECT_EQ(r.status, 0) << extra.size();
        EXPECT_EQ(run.Log(".out"), done);
        EXPECT_EQ(run.Log(".err"), "");
    }
}

TEST(GridGenRun, MissingOrEmptyProjectAndUnreadableRotorStillFinish) {
    CutProjectRun run;
    WriteWholeFile(run.dir / "empty.Grid", "");
    for (const std::string& project : {run.dir / "empty.Grid", run.dir / "missing.Grid"}) {
        const RunResult r = RunProgram(run.dir.Path(), {"-Grid=" + project, "-SlvrRot",
                                                        run.dir / "none", "-pth", run.dir.Path()});
        EXPECT_EQ(r.status, 0);
        // Without an Options section the generator keeps its default debug level, so its debug
        // output follows the stage lines.
        const std::string stages =
            kBanner + "Reading .Grid file (" + project + ")...\nBegin Grid Generation...\n";
        EXPECT_EQ(run.Log(".out").substr(0, stages.size()), stages);
        EXPECT_EQ(run.Log(".err"), "");
        EXPECT_TRUE(PathExists(run.dir / "SolverGdInp.dat"));
        EXPECT_FALSE(PathExists(run.dir / "temp.SlvrRot"));
        EXPECT_FALSE(PathExists(run.dir / "temp.Grid"));
    }
}

// A project whose one body is an STL surface with the given points file.
std::string StlProject(const std::string& pointsFile) {
    return "Start Body Definitions\n  New Body\n   type: STL\n   Points File: " + pointsFile +
           "\n   used in solver: True\n  #\nEnd Body Definitions\n";
}

TEST(GridGenRun, UnreadableSurfaceBodyEndsTheProcessByItsException) {
    CutProjectRun run;
    WriteWholeFile(run.strProject, StlProject(run.dir / "missing.stl"));
    const RunResult r = RunProgram(run.dir.Path(), run.Arguments());
    // Nobody catches the mesh library's exception: the runtime ends the process, with no exit
    // status and the temporary files left behind.
    EXPECT_EQ(r.status, -1);
    EXPECT_EQ(run.Log(".out"),
              kBanner + "Reading .Grid file (" + run.strProject + ")...\nReading bodies...\n");
    EXPECT_NE(run.Log(".err").find("FEL_type_detection_error"), std::string::npos);
    EXPECT_TRUE(PathExists(run.dir / "temp.Grid"));
    EXPECT_TRUE(PathExists(run.dir / "temp.SlvrRot"));
}
