// Cell classification: the exterior fill from its fixed seed, the 4 x 4 x 4 decision for touched
// cells, the final scan's decisions, and the ring test.
#include "intersector/Classify.h"

#include <iostream>
#include <vector>

#include "intersector/CellWalk.h"
#include "intersector/Parallel.h"
#include "intersector/TriangleBox.h"

namespace {
// One sub-cell's share of the 4 x 4 x 4 sub-grid: 1/64, exact in float.
const float kSubCellShare = 0.015625f;

// The fast decision, for IsCellInterior and DecideCells alike. No exterior face leaves both of
// the flood's counts at 0; a touched sub-cell keeps their sum below 64; otherwise the first open
// face floods all 64 empty sub-cells. touched: whether AnySubCellTouched holds for the cell.
int DecideFast(const GridCellArray& cells, const FEL_vector3<int>& p, const GridCell& cell,
               bool touched) {
    bool open = false;
    for (const CellFace& f : kCellFaces) open = open || FaceQualifies(f, p, cells);
    if (!open || touched) return CELL_INTERIOR;
    return SubCellDecision(64, 0, cell.m_vecTriangles.empty());
}
}  // namespace

const CellFace kCellFaces[6] = {
    {{1, 0, 0}, {3, 1, 1}, 1, 2},  {{0, 1, 0}, {1, 3, 1}, 0, 2},  {{0, 0, 1}, {1, 1, 3}, 0, 1},
    {{-1, 0, 0}, {0, 1, 1}, 1, 2}, {{0, -1, 0}, {1, 0, 1}, 0, 2}, {{0, 0, -1}, {1, 1, 0}, 0, 1},
};

bool FaceQualifies(const CellFace& f, const FEL_vector3<int>& p, const GridCellArray& cells) {
    for (int a = 0; a < 3; ++a) {
        if (f.m_aintStep[a] > 0 && !(p[a] < cells.Count(a) - 2)) return false;
        if (f.m_aintStep[a] < 0 && !(p[a] >= 1)) return false;
    }
    return cells(p.x + f.m_aintStep[0], p.y + f.m_aintStep[1], p.z + f.m_aintStep[2]).m_eState ==
           CELL_EXTERIOR;
}

int SubCellDecision(unsigned exterior, unsigned intersected, bool listEmpty) {
    float share = float((intersected >> 1) + exterior) * kSubCellShare;
    if (1.0f > share) return CELL_INTERIOR;
    return listEmpty ? CELL_EXTERIOR : CELL_INTERSECTED;
}

void ClassifyCells(IntersectContext& run) {
    const FEL_vector3<int> n = run.GridDimensions();
    GridCell* data = run.m_gridCells.Data();
    const int threads = run.Threads();
    CellWalk walk(run.m_gridCells);
    walk.SetOpen(threads, [data](std::size_t id) { return data[id].m_eState != CELL_INTERSECTED; });
    // The seed is fixed; a grid without it (one cell along k) gets no exterior.
    if (n[0] >= 1 && n[1] >= 1 && n[2] >= 2) walk.Seed(0, 0, 1);
    walk.Run();
    const std::uint16_t mark = run.NewVisitMark();
    const long count = long(walk.EachVisited(threads, [data, mark](std::size_t id, bool open) {
        data[id].m_ushtCounter = mark;
        if (open) data[id].m_eState = CELL_EXTERIOR;
    }));
    if (run.m_blnDebug) std::cout << "There were " << count << " intersected cells." << std::endl;
}

bool AnySubCellTouched(const GridCellArray& cells, FEL_vector3<int> p) {
    TriangleSpan tris = cells.Triangles(cells(p.x, p.y, p.z));
    if (tris.empty()) return false;
    FEL_vector3<float> lo = cells.CellMin(p.x, p.y, p.z), hi = cells.CellMax(p.x, p.y, p.z);
    // The sub-cells' corners as DiscretizeSpace makes them for 5 points a side.
    float corner[3][5];
    double wide[3][5];
    for (int a = 0; a < 3; ++a) {
        float h = (hi[a] - lo[a]) / float(4);
        for (int c = 0; c <= 4; ++c) wide[a][c] = corner[a][c] = float(c) * h + lo[a];
    }
    CellLocator locate(wide[0], 5, wide[1], 5, wide[2], 5);
    signed char open[64];
    for (signed char& o : open) o = -1;
    for (Triangle* t : tris) {
        IndexRange r[3];
        if (!locate.Ranges(*t, r)) continue;
        for (int a = r[0].m_intFirst; a <= r[0].m_intLast; ++a)
            for (int b = r[1].m_intFirst; b <= r[1].m_intLast; ++b)
                for (int c = r[2].m_intFirst; c <= r[2].m_intLast; ++c) {
                    FEL_vector3<float> smin(corner[0][a], corner[1][b], corner[2][c]);
                    FEL_vector3<float> smax(corner[0][a + 1], corner[1][b + 1], corner[2][c + 1]);
                    signed char& o = open[(a * 4 + b) * 4 + c];
                    if (o < 0) o = CubesIntersect(&smin.x, &smax.x, &lo.x, &hi.x) ? 1 : 0;
                    if (!o) continue;
                    FEL_vector3<double> dmin(smin), dmax(smax);
                    if (t->PartialBoundingBoxTest(&dmin.x, &dmax.x)) return true;
                }
    }
    return false;
}

int IsCellInterior(IntersectContext& run, FEL_vector3<int> index, GridCell& cell) {
    if (run.m_options.m_pReference)
        return run.m_options.m_pReference->m_pfnIsCellInterior(run, index, cell);
    return DecideFast(run.m_gridCells, index, cell, AnySubCellTouched(run.m_gridCells, index));
}

long long DecideCells(IntersectContext& run, long long& intersected) {
    GridCellArray& cells = run.m_gridCells;
    const bool reference = run.m_options.m_pReference != nullptr;
    const int threads = run.Threads();
    intersected = 0;
    if (cells.Size() == 0) return 0;
    // Whether a touched cell's sub-cells are touched depends on no state: found first, for all
    // lists at once, on the option's threads.
    const int lists = int(cells.ListCount());
    std::vector<char> touched(lists, 0);
    if (!reference) {
        int pieces = std::max(1, std::min(lists, 16 * threads));
        RunPieces(pieces, threads, [&](int piece) {
            int from = int(std::int64_t(lists) * piece / pieces);
            int to = int(std::int64_t(lists) * (piece + 1) / pieces);
            for (int n = from; n < to; ++n)
                touched[n] = AnySubCellTouched(cells, cells.Index(cells.ListCell(n + 1)));
        });
    }
    // The scan: i, j, k all downwards, which is the linear order backwards. Only cells with
    // triangles or marked intersected change, and only they are read by the decisions, so the
    // others are counted in parallel slabs and these taken afterwards in the scan's order.
    const GridCell* data = cells.Data();
    const int slabs = int(std::min<std::size_t>(cells.Size(), std::size_t(16) * threads));
    std::vector<long long> bulk(slabs, 0);
    std::vector<std::vector<std::uint32_t>> special(slabs);
    RunPieces(slabs, threads, [&](int slab) {
        std::size_t from = cells.Size() * std::size_t(slab) / std::size_t(slabs);
        std::size_t to = cells.Size() * std::size_t(slab + 1) / std::size_t(slabs);
        for (std::size_t id = to; id-- > from;) {
            const GridCell& cell = data[id];
            if (!cell.m_vecTriangles.empty() || cell.m_eState == CELL_INTERSECTED)
                special[slab].push_back(std::uint32_t(id));
            else if (cell.m_eState != CELL_EXTERIOR)
                ++bulk[slab];
        }
    });
    long long body = 0;
    for (long long n : bulk) body += n;
    for (int slab = slabs - 1; slab >= 0; --slab)
        for (std::uint32_t id : special[slab]) {
            GridCell& cell = cells.Data()[id];
            const FEL_vector3<int> p = cells.Index(id);
            const bool hit =
                !cell.m_vecTriangles.empty() && touched[cell.m_vecTriangles.m_uintHandle - 1];
            const int state =
                reference ? IsCellInterior(run, p, cell) : DecideFast(cells, p, cell, hit);
            cell.m_eState = CellState(state);
            if (state == CELL_INTERSECTED)
                ++intersected;
            else if (state != CELL_EXTERIOR)
                ++body;
        }
    return body;
}

bool FormsLoop(IntersectContext& run, unsigned i, unsigned j, unsigned k, unsigned coord) {
    GridCellArray& cells = run.m_gridCells;
    auto hit = [&](unsigned a, unsigned b, unsigned c) {
        return cells(int(a), int(b), int(c)).m_eState == CELL_INTERSECTED;
    };
    if (!hit(i, j, k)) {
        std::cerr << "ERROR: Cannot use FormsLoop function on a non-intersected cell." << std::endl;
        return false;
    }
    if (coord > 2) {
        std::cerr << "Coord must be 0, 1 or 2." << std::endl;
        return false;
    }
    // The plane's two axes P and Q, and the axis whose high neighbour picks the pair.
    static const int kAxes[3][3] = {{1, 2, 1}, {0, 2, 0}, {0, 1, 1}};
    const int P = kAxes[coord][0], Q = kAxes[coord][1], tested = kAxes[coord][2];
    const FEL_vector3<int> self{int(i), int(j), int(k)};
    auto neighbour = [&](int axis, int by) {
        FEL_vector3<int> n = self;
        n[axis] += by;
        return n;
    };
    auto hitAt = [&](const FEL_vector3<int>& n) {
        return cells(n.x, n.y, n.z).m_eState == CELL_INTERSECTED;
    };
    auto full = [&](int axis) { return hitAt(neighbour(axis, 1)) && hitAt(neighbour(axis, -1)); };
    if (full(P) == full(Q)) {
        std::cerr << "ERROR: Cannot use FormsLoop function on a non-central cell." << std::endl;
        return false;
    }
    const int other = tested == P ? Q : P;
    const int along = hitAt(neighbour(tested, 1)) ? tested : other;
    const FEL_vector3<int> start = neighbour(along, 1), end = neighbour(along, -1);
    FEL_vector3<int> step(1, 1, 1);
    step[int(coord)] = 0;
    std::vector<FEL_vector3<int>> stack = {start};
    const std::uint16_t mark = run.NewVisitMark();
    while (!stack.empty()) {
        FEL_vector3<int> c = stack.back();
        stack.pop_back();
        GridCell& cell = cells(c.x, c.y, c.z);
        if (cell.m_ushtCounter == mark) continue;
        cell.m_ushtCounter = mark;
        if (c == end) return true;
        for (int a = 0; a < 3; ++a)
            for (int sign : {1, -1}) {
                FEL_vector3<int> nb = c;
                nb[a] += sign * step[a];
                bool inside = true;
                for (int b = 0; b < 3; ++b) inside = inside && nb[b] >= 0 && nb[b] < cells.Count(b);
                if (!inside || nb == self) continue;
                GridCell& nc = cells(nb.x, nb.y, nb.z);
                if (nc.m_eState == CELL_INTERSECTED && nc.m_ushtCounter != mark)
                    stack.push_back(nb);
            }
    }
    return false;
}
