// Leak check: winding numbers of the unblocked cells in an open body's box, and the fill's way in.
#include "LeakCheck.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numeric>
#include <thread>
#include <unordered_map>

#include "WindingNumber.h"

namespace {

using V3 = std::array<double, 3>;
using Cell = std::array<int, 3>;

// Corner cells that all lie this far from 1/2 settle a triangle-free block: the winding number
// has no extremum away from the surface, and a block that a hole's rim does not enter varies
// far less than this across it.
const double s_dblClearMargin = 0.25;
const long s_intSmallBlock = 8;  // cells: evaluated one by one
const size_t s_intHoleEdges = 4;

struct CellBlock {
    Cell lo, hi;  // half-open
    long Size() const {
        return static_cast<long>(hi[0] - lo[0]) * (hi[1] - lo[1]) * (hi[2] - lo[2]);
    }
};

class InsideFinder {
  public:
    InsideFinder(const InspectRun& run, const WindingNumber& wn,
                 const std::vector<char>& vecBlocked, std::vector<char>& vecInside)
        : m_run(run), m_wn(wn), m_vecBlocked(vecBlocked), m_vecInside(vecInside) {}

    V3 Centre(const Cell& c) const {
        V3 v;
        for (int a = 0; a < 3; ++a)
            v[a] = 0.5 * (double(m_run.vecAxes[a][c[a]]) + m_run.vecAxes[a][c[a] + 1]);
        return v;
    }
    size_t Index(const Cell& c) const {
        return (static_cast<size_t>(c[2]) * m_run.Cells(1) + c[1]) * m_run.Cells(0) + c[0];
    }
    // The winding number of a cell's centre, its sign dropped: a surface whose triangles all face
    // inwards holds -1 inside.
    double Inside(const Cell& c) const { return std::fabs(m_wn.At(Centre(c))); }
    void EachCell(const CellBlock& b, bool blnInside, bool blnEvaluate) {
        for (Cell c = b.lo; c[2] < b.hi[2]; ++c[2])
            for (c[1] = b.lo[1]; c[1] < b.hi[1]; ++c[1])
                for (c[0] = b.lo[0]; c[0] < b.hi[0]; ++c[0]) {
                    const size_t n = Index(c);
                    if (m_vecBlocked[n]) continue;
                    m_vecInside[n] = blnEvaluate ? Inside(c) >= 0.5 : blnInside;
                }
    }
    // Settles a block whole when no triangle meets it and its eight corner cells agree clearly.
    bool SettledWhole(const CellBlock& b) {
        V3 lo, hi;
        for (int a = 0; a < 3; ++a) {
            lo[a] = m_run.vecAxes[a][b.lo[a]];
            hi[a] = m_run.vecAxes[a][b.hi[a]];
        }
        if (m_wn.Touches(lo, hi)) return false;
        int intIn = 0, intOut = 0;
        for (int corner = 0; corner < 8; ++corner) {
            Cell c;
            for (int a = 0; a < 3; ++a) c[a] = (corner >> a & 1) ? b.hi[a] - 1 : b.lo[a];
            const double w = Inside(c);
            intIn += w >= 0.5 + s_dblClearMargin;
            intOut += w <= 0.5 - s_dblClearMargin;
        }
        if (intIn != 8 && intOut != 8) return false;
        EachCell(b, intIn == 8, false);
        return true;
    }
    void Visit(const CellBlock& b) {
        if (b.Size() == 0) return;
        if (b.Size() <= s_intSmallBlock) return EachCell(b, false, true);
        if (SettledWhole(b)) return;
        for (const CellBlock& half : Halves(b)) Visit(half);
    }
    static std::array<CellBlock, 2> Halves(const CellBlock& b) {
        int intAxis = 0;
        for (int a = 1; a < 3; ++a)
            if (b.hi[a] - b.lo[a] > b.hi[intAxis] - b.lo[intAxis]) intAxis = a;
        std::array<CellBlock, 2> halves = {b, b};
        halves[0].hi[intAxis] = halves[1].lo[intAxis] = (b.lo[intAxis] + b.hi[intAxis]) / 2;
        return halves;
    }

  private:
    const InspectRun& m_run;
    const WindingNumber& m_wn;
    const std::vector<char>& m_vecBlocked;
    std::vector<char>& m_vecInside;
};

// The cells that the box of a surface's points covers, clipped to the grid.
CellBlock BoxCells(const InspectRun& run, const InspectSurface& surface) {
    CellBlock b{{0, 0, 0}, {0, 0, 0}};
    if (surface.vecPoints.empty()) return b;
    for (int a = 0; a < 3; ++a) {
        float lo = surface.vecPoints[0][a], hi = lo;
        for (const FEL_vector3<float>& v : surface.vecPoints) {
            lo = std::min(lo, v[a]);
            hi = std::max(hi, v[a]);
        }
        const std::vector<float>& axis = run.vecAxes[a];
        if (hi < axis.front() || lo > axis.back()) return CellBlock{{0, 0, 0}, {0, 0, 0}};
        b.lo[a] = CellOfCoordinate(axis, std::max<double>(lo, axis.front()));
        b.hi[a] = CellOfCoordinate(axis, std::min<double>(hi, axis.back()), true) + 1;
    }
    return b;
}

InspectSurface KeptSurface(const InspectSurface& surface) {
    InspectSurface kept;
    kept.vecPoints = surface.vecPoints;
    for (size_t t = 0; t < surface.vecTriangles.size(); ++t)
        if (surface.vecKept[t]) kept.vecTriangles.push_back(surface.vecTriangles[t]);
    return kept;
}

// Breadth first from every unblocked cell of the grid's boundary; the chain to the first leaked
// cell reached, boundary first. Empty when no leaked cell is reachable.
std::vector<Cell> LeakPath(const InspectRun& run, const std::vector<char>& vecBlocked,
                           const std::vector<char>& vecLeaked) {
    const int n0 = run.Cells(0), n1 = run.Cells(1), n2 = run.Cells(2);
    const long intStride[3] = {1, n0, static_cast<long>(n0) * n1};
    std::vector<int> vecFrom(vecBlocked.size(), -2);  // -2 unvisited, -1 a start
    std::vector<long> vecQueue;
    for (int k = 0; k < n2; ++k)
        for (int j = 0; j < n1; ++j)
            for (int i = 0; i < n0; ++i) {
                const long n = (static_cast<long>(k) * n1 + j) * n0 + i;
                const bool blnEdge =
                    i == 0 || j == 0 || k == 0 || i == n0 - 1 || j == n1 - 1 || k == n2 - 1;
                if (blnEdge && !vecBlocked[n]) {
                    vecFrom[n] = -1;
                    vecQueue.push_back(n);
                }
            }
    for (size_t q = 0; q < vecQueue.size(); ++q) {
        long n = vecQueue[q];
        if (vecLeaked[n]) {
            std::vector<Cell> vecPath;
            for (; n >= 0; n = vecFrom[n])
                vecPath.push_back({int(n % n0), int(n / n0 % n1), int(n / (long(n0) * n1))});
            std::reverse(vecPath.begin(), vecPath.end());
            return vecPath;
        }
        const Cell c = {int(n % n0), int(n / n0 % n1), int(n / (long(n0) * n1))};
        const int intCells[3] = {n0, n1, n2};
        for (int a = 0; a < 3; ++a)
            for (int s : {-1, 1}) {
                if (c[a] + s < 0 || c[a] + s >= intCells[a]) continue;
                const long m = n + s * intStride[a];
                if (vecBlocked[m] || vecFrom[m] != -2) continue;
                vecFrom[m] = static_cast<int>(n);
                vecQueue.push_back(m);
            }
    }
    return {};
}

double SegmentDistance2(const V3& p, const V3& a, const V3& b) {
    V3 ab, ap;
    double dblLen2 = 0, dblDot = 0;
    for (int i = 0; i < 3; ++i) {
        ab[i] = b[i] - a[i];
        ap[i] = p[i] - a[i];
        dblLen2 += ab[i] * ab[i];
        dblDot += ab[i] * ap[i];
    }
    const double t = dblLen2 > 0 ? std::clamp(dblDot / dblLen2, 0.0, 1.0) : 0.0;
    double d2 = 0;
    for (int i = 0; i < 3; ++i) d2 += (ap[i] - t * ab[i]) * (ap[i] - t * ab[i]);
    return d2;
}

// The open edges nearest to where the path's last step enters the body.
std::vector<std::array<int, 2>> HoleEdges(const InspectRun& run, const InspectSurface& surface,
                                          const SurfaceTopology& topo,
                                          const std::vector<Cell>& vecPath) {
    V3 p = {0, 0, 0};
    const size_t intFrom = vecPath.size() >= 2 ? vecPath.size() - 2 : 0;
    for (size_t s = intFrom; s < vecPath.size(); ++s)
        for (int a = 0; a < 3; ++a)
            p[a] += 0.5 *
                    (double(run.vecAxes[a][vecPath[s][a]]) + run.vecAxes[a][vecPath[s][a] + 1]) /
                    double(vecPath.size() - intFrom);
    std::vector<std::pair<double, size_t>> vecNear;
    for (size_t e = 0; e < topo.vecOpenEdges.size(); ++e) {
        const FEL_vector3<float>& a = surface.vecPoints[topo.vecOpenEdges[e][0]];
        const FEL_vector3<float>& b = surface.vecPoints[topo.vecOpenEdges[e][1]];
        vecNear.emplace_back(SegmentDistance2(p, {a.x, a.y, a.z}, {b.x, b.y, b.z}), e);
    }
    const size_t intCount = std::min(s_intHoleEdges, vecNear.size());
    std::partial_sort(vecNear.begin(), vecNear.begin() + intCount, vecNear.end());
    std::vector<std::array<int, 2>> vecEdges;
    for (size_t n = 0; n < intCount; ++n) vecEdges.push_back(topo.vecOpenEdges[vecNear[n].second]);
    return vecEdges;
}

int FindRoot(std::vector<int>& vecParent, int n) {
    while (vecParent[n] != n) n = vecParent[n] = vecParent[vecParent[n]];
    return n;
}

}  // namespace

SurfaceTopology TopologyOfSurface(const InspectSurface& surface) {
    SurfaceTopology topo;
    struct EdgeUse {
        int intCount;
        int intFirstTriangle;
        size_t intOrder;
    };
    std::unordered_map<unsigned long long, EdgeUse> mapEdges;
    mapEdges.reserve(surface.vecTriangles.size() * 2);
    std::vector<int> vecParent(surface.vecTriangles.size());
    std::iota(vecParent.begin(), vecParent.end(), 0);
    for (size_t t = 0; t < surface.vecTriangles.size(); ++t) {
        const auto& tri = surface.vecTriangles[t];
        for (int e = 0; e < 3; ++e) {
            const unsigned a = static_cast<unsigned>(std::min(tri[e], tri[(e + 1) % 3]));
            const unsigned b = static_cast<unsigned>(std::max(tri[e], tri[(e + 1) % 3]));
            const auto result = mapEdges.emplace((static_cast<unsigned long long>(a) << 32) | b,
                                                 EdgeUse{0, static_cast<int>(t), mapEdges.size()});
            ++result.first->second.intCount;
            if (!result.second)
                vecParent[FindRoot(vecParent, static_cast<int>(t))] =
                    FindRoot(vecParent, result.first->second.intFirstTriangle);
        }
    }
    std::vector<std::pair<size_t, unsigned long long>> vecOpen;
    for (const auto& entry : mapEdges) {
        if (entry.second.intCount == 1) vecOpen.emplace_back(entry.second.intOrder, entry.first);
        if (entry.second.intCount > 2) ++topo.intNonManifoldEdges;
    }
    topo.intOpenEdges = static_cast<long>(vecOpen.size());
    std::sort(vecOpen.begin(), vecOpen.end());
    for (const auto& open : vecOpen)
        topo.vecOpenEdges.push_back(
            {static_cast<int>(open.second >> 32), static_cast<int>(open.second & 0xffffffffu)});
    for (size_t t = 0; t < vecParent.size(); ++t)
        if (FindRoot(vecParent, static_cast<int>(t)) == static_cast<int>(t)) ++topo.intParts;
    return topo;
}

std::vector<char> BlockedFlags(const InspectRun& run) {
    std::vector<char> vecBlocked(static_cast<size_t>(run.Cells(0)) * run.Cells(1) * run.Cells(2));
    for (const FEL_vector3<int>& v3i : run.vecBlocked)
        vecBlocked[((static_cast<size_t>(v3i.z) - 1) * run.Cells(1) + (v3i.y - 1)) * run.Cells(0) +
                   (v3i.x - 1)] = 1;
    return vecBlocked;
}

std::vector<Cell> LeakedCells(const InspectRun& run, const InspectSurface& surface,
                              const std::vector<char>& vecBlocked, bool blnEveryCell) {
    const InspectSurface kept = KeptSurface(surface);
    const WindingNumber wn(kept.vecPoints, kept.vecTriangles);
    std::vector<char> vecInside(vecBlocked.size());
    InsideFinder finder(run, wn, vecBlocked, vecInside);
    // Blocks of the box shared out to two threads; each cell is written by one thread only.
    std::vector<CellBlock> vecBlocks = {BoxCells(run, kept)};
    while (!blnEveryCell && vecBlocks.size() < 64 && vecBlocks.front().Size() > 4096) {
        std::vector<CellBlock> vecHalves;
        for (const CellBlock& b : vecBlocks)
            for (const CellBlock& half : InsideFinder::Halves(b)) vecHalves.push_back(half);
        vecBlocks.swap(vecHalves);
    }
    std::atomic<size_t> next{0};
    auto work = [&] {
        for (size_t b; (b = next++) < vecBlocks.size();) {
            if (blnEveryCell)
                finder.EachCell(vecBlocks[b], false, true);
            else
                finder.Visit(vecBlocks[b]);
        }
    };
    std::thread helper(work);
    work();
    helper.join();
    std::vector<Cell> vecLeaked;
    const CellBlock box = BoxCells(run, kept);
    for (Cell c = box.lo; c[2] < box.hi[2]; ++c[2])
        for (c[1] = box.lo[1]; c[1] < box.hi[1]; ++c[1])
            for (c[0] = box.lo[0]; c[0] < box.hi[0]; ++c[0])
                if (vecInside[finder.Index(c)]) vecLeaked.push_back(c);
    return vecLeaked;
}

std::vector<BodyLeak> CheckLeaks(const InspectRun& run) {
    const std::vector<char> vecBlocked = BlockedFlags(run);
    std::vector<BodyLeak> vecLeaks;
    for (const InspectBody& body : run.vecBodies) {
        BodyLeak leak;
        const InspectSurface kept = KeptSurface(body.surface);
        leak.intDropped =
            static_cast<long>(body.surface.vecTriangles.size() - kept.vecTriangles.size());
        leak.topoRun = TopologyOfSurface(kept);
        if (!body.body.blnUsedInSolver) {
            leak.eStatus = BodyStatus::Unused;
        } else if (kept.vecTriangles.empty()) {
            leak.eStatus = BodyStatus::Vanished;
        } else if (leak.topoRun.intOpenEdges > 0) {
            leak.vecLeaked = LeakedCells(run, body.surface, vecBlocked);
            leak.eStatus = leak.vecLeaked.empty() ? BodyStatus::Sealed : BodyStatus::Leaked;
        }
        if (leak.eStatus == BodyStatus::Leaked) {
            std::vector<char> vecLeakedFlags(vecBlocked.size());
            for (const Cell& c : leak.vecLeaked)
                vecLeakedFlags[(static_cast<size_t>(c[2]) * run.Cells(1) + c[1]) * run.Cells(0) +
                               c[0]] = 1;
            leak.vecPath = LeakPath(run, vecBlocked, vecLeakedFlags);
            leak.vecHoleEdges = HoleEdges(run, kept, leak.topoRun, leak.vecPath);
        }
        vecLeaks.push_back(std::move(leak));
    }
    return vecLeaks;
}

std::string StatusText(const BodyLeak& leak) {
    switch (leak.eStatus) {
        case BodyStatus::Closed:
            return "closed";
        case BodyStatus::Sealed:
            return "open, sealed";
        case BodyStatus::Leaked:
            return "open, leaked (" + std::to_string(leak.vecLeaked.size()) + " cells)";
        case BodyStatus::Vanished:
            return "vanished";
        case BodyStatus::Unused:
            break;
    }
    return "not used in the solver";
}
