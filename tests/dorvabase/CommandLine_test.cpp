// Tests of the command-line parser: parse rules, its "=" quirk, typed conversions, diagnostics.
#include "CommandLine.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "ScratchDir.h"

using Dorva::CommandLine;

namespace {

// Parses the words as argv[1..]; argv[0] is a program name that exists nowhere.
void Parse(std::initializer_list<std::string> words) {
    static std::vector<std::string> storage;
    static std::vector<char*> argv;
    storage.assign({"no-such-program-kavex"});
    storage.insert(storage.end(), words);
    argv.clear();
    for (std::string& word : storage) argv.push_back(word.data());
    CommandLine::SetParameters(static_cast<int>(argv.size()), argv.data());
}

std::string StringOf(const std::string& name) {
    std::string value = "<unset>";
    return CommandLine::GetArgument(name, value) ? value : "<false>";
}

std::vector<std::string> FileTexts() {
    std::vector<Dorva::FilePath> files;
    CommandLine::GetFileList(files);
    std::vector<std::string> texts;
    for (const Dorva::FilePath& file : files) texts.push_back(file.Get());
    return texts;
}

}  // namespace

TEST(CommandLine, FirstOccurrenceWinsInBothForms) {
    Parse({"-a", "1", "-a", "2", "-b=3", "-b", "4", "-c", "5", "-c=6"});
    EXPECT_TRUE(CommandLine::Initialized());
    EXPECT_EQ(StringOf("a"), "1");
    EXPECT_EQ(StringOf("b"), "3");
    EXPECT_EQ(StringOf("c"), "5");
}

TEST(CommandLine, EqualsFormAndLeadingDashesMeanTheSame) {
    Parse({"-pth=/run/dir", "--Grid", "p.Grid", "---SlvrRot=r.SlvrRot"});
    EXPECT_EQ(StringOf("pth"), "/run/dir");
    EXPECT_EQ(StringOf("Grid"), "p.Grid");
    EXPECT_EQ(StringOf("SlvrRot"), "r.SlvrRot");
    // Only the first "=" splits.
    Parse({"-x=a=b"});
    EXPECT_EQ(StringOf("x"), "a=b");
}

TEST(CommandLine, WordsAfterAParameterJoinItsValue) {
    Parse({"-a", "b", "c", "d", "-e"});
    EXPECT_EQ(StringOf("a"), "b c d");
    std::vector<std::string> words = {"kept"};
    EXPECT_TRUE(CommandLine::GetArgument("a", words));
    EXPECT_EQ(words, (std::vector<std::string>{"kept", "b", "c", "d"}));
    // Two dashed words in a row: two names, both with empty values.
    EXPECT_TRUE(CommandLine::GetArgument("e"));
    EXPECT_EQ(StringOf("e"), "<false>");
}

TEST(CommandLine, FilesBeforeTheFirstParameterAndAfterDoubleDash) {
    Parse({"first.txt", "second", "-a", "first.txt", "-b", "--", "-c", "x", "--"});
    EXPECT_EQ(FileTexts(), (std::vector<std::string>{"first.txt", "second", "-c", "x", "--"}));
    EXPECT_EQ(StringOf("a"), "first.txt");
    EXPECT_TRUE(CommandLine::GetArgument("b"));
    EXPECT_FALSE(CommandLine::GetArgument("c"));
    // A second parse replaces the first one's store.
    Parse({"-z", "1"});
    EXPECT_TRUE(FileTexts().empty());
    EXPECT_FALSE(CommandLine::GetArgument("a"));
}

TEST(CommandLine, NegativeNumberStandingApartIsAName) {
    int n = 7;
    Parse({"-n", "-1"});
    EXPECT_FALSE(CommandLine::GetArgument("n", n));
    EXPECT_EQ(n, 7);
    EXPECT_TRUE(CommandLine::GetArgument("1"));
    Parse({"-n=-1"});
    EXPECT_TRUE(CommandLine::GetArgument("n", n));
    EXPECT_EQ(n, -1);
}

TEST(CommandLine, BareWordAfterEqualsFormJoinsTheNextParametersValue) {
    Parse({"-a=b", "c", "-d", "e"});
    EXPECT_EQ(StringOf("a"), "b");
    EXPECT_EQ(StringOf("d"), "c e");
    // The nameless value is never stored on its own, and it survives another "=" parameter.
    Parse({"-a=b", "c", "-x=y", "f", "-g"});
    EXPECT_EQ(StringOf("x"), "y");
    EXPECT_EQ(StringOf("g"), "c f");
    Parse({"-a=b", "c"});
    EXPECT_FALSE(CommandLine::GetArgument("c"));
    EXPECT_FALSE(CommandLine::GetArgument(""));
}

TEST(CommandLine, IntegerConversion) {
    Parse({"-hex", "0x1F", "-oct", "017", "-neg=-42", "-tail", "12abc", "-word", "abc"});
    int value = -5;
    EXPECT_TRUE(CommandLine::GetArgument("hex", value));
    EXPECT_EQ(value, 31);
    EXPECT_TRUE(CommandLine::GetArgument("oct", value));
    EXPECT_EQ(value, 15);
    EXPECT_TRUE(CommandLine::GetArgument("neg", value));
    EXPECT_EQ(value, -42);
    EXPECT_TRUE(CommandLine::GetArgument("tail", value));
    EXPECT_EQ(value, 12);
    value = -5;
    EXPECT_FALSE(CommandLine::GetArgument("word", value));
    EXPECT_EQ(value, 0);
}

TEST(CommandLine, FloatingConversions) {
    Parse({"-f", "2.5", "-d", "1e-3", "-x", "0.1", "-bad", "x1"});
    float f = 0;
    double d = 0;
    EXPECT_TRUE(CommandLine::GetArgument("f", f));
    EXPECT_EQ(f, 2.5f);
    EXPECT_TRUE(CommandLine::GetArgument("d", d));
    EXPECT_EQ(d, 0.001);
    // The float form scans in double and narrows.
    EXPECT_TRUE(CommandLine::GetArgument("x", f));
    EXPECT_EQ(f, static_cast<float>(0.1));
    d = 9;
    EXPECT_FALSE(CommandLine::GetArgument("bad", d));
    EXPECT_EQ(d, 0.0);
    f = 9;
    EXPECT_FALSE(CommandLine::GetArgument("bad", f));
    EXPECT_EQ(f, 0.0f);
}

TEST(CommandLine, BooleanConversion) {
    Parse({"-a", "true", "-b", "t",       "-c", "yes", "-d", "y",  "-e", "false", "-f", "f",   "-g",
           "no", "-h",   "n",  "-i=-0.5", "-j", "0.0", "-k", "+3", "-l", "True",  "-m", "1.5x"});
    const std::vector<std::pair<std::string, bool>> expected = {
        {"a", true},  {"b", true},  {"c", true}, {"d", true},  {"e", false}, {"f", false},
        {"g", false}, {"h", false}, {"i", true}, {"j", false}, {"k", true}};
    for (const auto& [name, truth] : expected) {
        bool value = !truth;
        EXPECT_TRUE(CommandLine::GetArgument(name, value)) << name;
        EXPECT_EQ(value, truth) << name;
    }
    // Case counts, and a number must be made of number characters only.
    for (const std::string name : {"l", "m"}) {
        bool value = true;
        EXPECT_FALSE(CommandLine::GetArgument(name, value)) << name;
        EXPECT_TRUE(value) << name;
    }
}

TEST(CommandLine, MissingAndEmptyParametersReportOnlyAtDebugLevel) {
    Parse({"-linkid", "-x"});
    int value = 3;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(CommandLine::GetArgument("linkid", value));
    EXPECT_FALSE(CommandLine::GetArgument("missing", value));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(value, 3);

    Parse({"-debug", "1", "-linkid", "-x"});
    testing::internal::CaptureStderr();
    EXPECT_FALSE(CommandLine::GetArgument("linkid", value));
    EXPECT_FALSE(CommandLine::GetArgument("missing", value));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "No argument given for parameter: linkid\nUnable to find parameter for: missing\n");
    // Asking for "debug" itself never reports, present or not.
    Parse({"-debug"});
    testing::internal::CaptureStderr();
    EXPECT_FALSE(CommandLine::GetArgument("debug", value));
    Parse({});
    EXPECT_FALSE(CommandLine::GetArgument("debug", value));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(CommandLine, ProgramPathFallsBackToTheSearchPath) {
    ScratchDir dir;
    std::string existing = dir / "prog";
    WriteWholeFile(existing, "");
    std::vector<char*> argv = {existing.data()};
    CommandLine::SetParameters(1, argv.data());
    EXPECT_EQ(CommandLine::GetProgramPath().Get(), existing);

    std::string sh = "sh";  // not in the working directory, found on PATH
    argv = {sh.data()};
    CommandLine::SetParameters(1, argv.data());
    ASSERT_TRUE(CommandLine::GetProgramPath().IsInitialized());
    EXPECT_EQ(CommandLine::GetProgramPath().GetBoostPath().filename().string(), "sh");
    EXPECT_TRUE(CommandLine::GetProgramPath().Exists());

    Parse({});
    EXPECT_FALSE(CommandLine::GetProgramPath().IsInitialized());
}

TEST(CommandLineDeathTest, CopyingFails) {
    CommandLine original;
    EXPECT_DEATH(CommandLine copy(original),
                 "\\*\\*\\* Error: CommandLine copy constructor is unimplemented and was called\\. "
                 "Failed condition: \\( false \\)");
    CommandLine other;
    EXPECT_DEATH(other = original,
                 "\\*\\*\\* Error: CommandLine operator= is unimplemented and was called\\. "
                 "Failed condition: \\( false \\)");
}
