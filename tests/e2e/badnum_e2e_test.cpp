// Hostile numbers in the bundled examples: a table of fields, each refused with one line and status
// 1 before any output exists, and a seeded mutation loop that must never crash, hang, trip a
// sanitizer or end with status 0 and a grid that isn't made of numbers.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "RunGridGen.h"

namespace {

// The run of an example copy: the exit status, or 1000 + the signal, 124 for a timeout. The cut
// file is supplied as run.sh does, after the edits; a sanitizer's report ends the run with its own
// status; outputs stay below 200 MB.
int RunEdited(const ExampleRun& run) {
    const std::string cmd =
        "cd '" + run.strRunDir + "' && { [ ! -f block.cut ] || cp block.cut 1-x.cut; } && " +
        "ulimit -f 200000 && ASAN_OPTIONS=\"${ASAN_OPTIONS:+$ASAN_OPTIONS:}exitcode=86\" " +
        "UBSAN_OPTIONS=exitcode=87 timeout 60 '" KAVEX_GRIDGEN_EXE "' -Grid " + run.strProject +
        " -SlvrRot r.SlvrRot -pth '" + run.strRunDir + "' >/dev/null 2>&1";
    const int status = std::system(cmd.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

struct Copy : ExampleRun {
    explicit Copy(const char* example) : ExampleRun(example, false) {
        WriteWholeFile(*this / "r.SlvrRot", "0\n");
    }
    // The files a mutation may change.
    std::vector<std::string> Files() const {
        std::vector<std::string> files = {strProject, "layers.dat"};
        if (PathExists(*this / "block.cut")) files.push_back("block.cut");
        return files;
    }
    std::string Err() const { return ReadWholeFile(*this / "Kavex3_GridGen.err"); }
};

// In `file` of its example, each '|'-separated text of `from` becomes the one of `to`; the run
// ends with status 1 and the line "Error: file '.../` + message + `...".
struct Case {
    const char *file, *from, *to, *message;
};

const Case kCases[] = {
    {"block.Grid", "Grids: 6", "Grids: inf", "temp.Grid', X number of Grids = inf: not a number"},
    {"block.Grid", "Grids: 6", "Grids: 99999999999", "X number of Grids = 99999999999: an axis"},
    {"block.Grid", "Ratio: -1.2", "Ratio: 0", "X GP Ratio 0 = 0: a ratio must"},
    {"block.Grid", "Ratio: 1.15", "Ratio: 1e308", "Ratio from 4 to 8 = 1e+308: over 10 cells"},
    {"block.Grid", "to: Block L3.0", "to: Block L1e308", "X to: Block L1e308 = inf"},
    {"block.Grid", "(0.0,0.0,0.0)", "(0.0,-2e15,0.0)", "Grid Start Point Y = -2e+15: beyond"},
    {"block.Grid", "Level: 0", "Level: 0\nConversion Factor: (1e39,1,1)",
     "block.Grid', Conversion Factor X = inf"},
    {"block.Grid", "Level: 0", "Level: 99999999999", "Debug Level = 99999999999: outside"},
    {"block.Grid", "from: Block L1.0\n", "", "X grid spec with number of Grids = 10: it needs"},
    {"block.cut", "\n2 4", "\n2147483647 4",
     "1-x.cut', number of cuts of 4 points = 2147483647: the 136 bytes left in the file can not "
     "hold so many"},
    {"block.cut", "\n2 4", "\n1 2147483647", "cuts of 2147483647 points = 1: the 136 bytes"},
    {"block.cut", "1.5 1.0", "1.5 nan", "cut 1 point 3, second coordinate = nan"},
    {"layers.dat", "X:\n1\n", "X:\n99999999999\n",
     "before the body, number of layers = 99999999999"},
    {"layers.dat", "4  -1.2", "-2147483648 -1.2", "X before the body, layer 1 cells = -2147483648"},
    {"layers.dat", "2.0  1.0   4", "1e300 1e300 4", "layer 1 length 1e+300 * 1e+300 = inf"},
    {"layers.dat", "3   1.5", "3 1e300", "X after the body, layer 2 ratio, at the end of a chain"},
    {"layers.dat", "4  -1.2", "32767 -1.2",
     "temp.Grid' with layer file 'layers.dat', X axis cells = 32799: the solver's 16-bit cell "
     "indices address at most 32767"},
    // Three axes of some 1500 cells: 3.5 billion points.
    {"layers.dat", "4  -1.2|2.0   3   1.3|1.0   3   1.3", "1500 -1.2|2.0 1500 1.3|1.0 1500 1.3",
     "grid points = 1533 x 1519 x 1519 = 3537184413: the mesh library numbers at most"},
    {"rotor.Grid", "radius: 2.0", "radius: 1e300", "rotor radius = 1e+300: beyond"},
    {"rotor.Grid", "radius: 2.0\n", "", "extent of body 'Disc' on X = -1.79769313486232e+308"},
};

std::vector<std::string> split(const std::string& text) {
    std::vector<std::string> parts(1);
    for (char c : text) {
        if (c == '|')
            parts.emplace_back();
        else
            parts.back().push_back(c);
    }
    return parts;
}

TEST(BadNumbers, EachFieldIsRefusedWithOneLineAndNoOutput) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.message);
        Copy run(std::string(c.file) == "rotor.Grid" ? "rotor_disc" : "cut_body");
        const std::vector<std::string> from = split(c.from), to = split(c.to);
        for (size_t i = 0; i < from.size(); ++i) ASSERT_TRUE(run.Edit(from[i], to[i], c.file));
        EXPECT_EQ(RunEdited(run), 1);
        const std::string err = run.Err();
        EXPECT_EQ(err.rfind("\nError: file '", 0), 0u) << err;
        EXPECT_NE(err.find(c.message), std::string::npos) << err;
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 2) << err;
        for (const char* out : {"KX3.grid.dat", "SolverGdInp.dat", "RotorGdInp.dat", "Lcl2Gbl.dat"})
            EXPECT_FALSE(PathExists(run / out)) << out;
    }
}

// The grid file of a run that ended with 0: three counts of at least 2, then exactly that many
// finite values per axis.
std::string grid_fault(const std::string& grid) {
    std::istringstream in(grid);
    std::string line;
    long long n[3] = {0, 0, 0};
    if (!std::getline(in, line) || !(in >> n[0] >> n[1] >> n[2])) return "no counts";
    if (n[0] < 2 || n[1] < 2 || n[2] < 2) return "a count below 2";
    std::string word;
    long long values = 0;
    while (in >> word && word != "#") {
        if (!std::isfinite(std::strtod(word.c_str(), nullptr))) return "value " + word;
        ++values;
    }
    return values == 3 * n[0] * n[1] * n[2] ? "" : "wrong number of values";
}

// One number of one example file replaced by a hostile one, KAVEX_MUTATIONS times (default 120)
// from the seed KAVEX_MUTATION_SEED (default 12).
TEST(BadNumbers, MutatedExamplesEndCleanly) {
    const char* count = std::getenv("KAVEX_MUTATIONS");
    const char* seed = std::getenv("KAVEX_MUTATION_SEED");
    std::mt19937 random(seed ? std::atoi(seed) : 12);
    static const char* const hostile[] = {
        "0",     "-1",     "1",          "2",           "-0",          "0.5",  "1e-320",
        "1e308", "-1e308", "inf",        "-inf",        "nan",         "1e9",  "1e12",
        "32768", "65536",  "2147483647", "-2147483648", "99999999999", "-2.5", "1e-9"};
    const std::regex number(R"([-+]?[0-9]*\.?[0-9]+([eE][-+]?[0-9]+)?)");
    for (int m = 0, n = count ? std::atoi(count) : 120; m < n; ++m) {
        Copy run(random() % 2 ? "cut_body" : "rotor_disc");
        const std::string file = run.Files()[random() % run.Files().size()];
        const std::string text = ReadWholeFile(run / file);
        std::vector<std::pair<size_t, size_t>> spans;
        for (std::sregex_iterator i(text.begin(), text.end(), number), e; i != e; ++i)
            spans.emplace_back(i->position(), i->length());
        const auto [at, len] = spans[random() % spans.size()];
        const std::string value = hostile[random() % (sizeof hostile / sizeof *hostile)];
        WriteWholeFile(run / file, text.substr(0, at) + value + text.substr(at + len));
        const std::string what = "mutation " + std::to_string(m) + ": " + file + " '" +
                                 text.substr(at, len) + "' at " + std::to_string(at) + " -> " +
                                 value;
        const int status = RunEdited(run);
        const std::string err = run.Err();
        ASSERT_TRUE(status == 0 || status == 1) << what << ", status " << status << "\n" << err;
        ASSERT_EQ(err.find("Sanitizer"), std::string::npos) << what << "\n" << err;
        ASSERT_EQ(err.find("runtime error"), std::string::npos) << what << "\n" << err;
        if (status == 0) {
            ASSERT_EQ(grid_fault(ReadWholeFile(run / "KX3.grid.dat")), "") << what;
        }
    }
}

}  // namespace
