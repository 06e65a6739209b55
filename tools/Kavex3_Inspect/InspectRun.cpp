// Loads a finished run: project, grid, blocked cells and bodies, all read through the project's
// own readers.
#include "InspectRun.h"

#include <unistd.h>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>

#include "FEL_exception.h"
#include "FEL_tetrahedral_mesh.h"
#include "driver/DriverContext.h"
#include "driver/ReadGridFile.h"
#include "driver/translate.h"
#include "generator/bodies.h"
#include "generator/readFileC.h"
#include "intersector/convert.h"
#include "readers/FEL_reader.h"

namespace fs = std::filesystem;

static bool IsFile(const std::string& strPath) {
    std::error_code ec;
    return fs::is_regular_file(strPath, ec);
}

std::vector<InspectRotor> ReadRotors(const std::string& strProject,
                                     const FEL_vector3<float>& v3fScale,
                                     const FEL_vector3<float>& v3fTranslation) {
    std::ifstream in(strProject);
    if (!in) throw InspectError(strProject + ": cannot open the project file");
    struct Disc {
        int intAxis;
        Rotor rotor;
    };
    std::vector<Disc> vecDiscs;
    static const char* const s_szTypes[3] = {"X-Plane Rotor", "Y-Plane Rotor", "Z-Plane Rotor"};
    for (std::string strLine; std::getline(in, strLine);) {
        auto value = [&](const char* szKey) {  // the text behind szKey, or null
            int intFound = 0;
            const char* szValue = getSubstring(strLine.c_str(), szKey, &intFound);
            return intFound ? szValue : nullptr;
        };
        if (const char* szType = value("type: ")) {
            for (int a = 0; a < 3; ++a)
                if (std::strstr(szType, s_szTypes[a])) {
                    vecDiscs.push_back(Disc{a, Rotor{}});
                    init_rotor(&vecDiscs.back().rotor);
                }
            continue;
        }
        if (vecDiscs.empty()) continue;
        Rotor& rotor = vecDiscs.back().rotor;
        if (const char* szCentre = value("center: "))
            std::sscanf(szCentre, "(%lf,%lf,%lf)", &rotor.center[0], &rotor.center[1],
                        &rotor.center[2]);
        else if (const char* szRadius = value("radius: "))
            rotor.radius = std::atof(szRadius);
        else if (const char* szThickness = value("half thickness: "))
            rotor.thickness = std::atof(szThickness);
        else if (const char* szAbsolute = value("Is Absolute Thickness: "))
            rotor.isAbsThickness = std::strstr(szAbsolute, "True") != nullptr;
    }
    std::vector<InspectRotor> vecRotors;
    for (const Disc& disc : vecDiscs) {
        const Rotor& r = disc.rotor;
        if (r.radius == UNSET_DBL || r.center[0] == UNSET_DBL || r.center[1] == UNSET_DBL ||
            r.center[2] == UNSET_DBL)
            continue;
        InspectRotor rotor;
        rotor.intAxis = disc.intAxis;
        for (int a = 0; a < 3; ++a)
            rotor.v3fCentre[a] = static_cast<float>(r.center[a] * v3fScale[a] + v3fTranslation[a]);
        rotor.dblRadius = r.radius * v3fScale.x;
        const double dblThickness = r.thickness == UNSET_DBL ? 0 : r.thickness;
        rotor.dblHalfThickness =
            r.isAbsThickness ? dblThickness * v3fScale.z : dblThickness * rotor.dblRadius;
        vecRotors.push_back(rotor);
    }
    return vecRotors;
}

bool ReadBodyCellList(const std::string& strFile, std::vector<FEL_vector3<int>>& vecCells) {
    std::ifstream in(strFile);
    const std::string strKey = "# Num. of Body Cells:";
    std::string strLine;
    // The grid file's coordinates stand on one very long line: pass over lines that can't be
    // the key without holding them.
    while (in) {
        const int c = in.peek();
        if (c != '#') {
            in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
            continue;
        }
        std::getline(in, strLine);
        if (strLine.compare(0, strKey.size(), strKey) == 0) break;
    }
    if (!in) return false;
    long intCount = -1;
    in >> intCount;
    if (!in || intCount < 0) throw InspectError(strFile + ": the body-cell count is unreadable");
    in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    if (intCount > 0) std::getline(in, strLine);  // the list's header
    vecCells.clear();
    vecCells.reserve(static_cast<size_t>(std::min(intCount, 1L << 20)));
    for (long n = 0; n < intCount; ++n) {
        FEL_vector3<int> v3iCell;
        char chComma1 = 0, chComma2 = 0;
        in >> v3iCell.x >> chComma1 >> v3iCell.y >> chComma2 >> v3iCell.z;
        if (!in || chComma1 != ',' || chComma2 != ',')
            throw InspectError(strFile + ": body cell " + std::to_string(n + 1) + " of " +
                               std::to_string(intCount) + " is missing or malformed");
        vecCells.push_back(v3iCell);
    }
    return true;
}

int CellOfCoordinate(const std::vector<float>& vecAxis, double dbl, bool blnUpper) {
    if (vecAxis.size() < 2 || !(dbl >= vecAxis.front() && dbl <= vecAxis.back())) return -1;
    const auto it = blnUpper ? std::lower_bound(vecAxis.begin(), vecAxis.end(), dbl)
                             : std::upper_bound(vecAxis.begin(), vecAxis.end(), dbl);
    const int intLast = static_cast<int>(vecAxis.size()) - 2;
    int c = std::clamp(static_cast<int>(it - vecAxis.begin()) - 1, 0, intLast);
    while (c > 0 && vecAxis[c] == vecAxis[c + 1]) --c;
    while (c < intLast && vecAxis[c] == vecAxis[c + 1]) ++c;
    return c;
}

namespace {

// Corners of a mesh's surface triangles, three a triangle.
using CornerList = std::vector<FEL_vector3<float>>;

void AddStructuredZone(const FEL_mesh& zone, CornerList& vecCorners) {
    int dims[3] = {0, 0, 0};
    zone.get_structured_dimensions(dims);
    const int k = dims[2] - 1;  // a volume zone shows its last plane, as the intersector reads it
    auto at = [&](int i, int j) {
        FEL_vector3<float> v3f;
        zone.coordinates_at_vertex_cell(FEL_vertex_cell(i, j, k), &v3f);
        return v3f;
    };
    for (int j = 1; j < dims[1]; ++j)
        for (int i = 1; i < dims[0]; ++i) {
            const FEL_vector3<float> a = at(i - 1, j - 1), b = at(i, j - 1), c = at(i, j),
                                     d = at(i - 1, j);
            vecCorners.insert(vecCorners.end(), {a, b, c, a, c, d});
        }
}

void AddUnstructuredZone(const FEL_mesh& zone, CornerList& vecCorners) {
    FEL_cell_iter iter;
    FEL_vector3<float> corners[8];
    for (zone.begin(&iter); !iter.done; ++iter) {
        const FEL_cell& cell = *iter;
        if (cell.get_n_nodes() < 3) continue;
        zone.coordinates_at_cell(cell, corners);
        vecCorners.insert(vecCorners.end(), corners, corners + 3);
    }
}

// Per triangle of CornersOfMesh: kept by the run's triangulation (which keeps every triangle of a
// structured zone).
std::vector<bool> KeptOfMesh(const FEL_mesh& placed) {
    std::vector<bool> vecKept;
    for (int z = 0; z < placed.get_n_zones(); ++z) {
        const FEL_pointer<FEL_mesh> pZone = placed.get_zone(z);
        if (pZone.null()) continue;
        if (pZone->is_structured_mesh()) {
            int dims[3] = {0, 0, 0};
            pZone->get_structured_dimensions(dims);
            vecKept.resize(
                vecKept.size() + 2 * size_t(std::max(dims[0] - 1, 0)) * std::max(dims[1] - 1, 0),
                true);
            continue;
        }
        const std::vector<bool> vecCells = KeptUnstructuredCells(pZone);
        FEL_cell_iter iter;
        size_t n = 0;
        for (pZone->begin(&iter); !iter.done; ++iter, ++n)
            if ((*iter).get_n_nodes() >= 3) vecKept.push_back(vecCells[n]);
    }
    return vecKept;
}

CornerList CornersOfMesh(const FEL_mesh& mesh) {
    CornerList vecCorners;
    const int intZones = mesh.get_n_zones();
    for (int z = 0; z < intZones; ++z) {
        const FEL_pointer<FEL_mesh> pZone = mesh.get_zone(z);
        if (pZone.null()) continue;
        if (pZone->is_structured_mesh())
            AddStructuredZone(*pZone, vecCorners);
        else
            AddUnstructuredZone(*pZone, vecCorners);
    }
    return vecCorners;
}

// A cut body as a closed surface: side walls between neighbouring cut planes, each polygon a
// ring, and the first and last plane closed by a fan. The run's generator reads every body's cut
// file as X cut planes ((Y, Z) pairs), whatever the project's type line said, and so does this.
FEL_pointer<FEL_mesh> MeshOfCutFile(const std::string& strFile) {
    FILE* stream = std::fopen(strFile.c_str(), "r");
    if (!stream) throw InspectError(strFile + ": cannot open the body's cut file");
    Body body{};
    body.name = const_cast<char*>(strFile.c_str());
    read_body_cuts_pts(&body, stream);  // unreadable input ends the program with its message
    std::fclose(stream);
    const int nCuts = body.nCuts, nPts = nCuts > 0 ? body.cuts[0].nPts : 0;
    auto* vertices = new FEL_vector3<float>[static_cast<size_t>(nCuts) * nPts + 1];
    for (int c = 0; c < nCuts; ++c)
        for (int p = 0; p < nPts; ++p)
            vertices[c * nPts + p] = FEL_vector3<float>(static_cast<float>(body.cuts[c].posn),
                                                        static_cast<float>(body.cuts[c].pts[p][0]),
                                                        static_cast<float>(body.cuts[c].pts[p][1]));
    for (int c = 0; c < nCuts; ++c) std::free(body.cuts[c].pts);
    std::free(body.cuts);
    // A ring that repeats its first point at the end closes without the wrap; triangles with
    // coincident corners (a plane collapsed to a point, say) are left out.
    bool blnRepeats = nPts > 1;
    for (int c = 0; c < nCuts; ++c) {
        const FEL_vector3<float>& first = vertices[c * nPts];
        const FEL_vector3<float>& last = vertices[c * nPts + nPts - 1];
        blnRepeats = blnRepeats && first.x == last.x && first.y == last.y && first.z == last.z;
    }
    const int intRing = blnRepeats ? nPts - 1 : nPts;
    std::vector<FEL_vector3<int>> vecTris;
    auto addTriangle = [&](int a, int b, int c) {
        auto same = [&](int m, int n) {
            return vertices[m].x == vertices[n].x && vertices[m].y == vertices[n].y &&
                   vertices[m].z == vertices[n].z;
        };
        if (!same(a, b) && !same(b, c) && !same(c, a)) vecTris.emplace_back(a, b, c);
    };
    for (int c = 1; c < nCuts; ++c)
        for (int p = 0; p < intRing; ++p) {
            const int a = (c - 1) * nPts + p, b = (c - 1) * nPts + (p + 1) % intRing;
            addTriangle(a, b, b + nPts);
            addTriangle(a, b + nPts, a + nPts);
        }
    for (int c : {0, nCuts - 1})
        for (int p = 1; nCuts > 0 && p + 1 < intRing; ++p)
            addTriangle(c * nPts, c * nPts + p, c * nPts + p + 1);
    auto* triangles = new FEL_vector3<int>[vecTris.size() + 1];
    std::copy(vecTris.begin(), vecTris.end(), triangles);
    return FEL_pointer<FEL_mesh>(new FEL_tetrahedral_mesh(
        nCuts * nPts, vertices, static_cast<int>(vecTris.size()), triangles, nullptr, 0, nullptr));
}

// The grid's corner points along one axis, read from the mesh's first row of that axis.
std::vector<float> AxisOfGrid(const FEL_mesh& grid, const int* dims, int axis) {
    std::vector<float> vecAxis(static_cast<size_t>(dims[axis]));
    for (int n = 0; n < dims[axis]; ++n) {
        FEL_vector3<float> v3f;
        grid.coordinates_at_vertex_cell(
            FEL_vertex_cell(axis == 0 ? n : 0, axis == 1 ? n : 0, axis == 2 ? n : 0), &v3f);
        vecAxis[n] = axis == 0 ? v3f.x : axis == 1 ? v3f.y : v3f.z;
    }
    return vecAxis;
}

// A run's grid file begins with a line of offsets, which the mesh reader takes for no format of
// its own: the run read the grid while that line was still empty. The reader is therefore given
// a copy with the line emptied, outside the run directory, removed when this goes.
class GridCopy {
  public:
    explicit GridCopy(const std::string& strGrid) {
        std::ifstream in(strGrid, std::ios::binary);
        std::string strFirst;
        std::getline(in, strFirst);
        if (strFirst.empty()) {
            m_strPath = strGrid;
            return;
        }
        const char* szTmp = std::getenv("TMPDIR");
        std::string strTemplate =
            std::string(szTmp && *szTmp ? szTmp : "/tmp") + "/Kavex3_Inspect_gridXXXXXX";
        const int fd = mkstemp(strTemplate.data());
        if (fd < 0)
            throw InspectError(strTemplate + ": cannot make a scratch copy of the grid file");
        close(fd);
        m_strPath = m_strScratch = strTemplate;
        std::ofstream out(m_strScratch, std::ios::binary);
        out << '\n' << in.rdbuf();
        if (!out.flush())
            throw InspectError(m_strScratch + ": cannot write a scratch copy of the grid file");
    }
    ~GridCopy() {
        if (!m_strScratch.empty()) std::remove(m_strScratch.c_str());
    }
    const std::string& Path() const { return m_strPath; }

  private:
    std::string m_strPath, m_strScratch;
};

// A body's file as the run found it: as given, else beside the project.
std::string BodyFile(const std::string& strGiven, const std::string& strProject) {
    if (IsFile(strGiven) || fs::path(strGiven).is_absolute()) return strGiven;
    const fs::path fpBeside = fs::path(strProject).parent_path() / strGiven;
    return IsFile(fpBeside.string()) ? fpBeside.string() : strGiven;
}

}  // namespace

InspectSurface SurfaceOfMesh(const FEL_mesh& mesh, const FEL_mesh& placed) {
    const CornerList vecRaw = CornersOfMesh(mesh), vecPlaced = CornersOfMesh(placed);
    InspectSurface surface;
    // Vertices merge as the STL reader merges them: by exact equality of the coordinates read,
    // 0.0 and -0.0 alike; the merged vertex stands where the run placed it.
    std::map<std::array<float, 3>, int> mapIndex;
    surface.vecTriangles.resize(vecRaw.size() / 3);
    for (size_t n = 0; n < vecRaw.size(); ++n) {
        const FEL_vector3<float>& v3f = vecRaw[n];
        const auto result = mapIndex.emplace(std::array<float, 3>{v3f.x, v3f.y, v3f.z},
                                             static_cast<int>(surface.vecPoints.size()));
        if (result.second) surface.vecPoints.push_back(vecPlaced[n]);
        surface.vecTriangles[n / 3][n % 3] = result.first->second;
    }
    surface.vecKept = KeptOfMesh(placed);
    if (surface.vecKept.size() != surface.vecTriangles.size())  // a cut body: no triangulation
        surface.vecKept.assign(surface.vecTriangles.size(), true);
    return surface;
}

InspectRun LoadInspectRun(const std::string& strRunDir, const std::string& strProject) {
    InspectRun run;
    run.strRunDir = strRunDir;
    std::error_code ec;
    if (!fs::is_directory(strRunDir, ec)) throw InspectError(strRunDir + ": not a run directory");
    run.strGridFile = strRunDir + "/KX3.grid.dat";
    if (!IsFile(run.strGridFile))
        throw InspectError(run.strGridFile + ": no grid file; not a finished run directory");
    if (!IsFile(strProject)) throw InspectError(strProject + ": cannot open the project file");

    // The driver's reader writes the rewritten copy to this stream; left unopened, nothing is
    // written, and the run directory stays as it is.
    std::ofstream ofsNowhere;
    std::string strSolverInput;
    std::vector<_BodyStruct> vecBodies;
    DriverContext driver(strRunDir);
    ReadGridFile(driver, strProject, strSolverInput, ofsNowhere, run.v3fConversion, vecBodies);

    FEL_pointer<FEL_mesh> pGrid;
    try {
        const GridCopy copy(run.strGridFile);
        unsigned flags = 0;
        pGrid = FEL_read_mesh(copy.Path(), flags, -1);
    } catch (const FEL_exception& e) {
        throw InspectError(run.strGridFile + ": unreadable grid file (" + e.what() + ")");
    }
    int dims[3] = {0, 0, 0};
    if (pGrid.null() || !pGrid->is_structured_mesh() ||
        pGrid->get_structured_dimensions(dims) != 1 || dims[0] < 2 || dims[1] < 2 || dims[2] < 2)
        throw InspectError(run.strGridFile + ": not a structured grid of at least one cell");
    for (int a = 0; a < 3; ++a) run.vecAxes[a] = AxisOfGrid(*pGrid, dims, a);

    // The grid file lists the body cells when the run classified surface bodies; a run of cut
    // bodies alone leaves its count at 0 and lists them in the solver input file only.
    run.strBlockedSource = run.strGridFile;
    if (!ReadBodyCellList(run.strGridFile, run.vecBlocked))
        throw InspectError(run.strGridFile + ": no body-cell list at the end of the grid file");
    if (run.vecBlocked.empty() && !strSolverInput.empty()) {
        const std::string strSolver = fs::path(strSolverInput).is_absolute()
                                          ? strSolverInput
                                          : strRunDir + "/" + strSolverInput;
        if (IsFile(strSolver) && ReadBodyCellList(strSolver, run.vecBlocked))
            run.strBlockedSource = strSolver;
    }
    for (const FEL_vector3<int>& v3i : run.vecBlocked)
        if (v3i.x < 1 || v3i.y < 1 || v3i.z < 1 || v3i.x > run.Cells(0) || v3i.y > run.Cells(1) ||
            v3i.z > run.Cells(2))
            throw InspectError(run.strBlockedSource + ": body cell " + std::to_string(v3i.x) +
                               ", " + std::to_string(v3i.y) + ", " + std::to_string(v3i.z) +
                               " lies outside the grid");

    // No translation file means no transformation at all, as in the run, which also places the
    // bodies below.
    std::ifstream ifsShift(strRunDir + "/Lcl2Gbl.dat");
    if (!(ifsShift >> run.v3fTranslation.x >> run.v3fTranslation.y >> run.v3fTranslation.z))
        run.v3fTranslation = FEL_vector3<float>(0, 0, 0);

    run.vecRotors = ReadRotors(strProject, run.v3fConversion, run.v3fTranslation);
    for (_BodyStruct& body : vecBodies) {
        InspectBody inspectBody;
        const bool blnCut = body.eBodyType <= BODY_ZCUT;
        inspectBody.strFile = blnCut ? body.strCutFile : BodyFile(body.strPointsFile, strProject);
        if (!IsFile(inspectBody.strFile))
            throw InspectError(inspectBody.strFile + ": body file missing");
        try {
            if (blnCut) {
                body.pMesh = MeshOfCutFile(inspectBody.strFile);
            } else {
                std::vector<_BodyStruct> vecOne(1, body);
                vecOne[0].strPointsFile = inspectBody.strFile;
                ReadBodies(vecOne);
                body.pMesh = vecOne[0].pMesh;
            }
        } catch (const FEL_exception& e) {
            throw InspectError(inspectBody.strFile + ": unreadable body file (" + e.what() + ")");
        }
        if (body.pMesh.null()) throw InspectError(inspectBody.strFile + ": unreadable body file");
        std::vector<_BodyStruct> vecPlaced(1, body);
        TranslateToGlobal(driver, vecPlaced, run.v3fConversion);
        inspectBody.surface = SurfaceOfMesh(*body.pMesh, *vecPlaced[0].pMesh);
        inspectBody.body = body;
        run.vecBodies.push_back(std::move(inspectBody));
    }
    return run;
}
