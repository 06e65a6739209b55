// Grid cells: the cell array with its triangle pool, search grids, box overlap, CreateGrid and
// DiscretizeSpace.
#include "intersector/GridCell.h"

#include <cmath>
#include <cstdlib>
#include <new>
#include <stdexcept>

#include "FEL_axis_aligned_mesh.h"
#include "intersector/TriangleBox.h"
#include "intersector/ZeroedMemory.h"

GridCellArray::~GridCellArray() {
    Release();
}

void GridCellArray::Reset(const std::vector<float> axes[3]) {
    Release();
    std::size_t n = 1;
    for (int a = 0; a < 3; ++a) {
        m_avecAxes[a] = axes[a];
        m_aintCount[a] = axes[a].empty() ? 0 : int(axes[a].size()) - 1;
        n *= std::size_t(m_aintCount[a]);
    }
    // Cells and list entries are numbered in 32 bits.
    if (n >= (std::size_t(1) << 32)) throw std::length_error("The grid has too many cells.");
    if (n > 0) {
        m_pCells = static_cast<GridCell*>(AllocateZeroed(n * sizeof(GridCell)));
        m_uintCells = n;
    }
}

void GridCellArray::Release() {
    for (Triangle* t : m_vecOwned) delete t;
    m_vecOwned = {};
    FreeZeroed(m_pCells, m_uintCells * sizeof(GridCell));
    m_pCells = nullptr;
    m_uintCells = 0;
    m_vecListStart = {};
    m_vecListSize = {};
    m_vecListCell = {};
    m_vecEntries = {};
    for (int a = 0; a < 3; ++a) {
        m_avecAxes[a] = {};
        m_aintCount[a] = 0;
    }
}

TriangleSpan GridCellArray::Triangles(const GridCell& cell) const {
    if (cell.m_vecTriangles.empty()) return {};
    std::uint32_t n = cell.m_vecTriangles.m_uintHandle - 1;
    Triangle* const* first = m_vecEntries.data() + m_vecListStart[n];
    return {first, first + m_vecListSize[n]};
}

void GridCellArray::SetLists(const std::vector<std::uint32_t>& cells,
                             const std::vector<std::uint32_t>& starts,
                             std::vector<Triangle*>&& entries) {
    for (std::uint32_t c : m_vecListCell) m_pCells[c].m_vecTriangles.clear();
    m_vecEntries = std::move(entries);
    m_vecListStart.assign(starts.begin(), starts.end());
    m_vecListSize.resize(cells.size());
    m_vecListCell = cells;
    for (std::size_t n = 0; n < cells.size(); ++n) {
        std::uint32_t end =
            n + 1 < cells.size() ? starts[n + 1] : std::uint32_t(m_vecEntries.size());
        m_vecListSize[n] = end - starts[n];
        m_pCells[cells[n]].m_vecTriangles.m_uintHandle = std::uint32_t(n + 1);
    }
}

void GridCellArray::Append(GridCell& cell, Triangle* t) {
    std::uint32_t start = std::uint32_t(m_vecEntries.size());
    TriangleSpan old = Triangles(cell);
    std::vector<Triangle*> copy(old.begin(), old.end());
    m_vecEntries.insert(m_vecEntries.end(), copy.begin(), copy.end());
    m_vecEntries.push_back(t);
    if (cell.m_vecTriangles.empty()) {
        m_vecListStart.push_back(start);
        m_vecListSize.push_back(1);
        m_vecListCell.push_back(std::uint32_t(&cell - m_pCells));
        cell.m_vecTriangles.m_uintHandle = std::uint32_t(m_vecListStart.size());
    } else {
        std::uint32_t n = cell.m_vecTriangles.m_uintHandle - 1;
        m_vecListStart[n] = start;
        m_vecListSize[n] += 1;
    }
}

void GridCellArray::Own(std::vector<Triangle*>& triangles) {
    m_vecOwned.insert(m_vecOwned.end(), triangles.begin(), triangles.end());
}

FEL_vector3<float> SearchGrid::CellMin(int a, int b, int c) const {
    return {float(a) * m_v3fStep.x + m_v3fLow.x, float(b) * m_v3fStep.y + m_v3fLow.y,
            float(c) * m_v3fStep.z + m_v3fLow.z};
}

FEL_vector3<float> SearchGrid::CellMax(int a, int b, int c) const {
    return CellMin(a + 1, b + 1, c + 1);
}

namespace {
// The absolute slack of the box overlap: the float epsilon (the spacing of floats at 1), in both
// precisions.
const float kOverlapSlack = 1.1920929e-7f;
// The closeness of the double-precision overlap, finer than FEL_Close's 0.0001: mantissas of equal
// exponent within kCloseMantissa, values within kCloseRelative of the first, or both within
// kCloseZero of zero.
const double kCloseMantissa = 0.00001;
const double kCloseRelative = 0.00001;
const double kCloseZero = 0.0001;

bool CloseDouble(double a, double b) {
    int ea, eb;
    double ma = std::frexp(a, &ea), mb = std::frexp(b, &eb);
    if (ea == eb && std::fabs(ma - mb) < kCloseMantissa) return true;
    if (std::fabs(a) * kCloseRelative >= std::fabs(a - b)) return true;
    return std::fabs(a) <= kCloseZero && std::fabs(b) <= kCloseZero;
}
}  // namespace

bool CubesIntersect(const float* minA, const float* maxA, const float* minB, const float* maxB) {
    const float e = kOverlapSlack;
    for (int a = 0; a < 3; ++a) {
        if (minA[a] > maxB[a] + e && !(g_blnUseClose && FEL_Close(maxB[a], minA[a]))) return false;
        if (minB[a] - e > maxA[a] && !(g_blnUseClose && FEL_Close(minB[a], maxA[a]))) return false;
    }
    return true;
}

bool CubesIntersect(const double* minA, const double* maxA, const double* minB,
                    const double* maxB) {
    const double e = double(kOverlapSlack);
    for (int a = 0; a < 3; ++a) {
        if (minA[a] > maxB[a] + e && !(g_blnUseClose && CloseDouble(maxB[a], minA[a])))
            return false;
        if (minB[a] - e > maxA[a] && !(g_blnUseClose && CloseDouble(minB[a], maxA[a])))
            return false;
    }
    return true;
}

void CreateGrid(GridCellArray& cells, FEL_pointer<FEL_mesh> mesh) {
    int d[3];
    mesh->get_structured_dimensions(d);
    std::vector<float> axes[3];
    for (int a = 0; a < 3; ++a) {
        for (int n = 0; n < d[a]; ++n) {
            FEL_vertex_cell v(a == 0 ? n : 0, a == 1 ? n : 0, a == 2 ? n : 0);
            FEL_vector3<float> p;
            mesh->coordinates_at_vertex_cell(v, &p);
            axes[a].push_back(p[a]);
        }
    }
    // The cells are kept as three axes, so the grid must be axis-aligned and ascending.
    for (int a = 0; a < 3; ++a)
        for (std::size_t n = 0; n < axes[a].size(); ++n)
            if (!std::isfinite(axes[a][n]) || (n > 0 && axes[a][n] < axes[a][n - 1]))
                throw std::runtime_error("The grid's corner values must be finite and ascending.");
    if (!dynamic_cast<const FEL_axis_aligned_mesh*>(&*mesh)) {
        FEL_vertex_cell_iter it;
        FEL_vector3<float> p;
        for (mesh->begin(&it); !it.done; ++it) {
            mesh->coordinates_at_vertex_cell(it.cell, &p);
            if (p.x != axes[0][it.cell.i] || p.y != axes[1][it.cell.j] || p.z != axes[2][it.cell.k])
                throw std::runtime_error("The grid is not axis-aligned.");
        }
    }
    cells.Reset(axes);
}

namespace {
// Triangle by triangle over the cells that its box can touch: the lists of the literal cell by
// cell search, without trying every triangle on every cell.
void DiscretizeFast(SearchGrid& grid, const std::vector<std::vector<Triangle*>>& lists,
                    const std::vector<FEL_vector3<float>>& mins,
                    const std::vector<FEL_vector3<float>>& maxs) {
    std::vector<double> corners[3];
    for (int a = 0; a < 3; ++a)
        for (int c = 0; c <= grid.m_aintCount[a]; ++c)
            corners[a].push_back(grid.CellMin(c, c, c)[a]);
    CellLocator locate(corners[0].data(), int(corners[0].size()), corners[1].data(),
                       int(corners[1].size()), corners[2].data(), int(corners[2].size()));
    std::vector<char> overlap(grid.m_vecLists.size());
    for (std::size_t m = 0; m < mins.size(); ++m) {
        for (int a = 0; a < grid.m_aintCount[0]; ++a)
            for (int b = 0; b < grid.m_aintCount[1]; ++b)
                for (int c = 0; c < grid.m_aintCount[2]; ++c) {
                    FEL_vector3<float> lo = grid.CellMin(a, b, c), hi = grid.CellMax(a, b, c);
                    overlap[grid.Linear(a, b, c)] =
                        CubesIntersect(&lo.x, &hi.x, &mins[m].x, &maxs[m].x);
                }
        for (Triangle* t : lists[m]) {
            IndexRange r[3];
            if (!locate.Ranges(*t, r)) continue;
            for (int a = r[0].m_intFirst; a <= r[0].m_intLast; ++a)
                for (int b = r[1].m_intFirst; b <= r[1].m_intLast; ++b)
                    for (int c = r[2].m_intFirst; c <= r[2].m_intLast; ++c) {
                        std::size_t s = grid.Linear(a, b, c);
                        if (!overlap[s]) continue;
                        FEL_vector3<double> lo(grid.CellMin(a, b, c)), hi(grid.CellMax(a, b, c));
                        if (t->PartialBoundingBoxTest(&lo.x, &hi.x))
                            grid.m_vecLists[s].push_back(t);
                    }
        }
    }
}
}  // namespace

void SizeSearchGrid(SearchGrid& cells, const FEL_vector3<float>* bounds,
                    const FEL_vector3<int>& dims) {
    for (int a = 0; a < 3; ++a) {
        cells.m_v3fStep[a] = (bounds[1][a] - bounds[0][a]) / float(dims[a] - 1);
        cells.m_aintCount[a] = dims[a] - 1;
    }
    cells.m_v3fLow = bounds[0];
    cells.m_vecLists.assign(std::size_t(cells.m_aintCount[0]) * std::size_t(cells.m_aintCount[1]) *
                                std::size_t(cells.m_aintCount[2]),
                            {});
}

void DiscretizeSpace(SearchGrid& cells, const FEL_vector3<float>* bounds,
                     const FEL_vector3<int>& dims, const std::vector<std::vector<Triangle*>>& lists,
                     const std::vector<FEL_vector3<float>>& mins,
                     const std::vector<FEL_vector3<float>>& maxs) {
    SizeSearchGrid(cells, bounds, dims);
    DiscretizeFast(cells, lists, mins, maxs);
}
