// The driver's pass over a .Grid project: its bodies, its solver file and the rewritten copy.
#include "driver/ReadGridFile.h"

#include <cstdio>
#include <exception>
#include <utility>

#include "FEL_axis_aligned_mesh.h"
#include "FilePath.h"
#include "driver/DriverContext.h"
#include "generator/gdcheck.h"
#include "readers/FEL_reader.h"
#include "readers/FEL_stl_reader.h"

static bool Holds(const std::string& line, const char* text) {
    return line.find(text) != std::string::npos;
}

const char* const g_astrProjectKeywords[PROJECT_KEYWORDS] = {
    "Conversion Factor:", "Solver Input File:", "type:", "Debug Level"};
const char* const g_astrBodyTypeWords[BODY_NONE] = {"XcutPlanes", "YcutPlanes", "ZcutPlanes", "STL",
                                                    "Plot3D"};
const char* const g_strPointsFileKey = "Points File: ";
const char* const g_strUsedInSolverKey = "used in solver:";

BodyType KindOfTypeLine(const std::string& line) {
    for (std::uint32_t kind = BODY_XCUT; kind < BODY_NONE; ++kind) {
        if (Holds(line, g_astrBodyTypeWords[kind])) return static_cast<BodyType>(kind);
    }
    return BODY_NONE;
}

int ProjectKeywordOf(const std::string& line) {
    for (int k = 0; k < PROJECT_KEYWORDS; ++k)
        if (Holds(line, g_astrProjectKeywords[k])) return k;
    return -1;
}

// Tests one project line for the driver's keywords, first hit winning; returns the body kind a
// "type:" line opens (BODY_NONE for any other line) and edits the line when it must be rewritten.
static BodyType TakeProjectLine(DriverContext& run, const std::string& gridFile, std::string& line,
                                std::string& solverInputFile,
                                FEL_vector3<float>& conversionFactor) {
    const int intKeyword = ProjectKeywordOf(line);
    if (intKeyword == PROJECT_CONVERSION_FACTOR) {
        const std::string::size_type bracket = line.find('(');
        if (bracket != std::string::npos) {
            float* factor[3] = {&conversionFactor.x, &conversionFactor.y, &conversionFactor.z};
            const int intScanned = std::sscanf(line.c_str() + bracket + 1, "%f, %f, %f", factor[0],
                                               factor[1], factor[2]);
            // A factor beyond the range of a float scans as infinity.
            for (int i = 0; i < intScanned; ++i)
                ck_coord(*factor[i], gridFile.c_str(), "Conversion Factor %c", "XYZ"[i]);
        }
    } else if (intKeyword == PROJECT_SOLVER_INPUT_FILE) {
        // The keyword's colon comes before any drive colon. Nothing behind it gives an empty path.
        const std::string::size_type start = line.find(':') + 2;
        solverInputFile = start < line.size() ? line.substr(start) : std::string();
    } else if (intKeyword == PROJECT_TYPE) {
        const BodyType kind = KindOfTypeLine(line);
        // The generator reads every body as X cut planes, from the cut file the driver supplies.
        if (kind != BODY_NONE && kind != BODY_XCUT)
            line = std::string(28, ' ') + "type: XcutPlanes";
        return kind;
    } else if (intKeyword == PROJECT_DEBUG_LEVEL) {
        run.m_intersect.m_blnDebug = !Holds(line, "0");
    }
    return BODY_NONE;
}

bool ReadGridFile(DriverContext& run, std::string gridFile, std::string& solverInputFile,
                  std::ostream& tempGrid, FEL_vector3<float>& conversionFactor,
                  std::vector<_BodyStruct>& bodies) {
    std::ifstream project(gridFile.c_str());
    bodies.clear();
    int intBodyNumber = 1;

    std::string line;
    std::getline(project, line);
    while (!project.fail() && !project.bad()) {
        const BodyType kind =
            TakeProjectLine(run, gridFile, line, solverInputFile, conversionFactor);
        tempGrid << line << std::endl;

        std::getline(project, line);
        if (kind == BODY_NONE) continue;

        static const std::string pointsKey = g_strPointsFileKey;
        const std::string::size_type points = line.find(pointsKey);
        if (points == std::string::npos) return false;
        _BodyStruct body;
        body.strPointsFile = line.substr(points + pointsKey.size());
        body.strCutFile =
            Dorva::FilePath(run.m_strTempDir + "//" + std::to_string(intBodyNumber) + "-x.cut")
                .Get();
        body.eBodyType = kind;
        run.m_vecstrTempFiles.push_back(body.strCutFile);
        bodies.push_back(body);
        tempGrid << std::string(21, ' ') << pointsKey << body.strCutFile << std::endl;

        std::getline(project, line);
        if (!Holds(line, g_strUsedInSolverKey)) return false;
        bodies.back().blnUsedInSolver = Holds(line, "True");
        tempGrid << line << std::endl;

        std::getline(project, line);
        ++intBodyNumber;
    }
    return false;
}

namespace {

// A surface body's mesh: a name holding ".p3d" or ".stl" is first tried as text unstructured
// Plot3D, then the reader detects the format.
FEL_pointer<FEL_mesh> ReadBodyMesh(const std::string& strPointsFile) {
    unsigned flags = 0;
    if (Holds(strPointsFile, ".p3d") || Holds(strPointsFile, ".stl"))
        flags = FEL_PLOT3D | FEL_PLOT3D_FORTRAN_FORMATTED | FEL_PLOT3D_UNSTRUCTURED;  // 292
    return FEL_read_mesh(strPointsFile, flags, -1);
}

// The eight corners of a box, all that a waiting body shows of itself.
FEL_pointer<FEL_mesh> BoxMesh(const FEL_vector3<float>& v3fLow, const FEL_vector3<float>& v3fHigh) {
    FEL_axis* axes[3];
    for (int a = 0; a < 3; ++a)
        axes[a] = new FEL_irregular_axis(2, new float[2]{v3fLow[a], v3fHigh[a]});
    return FEL_pointer<FEL_mesh>(new FEL_axis_aligned_mesh(axes[0], axes[1], axes[2], "box"));
}

}  // namespace

void ReadBodies(std::vector<_BodyStruct>& bodies) {
    for (_BodyStruct& body : bodies)
        if (body.eBodyType > BODY_ZCUT) body.pMesh = ReadBodyMesh(body.strPointsFile);
}

BodyReading::BodyReading(std::vector<_BodyStruct>& bodies) {
    for (_BodyStruct& body : bodies) {
        if (body.eBodyType <= BODY_ZCUT) continue;
        FEL_vector3<float> v3fLow, v3fHigh;
        if (FEL_stl_binary_bounds(body.strPointsFile, &v3fLow, &v3fHigh)) {
            body.pMesh = BoxMesh(v3fLow, v3fHigh);
            m_vecWaiting.push_back({&body, body.strPointsFile, FEL_pointer<FEL_mesh>()});
        } else {
            body.pMesh = ReadBodyMesh(body.strPointsFile);
        }
    }
    if (m_vecWaiting.empty()) return;
    m_thread = std::thread([this] {
        try {
            for (Waiting& waiting : m_vecWaiting) waiting.pMesh = ReadBodyMesh(waiting.strPath);
        } catch (...) {
            m_pError = std::current_exception();
        }
    });
}

BodyReading::~BodyReading() {
    if (m_thread.joinable()) m_thread.join();
}

void BodyReading::Wait() {
    if (m_thread.joinable()) m_thread.join();
    if (m_pError) std::rethrow_exception(std::exchange(m_pError, nullptr));
    for (Waiting& waiting : m_vecWaiting) waiting.pBody->pMesh = waiting.pMesh;
    m_vecWaiting.clear();
}
