// Tests of the command-line parser: parse rules, its "=" quirk, typed conversions, diagnostics.
#include "CommandLine.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "ScratchDir.h"

using Dorva::CommandLine;

namespace {

// Parses the blank-separated words as argv[1..]; argv[0] is a program name that exists nowhere.
void Parse(const std::string& words) {
    static std::vector<std::string> storage;
    static std::vector<char*> argv;
    storage.assign({"no-such-program-kavex"});
    std::istringstream split(words);
    for (std::string word; split >> word;) storage.push_back(word);
    argv.clear();
    for (std::string& word : storage) argv.push_back(word.data());
    CommandLine::SetParameters(static_cast<int>(argv.size()), argv.data());
}

// "found value" after asking for the parameter as a T that held `value` before.
template <class T>
std::string Typed(const std::string& name, T value) {
    const bool found = CommandLine::GetArgument(name, value);
    std::ostringstream text;
    text << found << " " << std::setprecision(9) << value;
    return text.str();
}

}  // namespace

TEST(CommandLine, ParseRulesAndTheEqualsQuirk) {
    const struct {
        const char* words;
        const char* name;
        const char* found;  // "0 -": not found or empty, the value left alone
    } rows[] = {
        // The first occurrence wins in both forms.
        {"-a 1 -a 2", "a", "1 1"},
        {"-b=3 -b 4", "b", "1 3"},
        {"-c 5 -c=6", "c", "1 5"},
        // Any number of leading dashes; only the first "=" splits.
        {"---SlvrRot=r.SlvrRot", "SlvrRot", "1 r.SlvrRot"},
        {"--Grid p.Grid", "Grid", "1 p.Grid"},
        {"-x=a=b", "x", "1 a=b"},
        // Words after a parameter join its value; two dashed words in a row: empty values.
        {"-a b c d -e", "a", "1 b c d"},
        {"-a b c d -e", "e", "0 -"},
        // A negative number standing apart is a name, joined by "=" a value.
        {"-n -1", "n", "0 -"},
        {"-n=-1", "n", "1 -1"},
        // A bare word after the "=" form joins the next parameter's value, past another "=".
        {"-a=b c -d e", "d", "1 c e"},
        {"-a=b c -x=y f -g", "g", "1 c f"},
        {"-a=b c -x=y f -g", "x", "1 y"},
        {"-a=b c", "c", "0 -"},
        {"-a=b c", "", "0 -"},
    };
    for (const auto& row : rows) {
        Parse(row.words);
        EXPECT_EQ(Typed(row.name, std::string("-")), row.found) << row.words << " " << row.name;
    }
    Parse("-n -1");
    EXPECT_TRUE(CommandLine::GetArgument("1"));
}

TEST(CommandLine, FilesBeforeTheFirstParameterAndAfterDoubleDash) {
    Parse("first.txt second -a first.txt -b -- -c x --");
    std::vector<Dorva::FilePath> files;
    CommandLine::GetFileList(files);
    std::vector<std::string> texts;
    for (const Dorva::FilePath& file : files) texts.push_back(file.Get());
    EXPECT_EQ(texts, (std::vector<std::string>{"first.txt", "second", "-c", "x", "--"}));
    EXPECT_TRUE(CommandLine::GetArgument("b"));
    EXPECT_FALSE(CommandLine::GetArgument("c"));
    // A second parse replaces the first one's store.
    Parse("-z 1");
    CommandLine::GetFileList(files);
    EXPECT_TRUE(files.empty());
    EXPECT_FALSE(CommandLine::GetArgument("a"));
}

TEST(CommandLine, TypedConversions) {
    Parse(
        "-hex 0x1F -oct 017 -tail 12abc -word abc def -d 1e-3 -x 0.1 -t t -Y yes -no n -h=-0.5 "
        "-z 0.0 -T True -m 1.5x");
    // Words and numbers as truth values: case counts, and a number has number characters only.
    // The float form scans in double and narrows.
    const std::pair<std::string, const char*> rows[] = {
        {Typed("hex", -5), "1 31"}, {Typed("oct", -5), "1 15"},         {Typed("tail", -5), "1 12"},
        {Typed("word", -5), "0 0"}, {Typed("d", 9.0), "1 0.001"},       {Typed("word", 9.0), "0 0"},
        {Typed("t", false), "1 1"}, {Typed("Y", false), "1 1"},         {Typed("no", true), "1 0"},
        {Typed("h", false), "1 1"}, {Typed("z", true), "1 0"},          {Typed("T", true), "0 1"},
        {Typed("m", true), "0 1"},  {Typed("x", 9.0f), "1 0.100000001"}};
    std::vector<std::string> words = {"kept"};  // a list gets the value's words appended
    EXPECT_TRUE(CommandLine::GetArgument("word", words));
    EXPECT_EQ(words, (std::vector<std::string>{"kept", "abc", "def"}));
    for (const auto& [got, expected] : rows) EXPECT_EQ(got, expected);
}

TEST(CommandLine, MissingAndEmptyParametersReportOnlyAtDebugLevel) {
    const std::pair<const char*, const char*> levels[] = {
        {"-debug=0", ""},
        {"-debug=1",
         "No argument given for parameter: linkid\nUnable to find parameter for: missing\n"}};
    for (const auto& [debug, expected] : levels) {
        Parse(std::string(debug) + " -linkid -x");
        testing::internal::CaptureStderr();
        EXPECT_EQ(Typed("linkid", 3), "0 3");
        EXPECT_EQ(Typed("missing", 3), "0 3");
        // A parse asks for "debug" at the level before it: that never reports, empty or missing.
        Parse("-debug");
        Parse(debug);
        Parse("");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), expected) << debug;
    }
}

TEST(CommandLine, ProgramPathFallsBackToTheSearchPath) {
    ScratchDir dir;
    std::string existing = dir / "prog", sh = "sh";  // "sh": not in the working directory
    WriteWholeFile(existing, "");
    std::vector<char*> argv = {existing.data()};
    CommandLine::SetParameters(1, argv.data());
    EXPECT_EQ(CommandLine::GetProgramPath().Get(), existing);
    argv = {sh.data()};
    CommandLine::SetParameters(1, argv.data());
    const Dorva::FilePath found = CommandLine::GetProgramPath();  // on PATH
    EXPECT_TRUE(found.Exists() && found.GetBoostPath().filename() == "sh") << found.Get();
    Parse("");
    EXPECT_FALSE(CommandLine::GetProgramPath().IsInitialized());
}
