// The witness search. Each search cell's triangles are taken in list order and tried only on the
// grid cells their widened box overlaps; a cell keeps the first one that touches it per search
// cell, which is what the linear search in list order finds.
#include "intersector/Witness.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

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
// What a grid cell is to the search cell at hand.
enum class Consulting : std::uint8_t {
    NOT_YET_ASKED,  // no triangle has reached the cell yet
    OPEN,           // it consults the search cell and has no witness from it yet
    HAS_WITNESS,    // it has its witness from the search cell
    NOT_CONSULTED,  // it does not consult the search cell
};

// The margin around a search cell within which grid cells are asked whether they consult it:
// far wider than the slack of CubesIntersect (one float epsilon) and than the closeness of
// FEL_Close (within 0.00021 relative and 0.0002 absolute, see convert.cpp), so no cell that
// consults the search cell is left out; those beyond it answer no anyway.
const double kConsultMargin = 1e-3;

// (linear cell index, witness) pairs as they are found.
using Witnesses = std::vector<std::pair<std::uint32_t, Triangle*>>;

// The witness search of the grid cells with i in [m_intFirstI, m_intEndI), one search cell at a
// time.
struct WitnessSlab {
    const GridCellArray& m_cells;
    CellLocator& m_locate;
    int m_intFirstI, m_intEndI;
    // Per grid cell of the search cell's box (BoxOf), i slowest.
    std::vector<Consulting> m_vecConsulting;
    Witnesses& m_out;

    // The grid cells of the slab that may consult search cell s: false when there are none.
    bool BoxOf(const SearchCellView& s, IndexRange box[3]) const {
        for (int x = 0; x < 3; ++x) {
            double lo = s.m_v3fMin[x], hi = s.m_v3fMax[x];
            double margin = kConsultMargin * (1.0 + std::fabs(lo) + std::fabs(hi));
            box[x] = m_locate.Span(x, lo - margin, hi + margin);
        }
        box[0] = {std::max(box[0].m_intFirst, m_intFirstI),
                  std::min(box[0].m_intLast, m_intEndI - 1)};
        for (int x = 0; x < 3; ++x)
            if (box[x].m_intFirst > box[x].m_intLast) return false;
        return true;
    }

    // Tries triangle t on the cells of the box that it can touch and that still may take a
    // witness from s.
    void Offer(const SearchCellView& s, const IndexRange box[3], Triangle* t) {
        IndexRange r[3];
        if (!m_locate.Ranges(*t, r)) return;
        for (int x = 0; x < 3; ++x) {
            r[x].m_intFirst = std::max(r[x].m_intFirst, box[x].m_intFirst);
            r[x].m_intLast = std::min(r[x].m_intLast, box[x].m_intLast);
        }
        const std::size_t nj = std::size_t(box[1].m_intLast - box[1].m_intFirst + 1);
        const std::size_t nk = std::size_t(box[2].m_intLast - box[2].m_intFirst + 1);
        for (int i = r[0].m_intFirst; i <= r[0].m_intLast; ++i)
            for (int j = r[1].m_intFirst; j <= r[1].m_intLast; ++j)
                for (int k = r[2].m_intFirst; k <= r[2].m_intLast; ++k) {
                    Consulting& c = m_vecConsulting[(std::size_t(i - box[0].m_intFirst) * nj +
                                                     std::size_t(j - box[1].m_intFirst)) *
                                                        nk +
                                                    std::size_t(k - box[2].m_intFirst)];
                    if (c == Consulting::NOT_YET_ASKED)
                        c = s.Consults(m_cells.CellMin(i, j, k), m_cells.CellMax(i, j, k))
                                ? Consulting::OPEN
                                : Consulting::NOT_CONSULTED;
                    if (c != Consulting::OPEN) continue;
                    FEL_vector3<double> lo(m_cells.CellMin(i, j, k)), hi(m_cells.CellMax(i, j, k));
                    if (t->PartialBoundingBoxTest(&lo.x, &hi.x)) {
                        m_out.emplace_back(std::uint32_t(m_cells.Linear(i, j, k)), t);
                        c = Consulting::HAS_WITNESS;
                    }
                }
    }

    // The witnesses that search cell (a, b, c) of g gives the slab's cells: its triangles in list
    // order, so that each cell keeps the first that touches it.
    void SearchCell(const SearchGrid& g, int a, int b, int c) {
        const std::vector<Triangle*>& list = g.m_vecLists[g.Linear(a, b, c)];
        if (list.empty()) return;
        SearchCellView s{&g, {a, b, c}, g.CellMin(a, b, c), g.CellMax(a, b, c)};
        IndexRange box[3];
        if (!BoxOf(s, box)) return;
        m_vecConsulting.assign(std::size_t(box[0].m_intLast - box[0].m_intFirst + 1) *
                                   std::size_t(box[1].m_intLast - box[1].m_intFirst + 1) *
                                   std::size_t(box[2].m_intLast - box[2].m_intFirst + 1),
                               Consulting::NOT_YET_ASKED);
        for (Triangle* t : list) Offer(s, box, t);
    }
};

// The slabs' witnesses, each sorted by cell, as the cells' lists in ascending cell order.
void SetWitnessLists(GridCellArray& cells, std::vector<Witnesses>& found) {
    std::size_t total = 0;
    for (const Witnesses& f : found) total += f.size();
    std::vector<std::uint32_t> ids, starts;
    std::vector<Triangle*> entries;
    entries.reserve(total);
    for (Witnesses& f : found) {
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
    std::vector<Witnesses> found(pieces);
    RunPieces(pieces, threads, [&](int piece) {
        const int i0 = int(std::int64_t(n[0]) * piece / pieces);
        const int i1 = int(std::int64_t(n[0]) * (piece + 1) / pieces);
        if (i0 >= i1) return;
        CellLocator locate(corners[0].data(), n[0] + 1, corners[1].data(), n[1] + 1,
                           corners[2].data(), n[2] + 1);
        WitnessSlab slab{cells, locate, i0, i1, {}, found[piece]};
        for (const SearchGrid& g : grids)
            for (int a = 0; a < g.m_aintCount[0]; ++a)
                for (int b = 0; b < g.m_aintCount[1]; ++b)
                    for (int c = 0; c < g.m_aintCount[2]; ++c) slab.SearchCell(g, a, b, c);
        std::stable_sort(slab.m_out.begin(), slab.m_out.end(),
                         [](const auto& x, const auto& y) { return x.first < y.first; });
    });
    SetWitnessLists(cells, found);
}
