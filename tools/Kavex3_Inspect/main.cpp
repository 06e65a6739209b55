// Kavex3_Inspect: ParaView files, slice pictures and a body report of a finished run.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "BodyReport.h"
#include "InspectRun.h"
#include "InspectVtk.h"
#include "LeakCheck.h"
#include "SlicePicture.h"

namespace fs = std::filesystem;

static const char* const s_szUsage =
    "usage: Kavex3_Inspect RUN_DIR PROJECT [--out DIR] [--plane P]... [--whole] [--no-pictures]\n"
    "                      [--partial]\n"
    "  Reads the finished run in RUN_DIR and the project that produced it, and writes ParaView\n"
    "  files, slice pictures and a body report into DIR (default: RUN_DIR_inspect, beside the\n"
    "  run). RUN_DIR itself is not changed.\n"
    "  --plane P   a slice picture of plane P: i=N, j=N or k=N for the cell layer N (1-based,\n"
    "              as in the solver's files), x=V, y=V or z=V for the layer holding V. Without\n"
    "              it: the middle layer normal to each axis, and for each body that the fill\n"
    "              got into, the layer through the last step of its leak path.\n"
    "  --whole     pictures of the whole plane, not of the bodies' extent with a margin.\n"
    "  --partial   inspect a run that did not finish (temp.Grid or temp.SlvrRot still there, or\n"
    "              an error log that is not empty); its files may be partial.\n";

// A stopped or failed run leaves its temporary files or an error log behind, and its files may be
// partial: such a run is inspected only when asked for.
static void CheckRunFinished(const std::string& strRunDir) {
    std::error_code ec;
    for (const char* szName : {"temp.Grid", "temp.SlvrRot"})
        if (fs::exists(fs::path(strRunDir) / szName, ec))
            throw InspectError(strRunDir + ": the run did not finish (" + szName +
                               " is still there); --partial inspects it all the same");
    const fs::path fpErr = fs::path(strRunDir) / "Kavex3_GridGen.err";
    if (fs::exists(fpErr, ec) && fs::file_size(fpErr, ec) > 0)
        throw InspectError(strRunDir +
                           ": the run did not finish (Kavex3_GridGen.err is not empty); --partial "
                           "inspects it all the same");
}

int main(int argc, char** argv) {
    std::vector<std::string> vecArgs(argv + 1, argv + argc), vecPositional, vecPlanes;
    std::string strOutDir;
    bool blnPictures = true, blnWhole = false, blnPartial = false;
    for (size_t n = 0; n < vecArgs.size(); ++n) {
        const std::string& strArg = vecArgs[n];
        if ((strArg == "--out" || strArg == "--plane") && n + 1 < vecArgs.size()) {
            (strArg == "--out" ? strOutDir : vecPlanes.emplace_back()) = vecArgs[++n];
        } else if (strArg == "--no-pictures") {
            blnPictures = false;
        } else if (strArg == "--whole") {
            blnWhole = true;
        } else if (strArg == "--partial") {
            blnPartial = true;
        } else if (strArg.rfind("-", 0) == 0 || vecPositional.size() == 2) {
            std::cerr << s_szUsage;
            return 2;
        } else {
            vecPositional.push_back(strArg);
        }
    }
    if (vecPositional.size() != 2) {
        std::cerr << s_szUsage;
        return 2;
    }
    try {
        if (!blnPartial) CheckRunFinished(vecPositional[0]);
        const InspectRun run = LoadInspectRun(vecPositional[0], vecPositional[1]);
        const std::vector<BodyLeak> vecLeaks = CheckLeaks(run);
        std::vector<SlicePlane> vecSlices;
        for (const std::string& strPlane : vecPlanes)
            vecSlices.push_back(ParseSlicePlane(run, strPlane));
        if (vecSlices.empty()) {
            for (int a = 0; a < 3; ++a) vecSlices.push_back(MiddleSlicePlane(run, a));
            for (const BodyLeak& leak : vecLeaks) {
                if (leak.vecPath.empty()) continue;
                const SlicePlane plane = LeakSlicePlane(leak);
                if (std::none_of(vecSlices.begin(), vecSlices.end(), [&](const SlicePlane& p) {
                        return SliceFileName(p) == SliceFileName(plane);
                    }))
                    vecSlices.push_back(plane);
            }
        }

        fs::path fpRun = fs::absolute(vecPositional[0]).lexically_normal();
        if (fpRun.filename().empty()) fpRun = fpRun.parent_path();
        if (strOutDir.empty()) strOutDir = fpRun.string() + "_inspect";
        std::error_code ec;
        fs::create_directories(strOutDir, ec);
        if (!fs::is_directory(strOutDir, ec))
            throw InspectError(strOutDir + ": cannot create the output folder");

        std::vector<std::string> vecWritten =
            WriteInspectVtk(run, vecLeaks, strOutDir, fpRun.filename().string());
        if (blnPictures)
            for (const SlicePlane& plane : vecSlices) {
                vecWritten.push_back(SliceFileName(plane));
                WriteSlicePicture(run, vecLeaks, plane, strOutDir + "/" + vecWritten.back(),
                                  blnWhole);
            }
        const std::string strReport = strOutDir + "/bodies.txt";
        std::ofstream ofsReport(strReport);
        WriteBodyReport(run, vecLeaks, ofsReport, std::cout);
        ofsReport.close();
        if (!ofsReport) throw InspectError(strReport + ": cannot write");
        vecWritten.push_back("bodies.txt");

        std::cout << "grid " << run.Cells(0) << " x " << run.Cells(1) << " x " << run.Cells(2)
                  << " cells, " << run.vecBlocked.size() << " blocked\n"
                  << "written to " << strOutDir << ":";
        for (const std::string& strName : vecWritten) std::cout << " " << strName;
        std::cout << "\n";
    } catch (const std::exception& e) {  // InspectError, and what the libraries raise
        std::cerr << "Kavex3_Inspect: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
