// Kavex3_Check: the project read as the worker reads it, then its bodies and its grid.
#include "CheckRun.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>

#include "CheckBodies.h"
#include "CheckGenerate.h"
#include "CheckProject.h"
#include "RemovePath.h"
#include "driver/DriverContext.h"
#include "driver/ReadGridFile.h"

namespace Dorva {

namespace {

const char* const kUsage =
    "Usage: Kavex3_Check PROJECT [-SlvrRot ROTOR] [-pth RUN_DIR] [--max-ratio R] [--json]\n"
    "\n"
    "Reads a .Grid project as the grid generator will, from this working directory (relative\n"
    "names in the project are taken from it), and reports what would make the run fail or make\n"
    "another grid than the one meant, as FILE:LINE: error: TEXT or FILE:LINE: warning: TEXT.\n"
    "Then it builds the grid lines with the generator's own code, without writing any file of\n"
    "the run, and prints a summary: points and cell widths per axis, cells, the sizes of\n"
    "KX3.grid.dat and the solver input file, and the run's memory.\n"
    "\n"
    "  -SlvrRot ROTOR   the rotor file the run will be given: it must be readable\n"
    "  -pth RUN_DIR     the run directory: cut bodies are read from its N-x.cut files, as the\n"
    "                   run reads them, and its free space is weighed against the run's files\n"
    "  --max-ratio R    warn where neighbouring cells differ in width by more than R (1.3)\n"
    "  --json           diagnostics and summary as one JSON document\n"
    "\n"
    "Exit status: 1 when there is an error, else 0.\n";

std::vector<std::string> Lines(const std::string& path) {
    std::ifstream in(path.c_str());
    std::vector<std::string> lines;
    std::string line;
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

bool ParseOptions(int argc, char** argv, CheckOptions& o, std::string& error) {
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        const bool blnValue = i + 1 < argc;
        if ((a == "-SlvrRot" || a == "--SlvrRot") && blnValue) {
            o.strRotor = argv[++i];
        } else if ((a == "-pth" || a == "--pth") && blnValue) {
            o.strRunDir = argv[++i];
        } else if (a == "--max-ratio" && blnValue) {
            char* end;
            o.dblMaxRatio = std::strtod(argv[++i], &end);
            if (*end || !(o.dblMaxRatio >= 1.0)) error = "--max-ratio wants a number of 1 or more";
        } else if (a == "--json") {
            o.blnJson = true;
        } else if (a[0] != '-' && o.strProject.empty()) {
            o.strProject = a;
        } else {
            error = "unexpected argument '" + a + "'";
        }
    }
    if (o.strProject.empty() && error.empty()) error = "no project given";
    return error.empty();
}

// The driver's own pass over the project, into a scratch directory, as the worker makes it.
struct DriverPass {
    std::string strScratch;
    std::vector<_BodyStruct> vecBodies;
    FEL_vector3<float> v3fConversionFactor{1.0f, 1.0f, 1.0f};
    std::vector<std::string> vecRewrite;

    // False with the reason when the scratch directory or its project copy can't be written: a
    // copy cut short would be reported as mistakes of the project.
    bool Run(const std::string& strProject, std::string& strError) {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/kavex3_check.XXXXXX";
        if (!mkdtemp(pattern.data())) {
            strError =
                "cannot make a scratch directory for the check: " + std::string(strerror(errno));
            return false;
        }
        strScratch = pattern;
        DriverContext run(strScratch);
        const std::string strGrid = strScratch + "//temp.Grid";
        std::ofstream tempGrid(strGrid.c_str(), std::ios::trunc);
        std::string strSolver;
        ReadGridFile(run, strProject, strSolver, tempGrid, v3fConversionFactor, vecBodies);
        errno = 0;
        tempGrid.close();
        if (!tempGrid) {
            strError = "cannot write the check's copy '" + strGrid +
                       "': " + (errno ? strerror(errno) : "write failed");
            return false;
        }
        vecRewrite = Lines(strGrid);
        return true;
    }
    ~DriverPass() {
        if (!strScratch.empty()) RemovePath(strScratch);
    }
};

bool Readable(const std::string& path, const std::string& what, CheckResult& result) {
    std::ifstream in(path.c_str());
    if (in) return true;
    result.Add(path, 0, true, "cannot open " + what + ": " + std::strerror(errno));
    return false;
}

void CheckLayerFile(const std::string& strProject, const ProjectLayout& layout, CheckResult& result,
                    bool& blnBlocked) {
    if (layout.intLayerLine == 0) return;
    std::ifstream in(layout.strLayerFile.c_str());
    if (in) return;
    char cwd[4096];
    result.Add(strProject, layout.intLayerLine, true,
               "cannot open the layer file '" + layout.strLayerFile + "'" +
                   (layout.strLayerFile[0] == '/' || !getcwd(cwd, sizeof cwd)
                        ? std::string()
                        : std::string(" (relative to ") + cwd + ")") +
                   ": " + std::strerror(errno));
    blnBlocked = true;
}

}  // namespace

CheckResult RunCheck(const CheckOptions& o) {
    CheckResult result;
    if (!o.strRotor.empty()) Readable(o.strRotor, "the rotor file", result);
    struct stat info;
    if (!o.strRunDir.empty() && (stat(o.strRunDir.c_str(), &info) != 0 || !S_ISDIR(info.st_mode)))
        result.Add(o.strRunDir, 0, true, "the run directory does not exist");
    if (!Readable(o.strProject, "the project", result)) return result;
    const std::vector<std::string> vecProject = Lines(o.strProject);
    bool blnEmpty = true;
    for (const std::string& line : vecProject)
        blnEmpty = blnEmpty && line.find_first_not_of(" \t\r") == std::string::npos;
    if (blnEmpty) {
        result.Add(o.strProject, 0, true,
                   "the project is empty: the run would make a 2 x 2 x 2 grid of zeros");
        return result;
    }
    DriverPass driver;
    std::string strScratchError;
    if (!driver.Run(o.strProject, strScratchError)) {
        result.Add(o.strProject, 0, true, strScratchError);
        return result;
    }
    const ProjectLayout layout =
        CheckProjectText(o.strProject, vecProject, driver.vecRewrite, result);
    bool blnBlocked = layout.blnTruncated;
    CheckLayerFile(o.strProject, layout, result, blnBlocked);
    GeneratorCheck job;
    job.strProject = o.strProject;
    job.strScratch = driver.strScratch;
    job.vecBodies = driver.vecBodies;
    job.v3fConversionFactor = driver.v3fConversionFactor;
    job.strRunDir = o.strRunDir;
    job.dblMaxRatio = o.dblMaxRatio;
    if (!CheckBodyFiles(job.vecBodies, layout.vecBodyPointsLines, o.strProject, o.strRunDir,
                        job.vecCutSources, result))
        blnBlocked = true;
    job.vecCutSources.resize(job.vecBodies.size());
    if (!blnBlocked) {
        for (const _BodyStruct& body : job.vecBodies)
            if (body.eBodyType > BODY_ZCUT) result.summary.blnSizesExact = false;
        CheckGenerator(job, layout, result);
    }
    return result;
}

int CheckMain(int argc, char** argv) {
    CheckOptions options;
    std::string error;
    for (int i = 1; i < argc; ++i)
        if (!std::strcmp(argv[i], "--help") || !std::strcmp(argv[i], "-help")) {
            std::cout << kUsage;
            return 0;
        }
    if (!ParseOptions(argc, argv, options, error)) {
        std::cerr << "Kavex3_Check: " << error << "\n\n" << kUsage;
        return 1;
    }
    CheckResult result = RunCheck(options);
    // In file and line order, as a compiler reports; whole-file diagnostics first.
    std::stable_sort(result.vecDiagnostics.begin(), result.vecDiagnostics.end(),
                     [](const CheckDiagnostic& a, const CheckDiagnostic& b) {
                         return a.strFile != b.strFile ? a.strFile < b.strFile
                                                       : a.intLine < b.intLine;
                     });
    if (options.blnJson) {
        WriteJson(result, std::cout);
    } else {
        WriteDiagnostics(result, std::cout);
        WriteSummary(result.summary, std::cout);
        const auto counted = [](int n, const char* what) {
            return std::to_string(n) + ' ' + what + (n == 1 ? "" : "s");
        };
        std::cout << counted(result.Count(true), "error") << ", "
                  << counted(result.Count(false), "warning") << '\n';
    }
    return result.Count(true) > 0 ? 1 : 0;
}

}  // namespace Dorva
