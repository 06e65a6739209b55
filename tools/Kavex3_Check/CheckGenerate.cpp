// The line generator's own run in a child process; its refusals, its grid and the bodies in its
// frame.
#include "CheckGenerate.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

#include "CheckBodies.h"
#include "driver/FinalOutput.h"
#include "driver/OutFile.h"
#include "driver/Write.h"
#include "driver/translate.h"
#include "generator/gdrecords.h"
#include "generator/gdrun.h"
#include "generator/gdsolverfiles.h"
#include "generator/gdutil.h"
#include "generator/gridwriter.h"
#include "generator/readFileC.h"
#include "intersector/convert.h"

namespace Dorva {

namespace {

// Peak resident memory of a run per grid cell: 300 MB for the 17.2 million cells of a
// million-facet sphere on 258^3 cells (the intersector's cells and the grid's nodes while it is
// read back dominate; the body adds about 6 bytes a cell here, so 102.5 million cells take 12.6
// each).
constexpr double kRunBytesPerCell = 18.3;

int s_intReport = -1;  // the child's end of the result pipe

void Send(const std::string& text) {
    const char* p = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const ssize_t n = write(s_intReport, p, left);
        if (n <= 0) return;
        p += n;
        left -= std::size_t(n);
    }
}

// The generator ends a run through its exit hook: tell the parent the input file's line.
void OnGeneratorExit(int) {
    Send("L " + std::to_string(gd_spec_line) + "\n");
}

// Through the run's checked output files: a copy cut short would be read as a mistake of the
// body, so it ends the child as the generator ends.
void CopyFile(const std::string& from, const std::string& to) {
    std::ifstream in(from.c_str(), std::ios::binary);
    WriteCheckedFile(to, [&](std::ostream& out) {
        if (in.peek() != std::ifstream::traits_type::eof()) out << in.rdbuf();
    });
}

// Each surface body as the run places it (TranslateToGlobal reads the translation file that the
// generator wrote): what the triangulation drops of it, what remains open, where it leaves the
// grid.
std::string BodiesInGridFrame(const GeneratorCheck& job, std::vector<_BodyStruct> bodies) {
    const DriverContext run(job.strScratch);
    TranslateToGlobal(run, bodies, job.v3fConversionFactor);
    std::string text;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        if (bodies[i].eBodyType <= BODY_ZCUT || bodies[i].pMesh.null()) continue;
        std::vector<FEL_vector3<float>> kept;
        long dropped = 0;
        for (int z = 0; z < bodies[i].pMesh->get_n_zones(); ++z)
            dropped += CountDroppedTriangles(bodies[i].pMesh->get_zone(z), &kept);
        FEL_vector3<float> lo, hi;
        bodies[i].pMesh->get_bounding_box(&lo, &hi);
        for (int a = 0; a < 3; ++a)
            if (lo[a] < finalgdpts[a][0] || hi[a] > finalgdpts[a][Nfinalgdpts[a] - 1])
                text += "O " + std::to_string(i) + ' ' + std::to_string(a) + '\n';
        text += "B " + std::to_string(i) + ' ' + std::to_string(dropped) + ' ' +
                std::to_string(dropped + long(kept.size() / 3)) + ' ' +
                std::to_string(OpenEdgeCount(kept)) + '\n';
    }
    return text;
}

// Everything runs as in the worker up to the files of the run; what the parent needs is sent as
// lines: "A n p...", "C cells", "F solver file", "S grid solver", "O body axis"
// (outside the grid) and "B body dropped total open".
void ChildRun(const GeneratorCheck& job) {
    std::vector<_BodyStruct> bodies = job.vecBodies;
    for (std::size_t i = 0; i < bodies.size(); ++i)
        if (bodies[i].eBodyType <= BODY_ZCUT) CopyFile(job.vecCutSources[i], bodies[i].strCutFile);
    WriteOutBoundingBoxes(bodies);
    const std::string strGrid = job.strScratch + "//temp.Grid";
    const bool blnSurfaces = std::any_of(
        bodies.begin(), bodies.end(), [](const _BodyStruct& b) { return b.eBodyType > BODY_ZCUT; });
    const bool blnMixed =
        blnSurfaces && !std::all_of(bodies.begin(), bodies.end(),
                                    [](const _BodyStruct& b) { return b.eBodyType > BODY_ZCUT; });
    if (blnMixed) HideSurfaceBodiesFromMarking(strGrid, bodies);
    bodyCellsReplaced = blnSurfaces && !blnMixed;

    double t[3];
    gen_final_grid(strGrid.c_str(), (job.strScratch + "//Lcl2Gbl.dat").c_str(), t);
    std::ostringstream os;
    os.precision(17);
    for (int a = 0; a < 3; ++a) {
        os << "A " << Nfinalgdpts[a];
        for (int i = 0; i < Nfinalgdpts[a]; ++i) os << ' ' << finalgdpts[a][i];
        os << '\n';
    }
    os << "C " << nBodyCells << '\n';
    os << "F "
       << (gd_options.solverInpFile && gd_options.solverInpFile[0] ? gd_options.solverInpFile
                                                                   : "SolverGdInp.dat")
       << '\n';
    // The bodies in the grid's frame on a second thread while the solver file is written aside.
    std::string strBodies;
    std::thread bodyThread([&] { strBodies = BodiesInGridFrame(job, bodies); });
    const std::string strSolver = job.strScratch + "//SolverGdInp.dat";
    wr_solver_input_file(strSolver.c_str());
    struct stat st;
    const long long intSolverBytes = ::stat(strSolver.c_str(), &st) == 0 ? st.st_size : 0;
    const long long intGridBytes = grid_file_size(!blnSurfaces, t, Nfinalgdpts, finalgdpts);
    bodyThread.join();
    os << "S " << intGridBytes << ' ' << intSolverBytes << '\n' << strBodies;
    Send(os.str());
}

std::string ReadAll(int fd) {
    std::string text;
    char buffer[65536];
    ssize_t n;
    while ((n = read(fd, buffer, sizeof buffer)) > 0) text.append(buffer, std::size_t(n));
    return text;
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
    if (from.empty()) return;
    for (std::string::size_type at = 0; (at = text.find(from, at)) != std::string::npos;
         at += to.size())
        text.replace(at, from.size(), to);
}

struct Parent {
    const GeneratorCheck& job;
    const ProjectLayout& layout;
    CheckResult& result;

    // The generator's own words, with the scratch copies named as the files they came from.
    void Refused(std::string text, int intLine) {
        while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
        const std::string::size_type at = text.find("Error: ");
        if (at != std::string::npos) text.erase(0, at + 7);
        while (!text.empty() && text[0] == '\n') text.erase(0, 1);
        Replace(text, job.strScratch + "//temp.Grid", job.strProject);
        for (std::size_t i = 0; i < job.vecBodies.size(); ++i)
            Replace(text, job.vecBodies[i].strCutFile,
                    job.vecCutSources[i].empty() ? job.vecBodies[i].strPointsFile
                                                 : job.vecCutSources[i]);
        if (text.empty()) text = "the line generator ends the run here";
        result.Add(job.strProject, intLine, true, "the run stops: " + text);
    }

    void Ratios(int a, const std::vector<double>& p) {
        CheckAxisSummary& x = result.summary.axes[a];
        x.intPoints = int(p.size());
        x.dblMinWidth = HUGE_VAL;
        double previous = 0.0;
        std::size_t before = 0;  // the cell of the width `previous`
        int warned = 0;
        for (std::size_t c = 0; c + 1 < p.size(); ++c) {
            const double w = p[c + 1] - p[c];
            if (w <= 0.0) continue;
            x.dblMinWidth = std::min(x.dblMinWidth, w);
            x.dblMaxWidth = std::max(x.dblMaxWidth, w);
            if (previous > 0.0) {
                const double r = std::max(w, previous) / std::min(w, previous);
                x.dblMaxRatio = std::max(x.dblMaxRatio, r);
                if (r > job.dblMaxRatio && warned++ < 5) {
                    char text[240];
                    std::snprintf(text, sizeof text,
                                  "%c cells %zu and %zu (at %c = %.6g) differ %.2fx in width: "
                                  "%.6g and %.6g (--max-ratio %.3g)",
                                  "XYZ"[a], before, c, "xyz"[a], p[c], r, previous, w,
                                  job.dblMaxRatio);
                    result.Add(job.strProject, layout.aintSectionLines[a], false, text);
                }
            }
            previous = w;
            before = c;
        }
        if (x.dblMinWidth == HUGE_VAL) x.dblMinWidth = 0.0;
        if (warned > 5)
            result.Add(job.strProject, layout.aintSectionLines[a], false,
                       std::to_string(warned - 5) + std::string(" more ") + "XYZ"[a] +
                           " neighbours differ by more than the ratio");
    }

    void Outside(std::size_t i, int a) {
        const int line = i < layout.vecBodyPointsLines.size() ? layout.vecBodyPointsLines[i] : 0;
        result.Add(job.strProject, line, false,
                   "body " + std::to_string(i + 1) + " ('" + job.vecBodies[i].strPointsFile +
                       "') reaches beyond the grid along " + "XYZ"[a] +
                       ": the cells cover only part of it");
    }

    // What the triangulation leaves of a surface body in the grid's frame.
    void Remains(std::size_t i, long dropped, long total, long open) {
        const int line = i < layout.vecBodyPointsLines.size() ? layout.vecBodyPointsLines[i] : 0;
        const std::string name =
            "body " + std::to_string(i + 1) + " ('" + job.vecBodies[i].strPointsFile + "'): ";
        const std::string openText =
            std::to_string(open) + " open edges, and the exterior fill can get inside it";
        if (dropped == 0) {
            if (open > 0)
                result.Add(job.strProject, line, false, name + "the surface has " + openText);
            return;
        }
        const std::string why =
            " triangles, which have two vertices equal under the coordinate tolerance in the "
            "grid's frame (it is relative to each coordinate's magnitude)";
        const std::string cure =
            "; place the body nearer the origin of the grid (its coordinates and the Grid Start "
            "Point) or give it coarser facets";
        if (dropped == total) {
            result.Add(job.strProject, line, true,
                       name + "the run drops all " + std::to_string(total) + why +
                           ", and blocks no cell for it" + cure);
            return;
        }
        result.Add(job.strProject, line, false,
                   name + "the run drops " + std::to_string(dropped) + " of " +
                       std::to_string(total) + why +
                       (open > 0 ? "; what remains has " + openText : "; what remains is closed") +
                       cure);
    }

    void Read(const std::string& text) {
        std::istringstream in(text);
        std::string tag;
        CheckSummary& s = result.summary;
        long long cells = 1;
        int intAxis = 0;
        while (in >> tag) {
            if (tag == "A") {
                int n;
                in >> n;
                std::vector<double> p(std::size_t(std::max(n, 0)));
                for (double& v : p) in >> v;
                if (intAxis < 3) Ratios(intAxis++, p);
                cells *= std::max(n - 1, 0);
            } else if (tag == "C") {
                in >> s.intGeneratorBodyCells;
            } else if (tag == "S") {
                in >> s.intGridFileBytes >> s.intSolverFileBytes;
                s.blnGenerated = true;
            } else if (tag == "B") {
                std::size_t i;
                long dropped, total, open;
                in >> i >> dropped >> total >> open;
                Remains(i, dropped, total, open);
            } else if (tag == "O") {
                std::size_t i;
                int a;
                in >> i >> a;
                Outside(i, a);
            } else if (tag == "F") {
                in >> std::ws;
                std::getline(in, s.strSolverFile);
            }
        }
        s.intCells = cells;
        s.intPeakMemoryBytes = static_cast<long long>(double(cells) * kRunBytesPerCell);
    }
};

// The specification line of a run that the generator ended, from its exit hook's "L n".
int LineOf(const std::string& text) {
    std::istringstream in(text);
    std::string tag;
    int line = 0;
    while (in >> tag)
        if (tag == "L") in >> line;
    return line;
}

}  // namespace

void CheckGenerator(const GeneratorCheck& job, const ProjectLayout& layout, CheckResult& result) {
    int fds[2];
    FILE* errors = std::tmpfile();
    if (pipe(fds) != 0 || !errors) {
        result.Add(job.strProject, 0, true, "cannot start the line generator's check");
        return;
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        close(fds[0]);
        s_intReport = fds[1];
        // The generator's debug text would go to the run's log; here it goes nowhere.
        FILE* sink = std::freopen("/dev/null", "w", stdout);
        (void)sink;
        dup2(fileno(errors), 2);
        gd_exit_hook = OnGeneratorExit;
        ChildRun(job);
        std::fflush(nullptr);
        _exit(0);
    }
    close(fds[1]);
    const std::string text = ReadAll(fds[0]);
    close(fds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    Parent parent{job, layout, result};
    const bool blnEnded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!blnEnded) {
        std::rewind(errors);
        std::string words = ReadAll(fileno(errors));
        if (WIFSIGNALED(status))
            words += " (the line generator's check ended by signal " +
                     std::to_string(WTERMSIG(status)) + ")";
        parent.Refused(words, LineOf(text));
        std::fclose(errors);
        return;
    }
    std::fclose(errors);
    parent.Read(text);
    if (!job.strRunDir.empty()) {
        struct statvfs fs;
        if (statvfs(job.strRunDir.c_str(), &fs) == 0) {
            result.summary.intFreeBytes = static_cast<long long>(fs.f_bavail) * fs.f_frsize;
            const long long need =
                result.summary.intGridFileBytes + result.summary.intSolverFileBytes;
            if (need > result.summary.intFreeBytes)
                result.Add(job.strRunDir, 0, true,
                           "the run writes about " + std::to_string(need) + " bytes here, and " +
                               std::to_string(result.summary.intFreeBytes) + " are free");
        }
    }
}

}  // namespace Dorva
