// The intersector's literal procedure: each step as the fast one's reference.
#include "reference/Reference.h"

#include <vector>

#include "intersector/Classify.h"
#include "intersector/Witness.h"

namespace {
// Every search cell tries every triangle of every box it overlaps, in list order.
void DiscretizePlain(SearchGrid& grid, const std::vector<std::vector<Triangle*>>& lists,
                     const std::vector<FEL_vector3<float>>& mins,
                     const std::vector<FEL_vector3<float>>& maxs) {
    for (int a = 0; a < grid.m_aintCount[0]; ++a)
        for (int b = 0; b < grid.m_aintCount[1]; ++b)
            for (int c = 0; c < grid.m_aintCount[2]; ++c) {
                FEL_vector3<float> lo = grid.CellMin(a, b, c), hi = grid.CellMax(a, b, c);
                FEL_vector3<double> dlo(lo), dhi(hi);
                std::vector<Triangle*>& out = grid.m_vecLists[grid.Linear(a, b, c)];
                for (std::size_t m = 0; m < mins.size(); ++m) {
                    if (!CubesIntersect(&lo.x, &hi.x, &mins[m].x, &maxs[m].x)) continue;
                    for (Triangle* t : lists[m])
                        if (t->PartialBoundingBoxTest(&dlo.x, &dhi.x)) out.push_back(t);
                }
            }
}

// The walk from the grid's corners: each popped cell searches its witnesses in list order.
void WalkPlain(IntersectContext& run, const std::vector<SearchGrid>& grids) {
    GridCellArray& cells = run.m_gridCells;
    int n[3] = {cells.Count(0), cells.Count(1), cells.Count(2)};
    int X = n[0] - 1, Y = n[1] - 1, Z = n[2] - 1;
    std::vector<FEL_vector3<int>> stack = {{X, Y, Z}, {0, Y, Z}, {X, 0, Z}, {X, Y, 0},
                                           {0, 0, Z}, {X, 0, 0}, {0, Y, 0}, {0, 0, 0}};
    const std::uint16_t mark = run.NewVisitMark();
    std::vector<Triangle*> found;
    while (!stack.empty()) {
        FEL_vector3<int> p = stack.back();
        stack.pop_back();
        GridCell& cell = cells(p.x, p.y, p.z);
        if (cell.m_ushtCounter == mark) continue;
        found.clear();
        CellWitnesses(grids, cells.CellMin(p.x, p.y, p.z), cells.CellMax(p.x, p.y, p.z), found);
        for (Triangle* t : found) cells.Append(cell, t);
        cell.m_ushtCounter = mark;
        if (!found.empty()) {
            cell.m_eState = CELL_INTERSECTED;
            continue;
        }
        for (int a = 0; a < 3; ++a) {
            FEL_vector3<int> q = p;
            if (p[a] > 0) {
                q[a] = p[a] - 1;
                stack.push_back(q);
            }
            if (p[a] < n[a] - 1) {
                q[a] = p[a] + 1;
                stack.push_back(q);
            }
        }
    }
}

// A sub-grid of the cell filled cell by cell and a flood from each exterior face.
int IsCellInteriorPlain(IntersectContext& run, FEL_vector3<int> p, GridCell& cell) {
    const GridCellArray& cells = run.m_gridCells;
    TriangleSpan span = cells.Triangles(cell);
    std::vector<std::vector<Triangle*>> lists = {std::vector<Triangle*>(span.begin(), span.end())};
    FEL_vector3<float> bounds[2] = {cells.CellMin(p.x, p.y, p.z), cells.CellMax(p.x, p.y, p.z)};
    std::vector<FEL_vector3<float>> mins = {bounds[0]}, maxs = {bounds[1]};
    SearchGrid sub;
    SizeSearchGrid(sub, bounds, FEL_vector3<int>(5, 5, 5));
    DiscretizePlain(sub, lists, mins, maxs);
    int state[64] = {};
    auto at = [](int a, int b, int c) { return (a * 4 + b) * 4 + c; };
    unsigned exterior = 0, intersected = 0;
    bool tried[6] = {};
    std::vector<FEL_vector3<int>> stack;
    for (;;) {
        int f = 0;
        while (f < 6 && (tried[f] || !FaceQualifies(kCellFaces[f], p, cells))) ++f;
        if (f == 6) break;
        tried[f] = true;
        const CellFace& face = kCellFaces[f];
        auto isStart = [&](const FEL_vector3<int>& s) {
            return sub.m_vecLists[sub.Linear(s.x, s.y, s.z)].empty() &&
                   state[at(s.x, s.y, s.z)] == 0;
        };
        FEL_vector3<int> start(face.m_aintFirst[0], face.m_aintFirst[1], face.m_aintFirst[2]);
        bool found = isStart(start);
        for (int A = 0; A < 4 && !found; ++A)
            for (int B = 0; B < 4 && !found; ++B) {
                start[face.m_intAxisA] = A;
                start[face.m_intAxisB] = B;
                found = isStart(start);
            }
        if (found) {
            stack.assign(1, start);
            while (!stack.empty()) {
                FEL_vector3<int> s = stack.back();
                stack.pop_back();
                int& st = state[at(s.x, s.y, s.z)];
                if (st != 0) continue;
                if (!sub.m_vecLists[sub.Linear(s.x, s.y, s.z)].empty()) {
                    ++intersected;
                    st = 1;
                    continue;
                }
                ++exterior;
                st = 2;
                for (int step : {1, -1})
                    for (int a = 0; a < 3; ++a) {
                        FEL_vector3<int> q = s;
                        q[a] += step;
                        if (q[a] >= 0 && q[a] <= 3 && state[at(q.x, q.y, q.z)] == 0)
                            stack.push_back(q);
                    }
            }
        }
        bool all = true;
        for (bool t : tried) all = all && t;
        if (all) break;
    }
    return SubCellDecision(exterior, intersected, cell.m_vecTriangles.empty());
}
}  // namespace

const ReferenceProcedure kPlainProcedure = {DiscretizePlain, WalkPlain, IsCellInteriorPlain};
