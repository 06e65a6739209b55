// The worker driven through its link by Kavex3_Client, as the front end drives it. These runs use
// the user's real link region, as any front end does; the product never removes it.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "RunGridGen.h"

using testing::HasSubstr;

namespace {

// The bundled cut-body example laid out as examples/run.sh lays it out.
struct ClientRun : ExampleRun {
    ClientRun() : ExampleRun("cut_body") {}

    // Runs the client from the run directory. After 20 s, should it still run, the layer file
    // gets a writer, which releases a generator waiting on a pipe there.
    RunResult Run(std::vector<std::string> arguments, bool blnFull = true) {
        if (blnFull) {
            for (const std::string& argument : Arguments()) arguments.push_back(argument);
            arguments.insert(arguments.end(), {"-worker", KAVEX_GRIDGEN_EXE});
        }
        return RunProgram(KAVEX3_CLIENT_EXE, arguments, strRunDir, [&](double seconds) {
            if (seconds < 20) return;
            m_blnReleased = true;
            close(open((*this / "layers.dat").c_str(), O_WRONLY | O_NONBLOCK));
        });
    }
    bool m_blnReleased = false;
};

}  // namespace

TEST(Kavex3Client, RunToTheEndReportsSuccessfulCompletion) {
    ClientRun run;
    const RunResult r = run.Run({});
    EXPECT_EQ(r.status, 0) << r.strStdout << r.strStderr;
    EXPECT_THAT(r.strStdout, HasSubstr("\nVantor Version 0.9.15 (Beta) Build 396 ("));
    EXPECT_THAT(r.strStdout, HasSubstr("\nBegin Grid Generation... ("));
    EXPECT_THAT(r.strStdout, HasSubstr(" s: exit status 0\nSuccessful completion: yes\n"));
    EXPECT_EQ(r.strStdout.find("Error log"), std::string::npos);
    EXPECT_TRUE(PathExists(run / "KX3.grid.dat"));
    EXPECT_FALSE(PathExists(run / "temp.Grid") || PathExists(run / "temp.SlvrRot"));
}

// The layer file is a pipe with no writer, so the generator waits in its open: the stop comes
// during the generator. The worker ends within its 3-second look at the flag plus the manager's
// shutdown of at most a second, reports success, and leaves its temporary files behind.
TEST(Kavex3Client, StopDuringTheGeneratorEndsTheWorkerWithStatusZero) {
    ClientRun run;
    const std::string fifo = run / "layers.dat";
    std::remove(fifo.c_str());
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    // The check would wait on the pipe as well.
    const RunResult r = run.Run({"-stopafter", "0.5", "--nocheck"});
    EXPECT_FALSE(run.m_blnReleased) << r.strStdout;
    EXPECT_EQ(r.status, 0) << r.strStdout << r.strStderr;
    EXPECT_THAT(r.strStdout, HasSubstr("\nBegin Grid Generation...\nStop set at "));
    EXPECT_THAT(r.strStdout, HasSubstr(" s: exit status 0\nSuccessful completion: yes\n"));
    const std::string marker = "the worker ended ";
    const size_t at = r.strStdout.find(marker);
    ASSERT_NE(at, std::string::npos) << r.strStdout;
    EXPECT_LE(std::atof(r.strStdout.c_str() + at + marker.size()), 4.5);
    EXPECT_THAT(r.strStdout, HasSubstr(" are partial: the run did not finish\n"));
    EXPECT_EQ(ReadWholeFile(run / "Kavex3_GridGen.out"),
              "Vantor Version 0.9.15 (Beta) Build 396\n\nReading .Grid file (" +
                  (run / "block.Grid") + ")...\nBegin Grid Generation...\n");
    EXPECT_TRUE(PathExists(run / "temp.Grid"));
    EXPECT_EQ(ReadWholeFile(run / "temp.SlvrRot"), "0\n\n");  // "0\n", last byte doubled
}

// The short run is through its stages long before the stop; the worker then waits for its stop
// check to end, sees no stop, and has finished: that is no stop.
TEST(Kavex3Client, StopAfterTheLastStageIsNoStop) {
    ClientRun run;
    const RunResult r = run.Run({"-stopafter", "0.3"});
    EXPECT_EQ(r.status, 0) << r.strStdout << r.strStderr;
    EXPECT_THAT(r.strStdout, HasSubstr("\nFinished before the stop took effect: "));
    EXPECT_EQ(r.strStdout.find("Stopped on request"), std::string::npos) << r.strStdout;
}

TEST(Kavex3Client, FailingWorkerIsReportedWithItsErrorLog) {
    ClientRun run;
    std::remove((run / "1-x.cut").c_str());
    EXPECT_EQ(run.Run({}).status, 2);  // the check finds the missing cut file first
    const RunResult r = run.Run({"--force"});
    EXPECT_EQ(r.status, 1);
    EXPECT_THAT(r.strStdout, HasSubstr("block.Grid:12: error: body 1 ('block.cut'): cannot open"));
    EXPECT_THAT(r.strStdout, HasSubstr(" s: exit status 1\nSuccessful completion: no\nError log " +
                                       (run / "Kavex3_GridGen.err") + ":\n"));
    EXPECT_THAT(r.strStdout, HasSubstr("can not open body points file"));
}

TEST(Kavex3Client, ArgumentsThatDontStartARun) {
    ClientRun run;
    EXPECT_EQ(run.Run({"--help"}, false).status, 0);
    EXPECT_EQ(run.Run({}, false).strStdout.rfind("Usage: Kavex3_Client -Grid", 0), 0u);
    // The first -worker wins: the one given here.
    for (const auto& [arguments, message] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{}, ""},
             {{"-worker", run / "none"}, "Kavex3_Client: no worker to run at"},
             {{"-stopafter", "soon"}, "-stopafter needs a number of seconds"}}) {
        const RunResult r = run.Run(arguments, !arguments.empty());
        EXPECT_EQ(r.status, 2);
        EXPECT_THAT(r.strStderr, HasSubstr(message));
    }
}
