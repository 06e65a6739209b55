// The witness search. Each search cell's triangles are taken in list order and tried only on the
// grid cells their widened box overlaps; a cell keeps the first one that touches it per search
// cell, which is what the linear search in list order finds.
#include "intersector/Witness.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "intersector/Parallel.h"
#include "intersector/TriangleBox.h"

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
    std::vector<double> corners[3];
    for (int a = 0; a < 3; ++a) corners[a].assign(cells.Axis(a).begin(), cells.Axis(a).end());

    const int pieces = std::min(n[0], 8 * std::max(1, threads));
    std::vector<std::vector<std::pair<std::uint32_t, Triangle*>>> found(pieces);

    RunPieces(pieces, threads, [&](int piece) {
        const int i0 = int(std::int64_t(n[0]) * piece / pieces);
        const int i1 = int(std::int64_t(n[0]) * (piece + 1) / pieces);
        if (i0 >= i1) return;
        CellLocator locate(corners[0].data(), n[0] + 1, corners[1].data(), n[1] + 1,
                           corners[2].data(), n[2] + 1);
        std::vector<std::pair<std::uint32_t, Triangle*>>& out = found[piece];
        // Per cell of the search cell's box: 0 not yet looked at, 1 may still take a witness
        // from it, 2 has one, 3 doesn't consult it.
        std::vector<std::uint8_t> mark;
        for (const SearchGrid& g : grids)
            for (int a = 0; a < g.m_aintCount[0]; ++a)
                for (int b = 0; b < g.m_aintCount[1]; ++b)
                    for (int c = 0; c < g.m_aintCount[2]; ++c) {
                        const std::vector<Triangle*>& list = g.m_vecLists[g.Linear(a, b, c)];
                        if (list.empty()) continue;
                        SearchCellView s{&g, {a, b, c}, g.CellMin(a, b, c), g.CellMax(a, b, c)};
                        // The cells that can overlap the search cell, with a margin far wider
                        // than the slack of CubesIntersect, FEL_Close included.
                        IndexRange box[3];
                        bool none = false;
                        for (int x = 0; x < 3; ++x) {
                            double lo = s.m_v3fMin[x], hi = s.m_v3fMax[x];
                            double tol = 1e-3 * (1.0 + std::fabs(lo) + std::fabs(hi));
                            box[x] = locate.Span(x, lo - tol, hi + tol);
                            if (x == 0)
                                box[0] = {std::max(box[0].m_intFirst, i0),
                                          std::min(box[0].m_intLast, i1 - 1)};
                            none = none || box[x].m_intFirst > box[x].m_intLast;
                        }
                        if (none) continue;
                        const int nj = box[1].m_intLast - box[1].m_intFirst + 1;
                        const int nk = box[2].m_intLast - box[2].m_intFirst + 1;
                        mark.assign(std::size_t(box[0].m_intLast - box[0].m_intFirst + 1) * nj * nk,
                                    0);
                        for (Triangle* t : list) {
                            IndexRange r[3];
                            if (!locate.Ranges(*t, r)) continue;
                            for (int x = 0; x < 3; ++x) {
                                r[x].m_intFirst = std::max(r[x].m_intFirst, box[x].m_intFirst);
                                r[x].m_intLast = std::min(r[x].m_intLast, box[x].m_intLast);
                            }
                            for (int i = r[0].m_intFirst; i <= r[0].m_intLast; ++i)
                                for (int j = r[1].m_intFirst; j <= r[1].m_intLast; ++j)
                                    for (int k = r[2].m_intFirst; k <= r[2].m_intLast; ++k) {
                                        std::uint8_t& st =
                                            mark[(std::size_t(i - box[0].m_intFirst) * nj +
                                                  std::size_t(j - box[1].m_intFirst)) *
                                                     nk +
                                                 std::size_t(k - box[2].m_intFirst)];
                                        if (st == 0)
                                            st = s.Consults(cells.CellMin(i, j, k),
                                                            cells.CellMax(i, j, k))
                                                     ? 1
                                                     : 3;
                                        if (st != 1) continue;
                                        FEL_vector3<double> lo(cells.CellMin(i, j, k));
                                        FEL_vector3<double> hi(cells.CellMax(i, j, k));
                                        if (t->PartialBoundingBoxTest(&lo.x, &hi.x)) {
                                            out.emplace_back(std::uint32_t(cells.Linear(i, j, k)),
                                                             t);
                                            st = 2;
                                        }
                                    }
                        }
                    }
        std::stable_sort(out.begin(), out.end(),
                         [](const auto& x, const auto& y) { return x.first < y.first; });
    });

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
