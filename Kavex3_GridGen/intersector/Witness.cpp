// The witness search. Each search cell's triangles are taken in list order and tried only on the
// grid cells their widened box overlaps; a cell keeps the first one that touches it per search
// cell, which is what the linear search in list order finds.
#include "intersector/Witness.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>

#include "intersector/Parallel.h"
#include "intersector/TriangleBox.h"
#include "intersector/ZeroedMemory.h"

namespace {
int Truncate(double x) {
    return int(std::max(-1e9, std::min(1e9, x)));
}

// Relevance of a search cell to grid cells, from the corners as stored in single precision.
struct SearchCellView {
    const SearchGrid* m_pGrid;
    int m_aintIndex[3];
    FEL_vector3<float> m_v3fMin, m_v3fMax;

    bool Consults(const FEL_vector3<float>& cmin, const FEL_vector3<float>& cmax) const {
        int lo[3], hi[3];
        if (!SearchRange(*m_pGrid, cmin, cmax, lo, hi)) return false;
        for (int a = 0; a < 3; ++a)
            if (m_aintIndex[a] < lo[a] || m_aintIndex[a] >= hi[a]) return false;
        return CubesIntersect(&cmin.x, &cmax.x, &m_v3fMin.x, &m_v3fMax.x);
    }
};
}  // namespace

bool SearchRange(const SearchGrid& grid, const FEL_vector3<float>& cellMin,
                 const FEL_vector3<float>& cellMax, int lo[3], int hi[3]) {
    const int* n = grid.m_aintCount;
    FEL_vector3<float> gMin = grid.CellMin(0, 0, 0);
    FEL_vector3<float> gMax = grid.CellMax(n[0] - 1, n[1] - 1, n[2] - 1);
    if (!CubesIntersect(&cellMin.x, &cellMax.x, &gMin.x, &gMax.x)) return false;
    FEL_vector3<float> w = grid.CellMax(0, 0, 0) - gMin;
    for (int a = 0; a < 3; ++a) {
        // The differences and quotients in single precision, as the corners are stored.
        lo[a] = std::max(0, Truncate(double((cellMin[a] - gMin[a]) / w[a]) - 1.0));
        hi[a] = std::min(n[a], Truncate(double((cellMax[a] - gMin[a]) / w[a]) + 1.0));
    }
    return true;
}

void CellWitnesses(const std::vector<SearchGrid>& grids, const FEL_vector3<float>& cellMin,
                   const FEL_vector3<float>& cellMax, std::vector<Triangle*>& out) {
    FEL_vector3<double> dmin(cellMin), dmax(cellMax);
    for (const SearchGrid& g : grids) {
        int lo[3], hi[3];
        if (!SearchRange(g, cellMin, cellMax, lo, hi)) continue;
        for (int a = lo[0]; a < hi[0]; ++a)
            for (int b = lo[1]; b < hi[1]; ++b)
                for (int c = lo[2]; c < hi[2]; ++c) {
                    FEL_vector3<float> smin = g.CellMin(a, b, c), smax = g.CellMax(a, b, c);
                    const std::vector<Triangle*>& list = g.m_vecLists[g.Linear(a, b, c)];
                    if (!CubesIntersect(&cellMin.x, &cellMax.x, &smin.x, &smax.x) || list.empty())
                        continue;
                    for (Triangle* t : list)
                        if (t->PartialBoundingBoxTest(&dmin.x, &dmax.x)) {
                            out.push_back(t);
                            break;
                        }
                }
    }
}

void FindAllWitnesses(GridCellArray& cells, const std::vector<SearchGrid>& grids, int threads) {
    const int n[3] = {cells.Count(0), cells.Count(1), cells.Count(2)};
    if (std::size_t(n[0]) * n[1] * n[2] == 0) return;
    std::size_t searchCells = 0;
    for (const SearchGrid& g : grids) searchCells += g.m_vecLists.size();
    if (searchCells >= (std::size_t(1) << 30)) throw std::length_error("Too many body zones.");
    std::vector<double> corners[3];
    for (int a = 0; a < 3; ++a) corners[a].assign(cells.Axis(a).begin(), cells.Axis(a).end());

    // Per cell: the number of the search cell last looked at, times 4, plus 1 while it may still
    // take a witness from it, 2 once it has, 3 when it doesn't consult it.
    // Only the pages of cells near the surface are ever touched.
    const std::size_t stampBytes = cells.Size() * sizeof(std::uint32_t);
    std::unique_ptr<std::uint32_t, std::function<void(std::uint32_t*)>> stampHold(
        static_cast<std::uint32_t*>(AllocateZeroed(stampBytes)),
        [stampBytes](std::uint32_t* p) { FreeZeroed(p, stampBytes); });
    std::uint32_t* stamp = stampHold.get();
    const int pieces = std::min(n[0], 8 * std::max(1, threads == 0 ? 8 : threads));
    std::vector<std::vector<std::pair<std::uint32_t, Triangle*>>> found(pieces);

    RunPieces(pieces, threads, [&](int piece) {
        const int i0 = int(std::int64_t(n[0]) * piece / pieces);
        const int i1 = int(std::int64_t(n[0]) * (piece + 1) / pieces);
        if (i0 >= i1) return;
        const double x0 = corners[0][i0], x1 = corners[0][i1];
        CellLocator locate(corners[0].data(), n[0] + 1, corners[1].data(), n[1] + 1,
                           corners[2].data(), n[2] + 1);
        std::vector<std::pair<std::uint32_t, Triangle*>>& out = found[piece];
        std::uint32_t serial = 0;
        for (const SearchGrid& g : grids)
            for (int a = 0; a < g.m_aintCount[0]; ++a)
                for (int b = 0; b < g.m_aintCount[1]; ++b)
                    for (int c = 0; c < g.m_aintCount[2]; ++c) {
                        ++serial;
                        const std::vector<Triangle*>& list = g.m_vecLists[g.Linear(a, b, c)];
                        if (list.empty()) continue;
                        SearchCellView s{&g, {a, b, c}, g.CellMin(a, b, c), g.CellMax(a, b, c)};
                        // Far wider than the slack of CubesIntersect, FEL_Close included.
                        double tol = 1e-3 * (1.0 + std::fabs(double(s.m_v3fMin.x)) +
                                             std::fabs(double(s.m_v3fMax.x)));
                        if (double(s.m_v3fMax.x) + tol < x0 || double(s.m_v3fMin.x) - tol > x1)
                            continue;
                        for (Triangle* t : list) {
                            IndexRange r[3];
                            if (!locate.Ranges(*t, r)) continue;
                            int ia = std::max(r[0].m_intFirst, i0);
                            int ib = std::min(r[0].m_intLast, i1 - 1);
                            for (int i = ia; i <= ib; ++i)
                                for (int j = r[1].m_intFirst; j <= r[1].m_intLast; ++j)
                                    for (int k = r[2].m_intFirst; k <= r[2].m_intLast; ++k) {
                                        std::size_t id = cells.Linear(i, j, k);
                                        std::uint32_t st = stamp[id];
                                        if ((st >> 2) != serial) {
                                            bool use = s.Consults(cells.CellMin(i, j, k),
                                                                  cells.CellMax(i, j, k));
                                            st = (serial << 2) | (use ? 1u : 3u);
                                        }
                                        if ((st & 3u) == 1u) {
                                            FEL_vector3<double> lo(cells.CellMin(i, j, k));
                                            FEL_vector3<double> hi(cells.CellMax(i, j, k));
                                            if (t->PartialBoundingBoxTest(&lo.x, &hi.x)) {
                                                out.emplace_back(std::uint32_t(id), t);
                                                st = (serial << 2) | 2u;
                                            }
                                        }
                                        stamp[id] = st;
                                    }
                        }
                    }
        std::stable_sort(out.begin(), out.end(),
                         [](const auto& x, const auto& y) { return x.first < y.first; });
    });
    stampHold.reset();

    std::size_t total = 0;
    for (const auto& f : found) total += f.size();
    std::vector<std::uint32_t> ids, starts;
    std::vector<Triangle*> entries;
    entries.reserve(total);
    for (auto& f : found) {
        for (const auto& p : f) {
            if (ids.empty() || ids.back() != p.first) {
                ids.push_back(p.first);
                starts.push_back(std::uint32_t(entries.size()));
            }
            entries.push_back(p.second);
        }
        f = {};
    }
    cells.SetLists(ids, starts, std::move(entries));
}
