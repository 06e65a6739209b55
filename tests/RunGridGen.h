// End-to-end helpers: the executable run in a scratch run directory, and the project, grid and
// solver files of a run, built by independent formatting.
#pragma once

#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdarg>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "ScratchDir.h"

inline std::string Fmt(const char* format, ...) __attribute__((format(printf, 1, 2)));
inline std::string Fmt(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    std::string text(n + 1, '\0');
    va_start(args, format);
    std::vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    text.pop_back();
    return text;
}

struct RunResult {
    int status;  // exit status, or -1 when the program didn't exit
    std::string strStdout;
    std::string strStderr;
};

// Runs a program from a directory with its own streams captured; `tick` is called every 0.1 s
// while it runs, with the seconds since its start, and `inChild` in the child just before the
// program starts.
inline RunResult RunProgram(const char* program, const std::vector<std::string>& arguments,
                            const std::string& directory,
                            const std::function<void(double)>& tick = nullptr,
                            const std::function<void()>& inChild = nullptr) {
    ScratchDir capture;
    const std::string outPath = capture / "stdout", errPath = capture / "stderr";
    fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        std::vector<char*> argv = {const_cast<char*>(program)};
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        if (chdir(directory.c_str()) == 0 && freopen(outPath.c_str(), "w", stdout) &&
            freopen(errPath.c_str(), "w", stderr)) {
            if (inChild) inChild();
            execv(program, argv.data());
        }
        _exit(121);
    }
    int status = 0;
    for (int n = 1; waitpid(pid, &status, tick ? WNOHANG : 0) == 0; ++n) {
        usleep(100000);
        tick(0.1 * n);
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadWholeFile(outPath),
            ReadWholeFile(errPath)};
}

// A copy of examples/<example> in a run directory, by default a scratch one of its own; with
// `blnCuts` laid out as examples/run.sh lays one out: the points file of body N also as "N-x.cut".
struct ExampleRun {
    ScratchDir dir;
    std::string strRunDir, strProject;

    explicit ExampleRun(const std::string& example, bool blnCuts = true,
                        const std::string& runDir = "")
        : strRunDir(runDir.empty() ? dir.Path() : runDir) {
        const std::string from = KAVEX_SOURCE_DIR "/examples/" + example + "/";
        for (const auto& entry : boost::filesystem::directory_iterator(from)) {
            const std::string name = entry.path().filename().string();
            if (entry.path().extension() == ".Grid") strProject = name;
            WriteWholeFile(*this / name, ReadWholeFile(from + name));
        }
        std::istringstream lines(ReadWholeFile(from + strProject));
        int n = 0;
        for (std::string line; blnCuts && std::getline(lines, line);)
            if (line.find("Points File: ") != std::string::npos)
                WriteWholeFile(*this / (std::to_string(++n) + "-x.cut"),
                               ReadWholeFile(from + line.substr(line.find("Points File: ") + 13)));
    }
    std::string operator/(const std::string& name) const { return strRunDir + "/" + name; }
    // Replaces the first `from` in the file (by default the project); false if it is missing.
    bool Edit(const std::string& from, const std::string& to, std::string name = "") const {
        name = *this / (name.empty() ? strProject : name);
        std::string text = ReadWholeFile(name);
        const std::size_t at = text.find(from);
        if (at == std::string::npos) return false;
        WriteWholeFile(name, text.replace(at, from.size(), to));
        return true;
    }
    // The worker's parameters for the example's project and rotor file.
    std::vector<std::string> Arguments() const {
        const std::string rotor = strProject.substr(0, strProject.size() - 5) + ".SlvrRot";
        return {"-Grid", *this / strProject, "-SlvrRot", *this / rotor, "-pth", strRunDir};
    }
    RunResult Run(const char* program, const std::vector<std::string>& arguments,
                  const std::function<void()>& inChild = nullptr) const {
        return RunProgram(program, arguments, strRunDir, nullptr, inChild);
    }
};

#ifdef KAVEX_GRIDGEN_EXE  // suites that run the executable
// A run directory holding "proj.Grid" and "rotor.SlvrRot"; Run() starts the executable from it,
// so relative names in the project land there, and captures its own streams.
class GridGenRun : public ScratchDir {
  public:
    std::string strProject = *this / "proj.Grid";
    std::string strRotor = *this / "rotor.SlvrRot";

    // Cut body N's points go to "N-x.cut", where the driver points the generator.
    explicit GridGenRun(const std::string& project = "", const std::vector<std::string>& cuts = {},
                        const std::string& layers = "0\n0\n0\n0\n0\n0\n") {
        WriteWholeFile(strProject, project);
        WriteWholeFile(strRotor, "0\n");
        for (size_t n = 0; n < cuts.size(); ++n) Write(std::to_string(n + 1) + "-x.cut", cuts[n]);
        if (!cuts.empty()) Write("layers.dat", layers);
    }
    void Write(const std::string& name, const std::string& text) const {
        WriteWholeFile(*this / name, text);
    }
    std::string Read(const std::string& name) const { return ReadWholeFile(*this / name); }
    std::vector<std::string> Arguments() const {
        return {"-Grid", strProject, "-SlvrRot", strRotor, "-pth", Path()};
    }
    // Whether the run left a temporary file behind.
    bool Temporaries() const {
        return PathExists(*this / "temp.Grid") || PathExists(*this / "temp.SlvrRot") ||
               PathExists(*this / "temp.ClWdths");
    }
    // The driver's log of a run that reached the generator.
    std::string DriverLog() const {
        return "Vantor Version 0.9.15 (Beta) Build 396\n\nReading .Grid file (" + strProject +
               ")...\nBegin Grid Generation...\n";
    }

    RunResult Run() const { return Run(Arguments()); }
    RunResult Run(const std::vector<std::string>& arguments) const {
        return RunProgram(KAVEX_GRIDGEN_EXE, arguments, Path());
    }
};

#endif

// A body record in the front end's layout.
inline std::string BodyText(const std::string& name, const std::string& type,
                            const std::string& points, bool used = true) {
    return "    New Body\n        name: " + name + "\n        type: " + type +
           "\n        Points File: " + points +
           "\n        used in solver: " + (used ? "True" : "False") + "\n    #\n";
}

// A project: the options' lines, the body records, and the grid specs of X, of Y and of Z (by
// default those of X).
inline std::string Project(const std::string& options, const std::string& bodies,
                           const std::vector<std::string>& x, std::vector<std::string> y = {},
                           std::vector<std::string> z = {}) {
    std::string text = "Start Options\n" + options + "End Options\nStart Body Definitions\n" +
                       bodies + "End Body Definitions\n";
    for (const auto& [axis, specs] :
         {std::pair{'X', x}, {'Y', y.empty() ? x : y}, {'Z', z.empty() ? x : z}}) {
        text += Fmt("Body %c-GridSpec\n", axis);
        for (const std::string& spec : specs) text += "    New GridSpec\n" + spec + "    #\n";
        text += Fmt("End %c-Grid Spec\n", axis);
    }
    return text;
}

// The grid file for the final corner points of each axis, after the given first line; it lists no
// body cells, whatever the run blocked.
inline std::string GridFile(const std::vector<double> (&corners)[3], const std::string& first) {
    const int n[3] = {int(corners[0].size()), int(corners[1].size()), int(corners[2].size())};
    std::string text = Fmt("%s\n%d %d %d\n", first.c_str(), n[0], n[1], n[2]);
    for (int c = 0; c < 3; ++c)
        for (int k = 0; k < n[2]; ++k)
            for (int j = 0; j < n[1]; ++j)
                for (int i = 0; i < n[0]; ++i)
                    text += Fmt(" %12.5f", corners[c][c == 0 ? i : c == 1 ? j : k]);
    return text + "\n# Num. of Body Cells:\n0\n";
}

// The solver file for the final corner points of each axis, the body cells as "I, J, K" lines
// and the rotor part (by default no rotors).
inline std::string SolverFile(const std::vector<double> (&corners)[3],
                              const std::vector<std::string>& cells = {},
                              const std::string& rotors = "#\n# Number of Rotors:\n0\n") {
    const char* names[3][2] = {{"IE", "X"}, {"JE", "Y"}, {"KE", "Z"}};
    std::string text =
        Fmt("# Num. of X, Y & Z Cell-Widths: IE = %d; JE = %d; KE = %d\n",
            int(corners[0].size()) - 1, int(corners[1].size()) - 1, int(corners[2].size()) - 1);
    for (int c = 0; c < 3; ++c) {
        const std::vector<double>& p = corners[c];
        text += Fmt("#\n# %s = Num. of %s-Cell-Widths:\n%d\n# %s-Cell-Widths\n", names[c][0],
                    names[c][1], int(p.size()) - 1, names[c][1]);
        for (size_t i = 1; i < p.size(); ++i) text += Fmt("%3d %27.18G\n", int(i), p[i] - p[i - 1]);
    }
    text += Fmt("#\n# Num. of Body Cells:\n%d\n", int(cells.size()));
    text += "# Body Cells ({I-index, J-index, K-index} of the cells)\n";
    for (const std::string& cell : cells) text += cell + "\n";
    return text + rotors;
}
