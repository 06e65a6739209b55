// The worker driven through its link by Kavex3_Client, as the front end drives it. These runs use
// the user's real link region, as any front end does; the product never removes it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <thread>

#include "ScratchDir.h"

namespace {

// One cut body of two square planes, no layers (the layer file is named, so that a test can make
// it a pipe that holds the generator).
const std::string kProject = R"(Start Options
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

struct ClientResult {
    int status = -1;
    std::string strStdout;
    std::string strStderr;
};

// Runs the client from the run directory. whileRunning is called every 100 ms with the seconds
// since the start, until the client ends.
ClientResult RunClient(const ScratchDir& dir, const std::vector<std::string>& arguments,
                       const std::function<void(double)>& whileRunning = nullptr) {
    ScratchDir capture;
    std::vector<char*> argv = {const_cast<char*>(KAVEX3_CLIENT_EXE)};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    const std::string out = capture / "stdout", err = capture / "stderr";
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(dir.Path().c_str()) != 0 || !freopen(out.c_str(), "w", stdout) ||
            !freopen(err.c_str(), "w", stderr)) {
            _exit(120);
        }
        execv(KAVEX3_CLIENT_EXE, argv.data());
        _exit(121);
    }
    const auto start = std::chrono::steady_clock::now();
    int status = 0;
    while (waitpid(pid, &status, WNOHANG) == 0) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (whileRunning) {
            whileRunning(
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        }
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadWholeFile(out), ReadWholeFile(err)};
}

struct ClientRun {
    ScratchDir dir;
    ClientRun() {
        WriteWholeFile(dir / "cut.Grid", kProject);
        WriteWholeFile(dir / "rotor.SlvrRot", "0\n");
        WriteWholeFile(dir / "1-x.cut", "2 4\n0.0\n0 0\n1 0\n1 1\n0 1\n1.0\n0 0\n1 0\n1 1\n0 1\n");
        WriteWholeFile(dir / "layers.dat", "0\n0\n0\n0\n0\n0\n");
    }
    std::vector<std::string> Arguments() const {
        return {"-Grid", dir / "cut.Grid", "-SlvrRot", dir / "rotor.SlvrRot",
                "-pth",  dir.Path(),       "-worker",  KAVEX_GRIDGEN_EXE};
    }
};

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

}  // namespace

TEST(Kavex3Client, RunToTheEndReportsSuccessfulCompletion) {
    ClientRun run;
    const ClientResult r = RunClient(run.dir, run.Arguments());
    EXPECT_EQ(r.status, 0) << r.strStdout << r.strStderr;
    EXPECT_TRUE(Contains(r.strStdout, "Vantor Version 0.9.15 (Beta) Build 396 ("));
    EXPECT_TRUE(Contains(r.strStdout, "\nBegin Grid Generation... (")) << r.strStdout;
    EXPECT_TRUE(Contains(r.strStdout, " s: exit status 0\nSuccessful completion: yes\n"));
    EXPECT_FALSE(Contains(r.strStdout, "Error log"));
    EXPECT_TRUE(PathExists(run.dir / "KX3.grid.dat"));
    EXPECT_FALSE(PathExists(run.dir / "temp.Grid"));
    EXPECT_FALSE(PathExists(run.dir / "temp.SlvrRot"));
}

// The layer file is a pipe with no writer, so the generator waits in its open: the stop comes
// during the generator. The worker ends within its 3-second look at the flag plus the manager's
// shutdown of at most a second, reports success, and leaves its temporary files behind.
TEST(Kavex3Client, StopDuringTheGeneratorEndsTheWorkerWithStatusZero) {
    ClientRun run;
    const std::string fifo = run.dir / "layers.dat";
    std::remove(fifo.c_str());
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::vector<std::string> arguments = run.Arguments();
    arguments.insert(arguments.end(), {"-stopafter", "0.5"});
    bool blnReleased = false;
    // Should the stop fail, an empty layer file lets the run end rather than hang the test.
    const ClientResult r = RunClient(run.dir, arguments, [&](double seconds) {
        if (seconds < 20.0 || blnReleased) return;
        const int fd = open(fifo.c_str(), O_WRONLY | O_NONBLOCK);
        if (fd >= 0) close(fd);
        blnReleased = true;
    });
    EXPECT_FALSE(blnReleased) << r.strStdout;
    EXPECT_EQ(r.status, 0) << r.strStdout << r.strStderr;
    EXPECT_TRUE(Contains(r.strStdout, "\nBegin Grid Generation...\nStop set at "));
    EXPECT_TRUE(Contains(r.strStdout, " s: exit status 0\nSuccessful completion: yes\n"));
    const std::string marker = "the worker ended ";
    const size_t at = r.strStdout.find(marker);
    ASSERT_NE(at, std::string::npos) << r.strStdout;
    EXPECT_LE(std::atof(r.strStdout.c_str() + at + marker.size()), 4.5);
    EXPECT_EQ(ReadWholeFile(run.dir / "Kavex3_GridGen.out"),
              "Vantor Version 0.9.15 (Beta) Build 396\n\nReading .Grid file (" +
                  (run.dir / "cut.Grid") + ")...\nBegin Grid Generation...\n");
    EXPECT_TRUE(PathExists(run.dir / "temp.Grid"));
    EXPECT_EQ(ReadWholeFile(run.dir / "temp.SlvrRot"), "0\n\n");
}

TEST(Kavex3Client, FailingWorkerIsReportedWithItsErrorLog) {
    ClientRun run;
    std::remove((run.dir / "1-x.cut").c_str());
    const ClientResult r = RunClient(run.dir, run.Arguments());
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(Contains(r.strStdout, " s: exit status 1\nSuccessful completion: no\nError log " +
                                          (run.dir / "Kavex3_GridGen.err") + ":\n"))
        << r.strStdout;
    EXPECT_TRUE(Contains(r.strStdout, "can not open body points file"));
}

TEST(Kavex3Client, ArgumentsThatDontStartARun) {
    ClientRun run;
    std::vector<std::string> noWorker = run.Arguments();
    noWorker.back() = run.dir / "no-such-worker";
    std::vector<std::string> badStop = run.Arguments();
    badStop.insert(badStop.end(), {"-stopafter", "soon"});
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string expectedStdout, expectedStderr;
    } cases[] = {
        {{}, 2, "Usage: Kavex3_Client -Grid", ""},
        {{"--help"}, 0, "Usage: Kavex3_Client -Grid", ""},
        {{"-Grid", "a.Grid", "-pth", "/tmp"}, 2, "", "-Grid, -SlvrRot and -pth are required"},
        {noWorker, 2, "", "Kavex3_Client: no worker to run at"},
        {badStop, 2, "", "-stopafter needs a number of seconds"},
    };
    for (const auto& c : cases) {
        const ClientResult r = RunClient(run.dir, c.arguments);
        EXPECT_EQ(r.status, c.status) << c.arguments.size();
        EXPECT_EQ(r.strStdout.rfind(c.expectedStdout, 0), 0u) << r.strStdout;
        EXPECT_TRUE(Contains(r.strStderr, c.expectedStderr)) << r.strStderr;
    }
}
