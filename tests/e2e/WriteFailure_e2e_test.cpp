// Runs whose writes fail: under a file-size limit stepped across the sizes of the run's files, and
// on a full filesystem. A run ends 0 with every file as without the limit, or 1 naming the file
// that failed; no file stands cut short under its own name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <algorithm>
#include <boost/filesystem.hpp>
#include <map>
#include <regex>
#include <set>

#include "RunGridGen.h"

using testing::HasSubstr;

namespace {

using Files = std::map<std::string, std::string>;  // name -> bytes

// A write past the limit fails with EFBIG instead of ending the process.
std::function<void()> FileSizeLimit(long long bytes) {
    if (bytes < 0) return nullptr;
    return [bytes] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {rlim_t(bytes), rlim_t(bytes)};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
}

// The example's worker run under a file-size limit (none below 0), or the program's with extras.
RunResult RunUnder(const ExampleRun& run, long long limit, const char* program = KAVEX_GRIDGEN_EXE,
                   std::vector<std::string> extra = {}) {
    std::vector<std::string> arguments = run.Arguments();
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    return run.Run(program, arguments, FileSizeLimit(limit));
}

// "\nError: writing '<path>': <reason>\n": the path's file name, empty when the log is otherwise.
std::string FailedFile(const std::string& errLog, const std::string& reason) {
    std::smatch m;
    const std::regex message("\nError: writing '(?:[^']*/)?([^'/]+)': " + reason + "\n");
    return std::regex_match(errLog, m, message) ? m[1].str() : "";
}

std::string Tail(const std::string& bytes) {
    return bytes.substr(bytes.size() - std::min<std::size_t>(bytes.size(), 24));
}

// The logs name the run directory, which differs from run to run.
std::string Relocated(std::string bytes, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = bytes.find(from, at)) != std::string::npos; at += to.size())
        bytes.replace(at, from.size(), to);
    return bytes;
}

void CheckUnderLimits(const std::string& example) {
    const ExampleRun reference(example);
    const Files inputs = ReadFolder(reference.strRunDir);
    ASSERT_EQ(RunUnder(reference, -1).status, 0);
    const Files expected = ReadFolder(reference.strRunDir);
    Files outputs;  // the files the run makes, not its logs, as a run without limit writes them
    for (const auto& [name, bytes] : expected)
        if (name.rfind("Kavex3_GridGen.", 0) != 0 && !inputs.count(name)) outputs[name] = bytes;
    // Every file's last byte, and 30 steps from nothing to the largest file; a file's first
    // version, met after a failure, adds its own last byte.
    std::set<long long> pending, done;
    const auto lastByte = [&](std::size_t size) {
        for (long long limit : {(long long)size - 1, (long long)size})
            if (limit >= 0 && !done.count(limit)) pending.insert(limit);
    };
    std::size_t largest = 0;
    for (const auto& [name, bytes] : expected) {
        lastByte(bytes.size());
        largest = std::max(largest, bytes.size());
    }
    for (int step = 0; step <= 30; ++step) pending.insert(largest * step / 30);
    // A file that the run writes and then rewrites may stand in its first version after a failure;
    // that version must be one and the same in every run, where a cut one would vary.
    std::map<std::string, std::set<std::string>> firstVersions;
    int failed = 0;
    while (!pending.empty()) {
        const long long limit = *pending.begin();
        pending.erase(pending.begin());
        done.insert(limit);
        SCOPED_TRACE(example + " with files limited to " + std::to_string(limit) + " bytes");
        const ExampleRun run(example);
        // Each output of a run before this one, which a failure must leave whole.
        for (const auto& [name, bytes] : outputs) WriteWholeFile(run / name, "old\n");
        const RunResult r = RunUnder(run, limit);
        const Files got = ReadFolder(run.strRunDir);
        if (r.status == 0) {
            std::string names;
            for (const auto& [name, bytes] : got) names += name + " ";
            EXPECT_EQ(got.size(), expected.size()) << names;
            for (const auto& [name, bytes] : expected)
                EXPECT_TRUE(got.count(name) &&
                            got.at(name) == Relocated(bytes, reference.strRunDir, run.strRunDir))
                    << name;
            continue;
        }
        ++failed;
        ASSERT_EQ(r.status, 1);
        for (const auto& [name, bytes] : got) {
            EXPECT_EQ(name.find(".part"), std::string::npos) << name;
            if (outputs.count(name) && bytes != "old\n" && bytes != outputs.at(name)) {
                EXPECT_EQ(Tail(bytes), Tail(outputs.at(name))) << name;
                if (firstVersions[name].insert(bytes).second) lastByte(bytes.size());
            }
        }
        const std::string errLog = got.at("Kavex3_GridGen.err");
        const std::string name = FailedFile(errLog, "File too large");
        if (name.empty() && errLog.size() == std::size_t(limit)) continue;  // the log met it too
        EXPECT_TRUE(got.count(name)) << errLog;
    }
    EXPECT_GT(failed, 25);
    for (const auto& [name, versions] : firstVersions) EXPECT_EQ(versions.size(), 1u) << name;
}

}  // namespace

// The short path, the full path, and the full path that rewrites the generator's project copy.
TEST(WriteFailure, ExamplesUnderFileSizeLimits) {
    for (const char* example : {"cut_body", "stl_body", "mixed_bodies"}) CheckUnderLimits(example);
}

// The limit reaches the worker through the client: a run that failed reports no success.
TEST(WriteFailure, LinkedRunReportsNoSuccessfulCompletion) {
    const ExampleRun reference("cut_body");
    ASSERT_EQ(RunUnder(reference, -1).status, 0);
    // A limit below the size of a file, and the file that meets it first; each limit lies above
    // the size of the client's own report. The project's copy is longer than the project.
    const std::pair<const char*, const char*> cases[] = {{"block.Grid", "temp.Grid"},
                                                         {"SolverGdInp.dat", "SolverGdInp.dat"},
                                                         {"KX3.grid.dat", "KX3.grid.dat"}};
    for (const auto& [sizeOf, name] : cases) {
        SCOPED_TRACE(name);
        const std::size_t size = ReadWholeFile(reference / sizeOf).size();
        const ExampleRun run("cut_body");
        const RunResult r =
            RunUnder(run, size - 1, KAVEX3_CLIENT_EXE, {"-worker", KAVEX_GRIDGEN_EXE, "--nocheck"});
        EXPECT_EQ(r.status, 1) << r.strStdout;
        EXPECT_THAT(r.strStdout, HasSubstr("exit status 1\nSuccessful completion: no\n"));
        EXPECT_THAT(r.strStdout, HasSubstr(std::string(name) + "': File too large"));
        EXPECT_FALSE(PathExists(run / "KX3.grid.dat"));
    }
}

// A real full filesystem: a small tmpfs in a mount namespace of this test's own, the run directory
// of the full-path example on it. The generator's grid file is wider than the final one that
// replaces it: with room for the other files and half the final grid file, the run finds before
// writing that the grid file won't fit; with room for two it completes, the blanked grid written
// into the room of the generator's, which is gone by then.
TEST(WriteFailure, RunOnAFullFilesystem) {
    if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
        GTEST_SKIP() << "no mount namespace here (" << std::strerror(errno) << ")";
    const ExampleRun reference("stl_body");
    ASSERT_EQ(RunUnder(reference, -1).status, 0);
    const std::size_t page = 4096, grid = ReadWholeFile(reference / "KX3.grid.dat").size();
    std::size_t others = 4 * page;  // the logs and the temporary files
    for (const auto& [name, bytes] : ReadFolder(reference.strRunDir))
        if (name != "KX3.grid.dat") others += (bytes.size() + page - 1) / page * page;
    struct Case {
        std::size_t room;
        const char* words;
    };
    const Case cases[] = {{others + grid / 2, "bytes needed"}, {others + 2 * grid, ""}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.room);
        ScratchDir mountPoint;
        ASSERT_EQ(mount("tmpfs", mountPoint.Path().c_str(), "tmpfs", 0,
                        ("size=" + std::to_string(c.room)).c_str()),
                  0)
            << std::strerror(errno);
        const ExampleRun run("stl_body", true, mountPoint.Path());
        const RunResult r = RunUnder(run, -1);
        const Files got = ReadFolder(mountPoint.Path());
        umount(mountPoint.Path().c_str());
        EXPECT_EQ(r.status, *c.words ? 1 : 0);
        EXPECT_THAT(got.at("Kavex3_GridGen.err"), HasSubstr(c.words));
        for (const auto& [name, bytes] : got) EXPECT_EQ(name.find(".part"), std::string::npos);
        if (!*c.words) {
            EXPECT_EQ(got.at("KX3.grid.dat"), ReadWholeFile(reference / "KX3.grid.dat"));
        }
    }
}
