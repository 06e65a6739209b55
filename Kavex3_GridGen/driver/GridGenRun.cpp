// The worker's run: command line, logs, project rewrite, grid generation and clean-up.
#include "driver/GridGenRun.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <vector>

#include "CommandLine.h"
#include "Daemonize.h"
#include "FilePath.h"
#include "LinkManager.h"
#include "RemovePath.h"
#include "driver/ConvertCuts.h"
#include "driver/DriverGlobals.h"
#include "driver/ReadGridFile.h"

void CopyRotorFile(const std::string& from, const std::string& to) {
    std::ifstream source(from.c_str(), std::ios::binary);
    std::ofstream target(to.c_str(), std::ios::binary | std::ios::trunc);
    char byte = 0;
    while (source.good() && target.good()) {
        source.get(byte);
        target.put(byte);
    }
}

// The temporary files of the run, removed when it ends or fails.
struct RunFiles {
    std::string strRotor;
    std::string strGrid;
    std::ofstream tempGrid;

    void Remove() {
        tempGrid.close();
        Dorva::RemovePath(strRotor);
        Dorva::RemovePath(strGrid);
    }
};

// Start-up steps after the banner that concern the parent link. Returns false when the run must
// end with status -1, after the message.
static bool StartLink() {
    int intLinkId = -1;
    // A "linkid" without a value, or one that isn't a number, counts as not given: no link.
    if (!Dorva::CommandLine::GetArgument("linkid", intLinkId)) return true;
    if (intLinkId < 0) {
        std::cerr << "GRID GEN ERROR:  Valid linkID must be specified" << std::endl;
        return false;
    }
    if (pthread_mutex_init(&g_mutex, nullptr) != 0) {
        std::cerr << "GRID GEN ERROR:  Could not initialize mutex" << std::endl;
        return false;
    }
    // This build has no shared-memory link support, so the manager can't open the shared region:
    // the parent gets the region's failure rather than a run that silently ignores it.
    std::cerr << "GRID GEN ERROR: Failed to start the link manager: "
              << Dorva::LinkManager::GetResultString(Dorva::LinkManager::SHARED_MEMORY_OPEN_FAILED);
    pthread_mutex_destroy(&g_mutex);
    return false;
}

int GridGenMain(int argc, char** argv) {
    char buffer[300];
    strCWD = std::string(getcwd(buffer, sizeof buffer) != nullptr ? buffer : "") + "/";
    g_blnDebug = false;

    Dorva::CommandLine::SetParameters(argc, argv);
    std::string strGridFile, strRotorFile, strRunDir;
    if (!Dorva::CommandLine::GetArgument("Grid", strGridFile) ||
        !Dorva::CommandLine::GetArgument("SlvrRot", strRotorFile) ||
        !Dorva::CommandLine::GetArgument("pth", strRunDir)) {
        std::cerr << "GRID GEN ERROR:  Incorrect command line arguments" << std::endl;
        return -1;
    }
    // Without its logs the run would leave no trace at all, so a run directory that can't take
    // them ends the run here, on the inherited stderr.
    if (!Dorva::Daemonize(strRunDir + "//Kavex3_GridGen.out", strRunDir + "//Kavex3_GridGen.err",
                          false, false)) {
        std::cerr << "GRID GEN ERROR:  Could not open the logs in " << strRunDir << ": "
                  << std::strerror(errno) << std::endl;
        return -1;
    }
    // Reopening made the error log buffered; unbuffered, it keeps the runtime's last words when an
    // uncaught exception from a later stage aborts the run.
    std::setvbuf(stderr, nullptr, _IONBF, 0);
    std::cout << "Vantor Version "
              << "0.9.15 (Beta)"
              << " Build "
              << "396" << std::endl
              << std::endl;
    if (!StartLink()) return -1;

    g_strTempDir = strRunDir;
    RunFiles files;
    files.strRotor = strRunDir + "//temp.SlvrRot";
    CopyRotorFile(strRotorFile, files.strRotor);
    g_vecstrTempFiles.push_back(files.strRotor);
    files.strGrid = strRunDir + "//temp.Grid";
    g_vecstrTempFiles.push_back(files.strGrid);
    files.tempGrid.open(files.strGrid.c_str(), std::ios::trunc);

    std::cout << "Reading .Grid file (" << strGridFile << ")..." << std::endl;
    std::string strSolverInputFile;
    // A project without a "Conversion Factor:" line keeps its bodies at their own scale.
    FEL_vector3<float> conversionFactor(1.0f, 1.0f, 1.0f);
    std::vector<_BodyStruct> bodies;
    const bool blnFailed =
        ReadGridFile(strGridFile, strSolverInputFile, files.tempGrid, conversionFactor, bodies);
    strSolverInputFile = Dorva::FilePath(strSolverInputFile).Get();
    if (blnFailed) {
        std::fprintf(stderr, "%s/%d: ReadGridFile failed!\n", __FILE__, 506);
        files.Remove();
        std::exit(-1);
    }

    double a = 0.0, b = 0.0, c = 0.0;
    if (all_bodies_are_cut_files(bodies)) {
        std::cout << "Begin Grid Generation..." << std::endl;
        all_cuts_grid_generation(argv[0], files.strGrid, strRunDir, true, &a, &b, &c);
    } else {
        std::cout << "Reading bodies..." << std::endl;
        // An unreadable body throws out of here and ends the process.
        ReadBodies(bodies);
        // The stages after this one (bounding boxes, the grid's read-back, intersection and
        // classification, the final output) are not in this build: say so rather than end with a
        // grid that ignores the surfaces.
        std::cerr << "GRID GEN ERROR:  surface bodies were read, but this build can't yet "
                     "intersect them with the grid"
                  << std::endl;
        files.Remove();
        return -1;
    }

    files.Remove();
    return 0;
}
