// Body report: each placed body as the run used it, where it stands in the grid, and its leak.
#include "BodyReport.h"

#include <algorithm>

namespace {

const size_t s_intEdgesListed = 10;

// The cell holding a coordinate, which is first moved into the grid's extent.
int ClampedCell(const std::vector<float>& vecAxis, double dbl, bool blnUpper = false) {
    return CellOfCoordinate(vecAxis, std::clamp<double>(dbl, vecAxis.front(), vecAxis.back()),
                            blnUpper);
}

std::string Point(const FEL_vector3<float>& v3f) {
    char buf[96];
    std::snprintf(buf, sizeof buf, "(%g, %g, %g)", v3f.x, v3f.y, v3f.z);
    return buf;
}

// "(I, J, K)" of the cell holding a point, 1-based; "outside the grid" beyond its corners.
std::string CellOf(const InspectRun& run, const FEL_vector3<float>& v3f) {
    std::string str = "(";
    for (int a = 0; a < 3; ++a) {
        const std::vector<float>& vecAxis = run.vecAxes[a];
        if (v3f[a] < vecAxis.front() || v3f[a] > vecAxis.back()) return "outside the grid";
        str += std::to_string(ClampedCell(vecAxis, v3f[a]) + 1) + (a < 2 ? ", " : ")");
    }
    return str;
}

std::string Cells(const std::vector<std::array<int, 3>>& vecCells) {
    std::string str;
    for (size_t n = 0; n < vecCells.size(); ++n)
        str += (n % 8 == 0 ? "\n      " : " ") + std::string("(") +
               std::to_string(vecCells[n][0] + 1) + ", " + std::to_string(vecCells[n][1] + 1) +
               ", " + std::to_string(vecCells[n][2] + 1) + ")";
    return str;
}

void WriteEdges(const InspectRun& run, const InspectSurface& surface,
                const std::vector<std::array<int, 2>>& vecEdges, std::ostream& os) {
    for (const auto& edge : vecEdges) {
        const FEL_vector3<float>& p = surface.vecPoints[edge[0]];
        const FEL_vector3<float>& q = surface.vecPoints[edge[1]];
        const std::string strCellP = CellOf(run, p), strCellQ = CellOf(run, q);
        os << "    " << Point(p) << " - " << Point(q) << "  cell " << strCellP;
        if (strCellQ != strCellP) os << " and " << strCellQ;
        os << "\n";
    }
}

// The body's box and the cells it covers.
void WriteBox(const InspectRun& run, const InspectSurface& surface, std::ostream& os) {
    if (surface.vecPoints.empty()) return;
    FEL_vector3<float> v3fMin = surface.vecPoints[0], v3fMax = surface.vecPoints[0];
    for (const FEL_vector3<float>& v3f : surface.vecPoints)
        for (int a = 0; a < 3; ++a) {
            v3fMin[a] = std::min(v3fMin[a], v3f[a]);
            v3fMax[a] = std::max(v3fMax[a], v3f[a]);
        }
    os << "  box " << Point(v3fMin) << " to " << Point(v3fMax);
    bool blnInside = true;
    for (int a = 0; a < 3; ++a)
        blnInside =
            blnInside && v3fMax[a] >= run.vecAxes[a].front() && v3fMin[a] <= run.vecAxes[a].back();
    if (!blnInside) {
        os << ", outside the grid: it blocks no cell\n";
        return;
    }
    os << "\n  its box covers cells";
    for (int a = 0; a < 3; ++a)
        os << " "
           << "IJK"[a] << " " << ClampedCell(run.vecAxes[a], v3fMin[a]) + 1 << "-"
           << ClampedCell(run.vecAxes[a], v3fMax[a], true) + 1;
    os << "\n";
}

// What the run made of an open body: dropped triangles, leaked cells, the way in, the hole.
void WriteLeak(const InspectRun& run, const InspectSurface& surface, const BodyLeak& leak,
               std::ostream& os) {
    if (leak.intDropped > 0)
        os << "  The run dropped " << leak.intDropped
           << " triangles: their corners are equal under the coordinate tolerance in the grid's "
              "frame (the body is finer than that tolerance allows where it stands).\n";
    if (leak.eStatus == BodyStatus::Vanished)
        os << "  WARNING: the run kept none of its triangles: it blocks no cell.\n";
    if (leak.eStatus == BodyStatus::Sealed) {
        os << "  The fill did not get inside: no unblocked cell lies inside it. First open "
              "edges:\n";
        const auto& vecOpen = leak.topoRun.vecOpenEdges;
        WriteEdges(run, surface,
                   {vecOpen.begin(), vecOpen.begin() + std::min(s_intEdgesListed, vecOpen.size())},
                   os);
    }
    if (leak.eStatus != BodyStatus::Leaked) return;
    os << "  WARNING: the fill of the exterior got inside this body: " << leak.vecLeaked.size()
       << " cells inside it are not blocked, and the solver sees a hollow shell.\n";
    if (leak.vecPath.empty()) return;
    const auto& last = leak.vecPath.back();
    const auto& before = leak.vecPath[leak.vecPath.size() >= 2 ? leak.vecPath.size() - 2 : 0];
    os << "  Leak path, " << leak.vecPath.size()
       << " unblocked cells from the grid's boundary to the first leaked cell (I, J, K):"
       << Cells(leak.vecPath) << "\n  It enters the body from cell " << Cells({before}).substr(7)
       << " into cell " << Cells({last}).substr(7)
       << ". The open edges next to it (the hole to mend), and the cells holding their ends:\n";
    WriteEdges(run, surface, leak.vecHoleEdges, os);
}

}  // namespace

void WriteBodyReport(const InspectRun& run, const std::vector<BodyLeak>& vecLeaks,
                     std::ostream& osReport, std::ostream& osSummary) {
    osReport << "Body report of " << run.strRunDir << "\n"
             << "Grid: " << run.Cells(0) << " x " << run.Cells(1) << " x " << run.Cells(2)
             << " cells, " << run.vecBlocked.size() << " blocked (listed in "
             << run.strBlockedSource << ")\n"
             << "Bodies are placed as the run placed them: scaled by (" << run.v3fConversion.x
             << ", " << run.v3fConversion.y << ", " << run.v3fConversion.z << "), then moved by "
             << Point(run.v3fTranslation) << ".\n";
    static const char* const s_szKind[] = {"cut planes", "cut planes", "cut planes", "STL",
                                           "Plot3D"};
    for (size_t b = 0; b < run.vecBodies.size(); ++b) {
        const InspectBody& body = run.vecBodies[b];
        const InspectSurface& surface = body.surface;
        const BodyLeak& leak = vecLeaks[b];
        const SurfaceTopology topo = TopologyOfSurface(surface);
        std::string strRun = StatusText(leak);
        if (leak.intDropped > 0)
            strRun = std::to_string(leak.intDropped) + " triangles dropped, " + strRun;
        osReport << "\nBody " << b + 1 << ": " << body.strFile << " ("
                 << s_szKind[std::min<unsigned>(body.body.eBodyType, BODY_PLOT3D)]
                 << (body.body.blnUsedInSolver ? ", used in solver" : ", not used in solver")
                 << ")\n  " << surface.vecTriangles.size() << " triangles, "
                 << surface.vecPoints.size() << " vertices, " << topo.intParts << " part(s)\n  "
                 << topo.intOpenEdges << " open edges, " << topo.intNonManifoldEdges
                 << " non-manifold edges in the file\n  as the run used it: "
                 << leak.topoRun.intOpenEdges << " open edges, " << strRun << "\n";
        osSummary << "body " << b + 1 << " " << body.strFile << ": " << surface.vecTriangles.size()
                  << " triangles, " << topo.intOpenEdges << " open edges, "
                  << topo.intNonManifoldEdges << " non-manifold edges: " << strRun << "\n";
        WriteBox(run, surface, osReport);
        WriteLeak(run, surface, leak, osReport);
    }
}
