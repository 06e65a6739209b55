// The worker's run: command line, logs, project rewrite, grid generation and clean-up.
#include "driver/GridGenRun.h"

#include <unistd.h>

#include <cxxabi.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <vector>

#include "CommandLine.h"
#include "Daemonize.h"
#include "FEL_exception.h"
#include "FilePath.h"
#include "RemovePath.h"
#include "driver/ConvertCuts.h"
#include "driver/DriverContext.h"
#include "driver/DriverGlobals.h"
#include "driver/FinalOutput.h"
#include "driver/OutFile.h"
#include "driver/ParentLink.h"
#include "driver/ReadGridFile.h"
#include "driver/Write.h"
#include "driver/translate.h"
#include "generator/gdoutfile.h"
#include "generator/gdrecords.h"
#include "intersector/Classify.h"
#include "intersector/Intersector.h"
#include "readers/FEL_reader.h"

void CopyRotorFile(const std::string& from, const std::string& to) {
    std::ifstream source(from.c_str(), std::ios::binary);
    OutFile target(to, true);
    char byte = 0;
    while (source.good() && target.good()) {
        source.get(byte);
        target.put(byte);
    }
    target.Close();
}

// The temporary files of the run, removed when it ends or fails.
struct RunFiles {
    std::string strRotor;
    std::string strGrid;
    std::unique_ptr<OutFile> tempGrid;

    void Remove() {
        if (tempGrid) tempGrid->Close();
        Dorva::RemovePath(strRotor);
        Dorva::RemovePath(strGrid);
    }
};

// An exception that nobody catches ends the run as the runtime does, with its words on the error
// log; the mesh library's exceptions are not standard ones, so their text is added here the way
// the runtime adds the text of a standard exception.
[[noreturn]] static void TerminateWithText() {
    gd_abandon_outputs();
    LeaveLink();
    std::type_info* type = abi::__cxa_current_exception_type();
    if (type == nullptr) {
        std::fputs("terminate called without an active exception\n", stderr);
        std::abort();
    }
    int status = 0;
    char* name = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
    std::fprintf(stderr, "terminate called after throwing an instance of '%s'\n",
                 status == 0 && name ? name : type->name());
    std::free(name);
    try {
        throw;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "  what():  %s\n", e.what());
    } catch (const FEL_exception& e) {
        std::fprintf(stderr, "  what():  %s\n", e.what().c_str());
    } catch (...) {
    }
    std::abort();
}

// The full path, for a project with surface bodies: stages 2 to 11.
static void RunFullPath(DriverContext& run, char* programName, RunFiles& files,
                        std::vector<_BodyStruct>& bodies, FEL_vector3<float> conversionFactor,
                        const std::string& strSolverInputFile) {
    const std::string& strRunDir = run.m_strTempDir;
    const std::string strGridFile = strRunDir + "//KX3.grid.dat";
    std::cout << "Reading bodies..." << std::endl;
    BodyReading reading(bodies);
    std::cout << "Writing bounding boxes..." << std::endl;
    WriteOutBoundingBoxes(bodies);
    // A project that mixes cut bodies with surface bodies keeps the generator's cells for its cut
    // bodies; the surface bodies' cells come from the intersection alone.
    const bool blnMixed = !std::all_of(
        bodies.begin(), bodies.end(), [](const _BodyStruct& b) { return b.eBodyType > BODY_ZCUT; });
    if (blnMixed) HideSurfaceBodiesFromMarking(files.strGrid, bodies);
    bodyCellsReplaced = !blnMixed;

    std::cout << "Begin Grid Generation..." << std::endl;
    GridOffsets offsets;
    all_cuts_grid_generation(programName, files.strGrid, strRunDir, false, &offsets.dblX,
                             &offsets.dblY, &offsets.dblZ);
    reading.Wait();
    std::cout << "Reading KX3.grid.dat..." << std::endl;
    FEL_pointer<FEL_mesh> grid =
        ReadGridAsAxes(strGridFile, run.m_intersect.m_options.m_intThreads);
    // The generator's grid file now lives in grid: it goes beside the intersection, and the
    // blanked grid that replaces it is written into its room.
    BackgroundRemoval generatorGrid(strGridFile);
    std::cout << "Translate bodies..." << std::endl;
    TranslateToGlobal(run, bodies, conversionFactor);
    std::cout << "Writing translated bodies..." << std::endl;

    std::cout << "Intersecting bodies with the grid..." << std::endl;
    std::vector<_BodyStruct> surfaces;
    for (const _BodyStruct& body : bodies)
        if (body.eBodyType > BODY_ZCUT) surfaces.push_back(body);
    IntersectGrid(run.m_intersect, grid, surfaces, strRunDir);
    std::cout << "Calculating body cells..." << std::endl;
    ClassifyCells(run.m_intersect);

    // A project that names no solver input file gets the generator's default one, which is the
    // file that the generator wrote and that the blocked cells belong in.
    const std::string strSolverFile =
        strSolverInputFile.empty() ? std::string("SolverGdInp.dat") : strSolverInputFile;
    std::vector<FEL_vector3<int>> generatorCells;
    if (blnMixed) generatorCells = ReadSolverBodyCells(strSolverFile);
    generatorGrid.Wait();
    WriteFinalOutput(run, strSolverFile, strGridFile, grid, offsets, generatorCells);
    run.m_intersect.m_gridCells.Release();
}

int GridGenMain(int argc, char** argv) {
    char buffer[300];
    strCWD = std::string(getcwd(buffer, sizeof buffer) != nullptr ? buffer : "") + "/";

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
    std::set_terminate(TerminateWithText);
    std::cout << "Vantor Version "
              << "0.9.15 (Beta)"
              << " Build "
              << "396" << std::endl
              << std::endl;
    if (!StartLink()) return -1;

    // The run's one context; its debug switch starts false.
    DriverContext run(strRunDir);
    RunFiles files;
    files.strRotor = strRunDir + "//temp.SlvrRot";
    CopyRotorFile(strRotorFile, files.strRotor);
    run.m_vecstrTempFiles.push_back(files.strRotor);
    files.strGrid = strRunDir + "//temp.Grid";
    run.m_vecstrTempFiles.push_back(files.strGrid);
    files.tempGrid.reset(new OutFile(files.strGrid, true));

    std::cout << "Reading .Grid file (" << strGridFile << ")..." << std::endl;
    std::string strSolverInputFile;
    // A project without a "Conversion Factor:" line keeps its bodies at their own scale.
    FEL_vector3<float> conversionFactor(1.0f, 1.0f, 1.0f);
    std::vector<_BodyStruct> bodies;
    const bool blnFailed = ReadGridFile(run, strGridFile, strSolverInputFile, *files.tempGrid,
                                        conversionFactor, bodies);
    files.tempGrid->Check();
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
        RunFullPath(run, argv[0], files, bodies, conversionFactor, strSolverInputFile);
    }

    files.Remove();
    EndLink(true);
    return 0;
}
