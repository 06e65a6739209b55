// Grid cells: the cell array of the run with its shared triangle pool, the uniform search grids,
// box overlap, CreateGrid and DiscretizeSpace.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "intersector/Triangle.h"

// One byte per cell keeps the cell array at 8 bytes a cell.
enum CellState : std::int8_t {
    CELL_UNKNOWN = 0,
    CELL_INTERSECTED = 1,
    CELL_EXTERIOR = 2,
    CELL_INTERIOR = 3,
};

// A cell's triangles: a 4-byte handle into the pool of its cell array (0 is the empty list).
// Read the triangles through GridCellArray::Triangles.
class TriangleList {
  public:
    bool empty() const { return m_uintHandle == 0; }
    void clear() { m_uintHandle = 0; }
    std::uint32_t m_uintHandle = 0;
};

// One grid cell: 8 bytes. Its corners come from the axes of its array.
struct GridCell {
    TriangleList m_vecTriangles;
    // Visit mark: the mark of the walk that last visited the cell (IntersectContext::NewVisitMark).
    std::uint16_t m_ushtCounter = 0;
    CellState m_eState = CELL_UNKNOWN;
};
static_assert(std::is_trivially_copyable<GridCell>::value, "cells live in zeroed memory");
static_assert(sizeof(GridCell) == 8, "a cell is 8 bytes");

// A read-only run of triangle pointers.
struct TriangleSpan {
    Triangle* const* m_pBegin = nullptr;
    Triangle* const* m_pEnd = nullptr;
    Triangle* const* begin() const { return m_pBegin; }
    Triangle* const* end() const { return m_pEnd; }
    std::size_t size() const { return std::size_t(m_pEnd - m_pBegin); }
    bool empty() const { return m_pBegin == m_pEnd; }
    Triangle* operator[](std::size_t n) const { return m_pBegin[n]; }
};

// The cells of an axis-aligned grid, flat with k fastest, indexed (i, j, k) or [i][j][k]. Cell c of
// an axis lies between corner values c and c + 1. It owns the triangles handed to it.
class GridCellArray {
  public:
    GridCellArray() = default;
    GridCellArray(const GridCellArray&) = delete;
    GridCellArray& operator=(const GridCellArray&) = delete;
    ~GridCellArray();

    // n[a] + 1 corner values per axis, ascending; all cells unknown with empty lists.
    void Reset(const std::vector<float> axes[3]);
    // Frees the cells, the lists and the owned triangles.
    void Release();

    int Count(int axis) const { return m_aintCount[axis]; }
    std::size_t Size() const { return m_uintCells; }
    std::size_t Linear(int i, int j, int k) const {
        return (std::size_t(i) * std::size_t(m_aintCount[1]) + std::size_t(j)) *
                   std::size_t(m_aintCount[2]) +
               std::size_t(k);
    }
    GridCell& operator()(int i, int j, int k) { return m_pCells[Linear(i, j, k)]; }
    const GridCell& operator()(int i, int j, int k) const { return m_pCells[Linear(i, j, k)]; }
    GridCell& operator[](const FEL_vector3<int>& v) { return (*this)(v.x, v.y, v.z); }
    GridCell* Data() { return m_pCells; }
    const GridCell* Data() const { return m_pCells; }

    // [i][j][k] access.
    struct Row {
        GridCell* m_pCells;
        GridCell& operator[](int k) const { return m_pCells[k]; }
    };
    struct Plane {
        GridCellArray* m_pArray;
        int m_intI;
        Row operator[](int j) const { return {&(*m_pArray)(m_intI, j, 0)}; }
    };
    Plane operator[](int i) { return {this, i}; }

    FEL_vector3<float> CellMin(int i, int j, int k) const {
        return {m_avecAxes[0][i], m_avecAxes[1][j], m_avecAxes[2][k]};
    }
    FEL_vector3<float> CellMax(int i, int j, int k) const {
        return {m_avecAxes[0][i + 1], m_avecAxes[1][j + 1], m_avecAxes[2][k + 1]};
    }
    const std::vector<float>& Axis(int a) const { return m_avecAxes[a]; }

    TriangleSpan Triangles(const GridCell& cell) const;
    // Handles run from 1 to ListCount(); ListCell gives the linear index of a list's cell.
    std::size_t ListCount() const { return m_vecListStart.size(); }
    std::size_t ListCell(std::uint32_t handle) const { return m_vecListCell[handle - 1]; }
    // (i, j, k) of a linear index.
    FEL_vector3<int> Index(std::size_t linear) const {
        int k = int(linear % std::size_t(m_aintCount[2]));
        linear /= std::size_t(m_aintCount[2]);
        return {int(linear / std::size_t(m_aintCount[1])),
                int(linear % std::size_t(m_aintCount[1])), k};
    }
    // Replaces every list: lists[n] belongs to the cell of linear index cells[n], cells ascending.
    void SetLists(const std::vector<std::uint32_t>& cells, const std::vector<std::uint32_t>& starts,
                  std::vector<Triangle*>&& entries);
    // Appends one triangle to a cell's list (slow path: copies the cell's list to the pool's end).
    void Append(GridCell& cell, Triangle* t);
    // The array frees these triangles when it is released.
    void Own(std::vector<Triangle*>& triangles);

  private:
    int m_aintCount[3] = {0, 0, 0};
    std::vector<float> m_avecAxes[3];
    // Zeroed memory from the system: an unknown cell with an empty list is all zero bytes.
    GridCell* m_pCells = nullptr;
    std::size_t m_uintCells = 0;
    // List n (handle n + 1) is m_vecEntries[m_vecListStart[n] .. m_vecListStart[n] +
    // m_vecListSize[n]).
    std::vector<std::uint32_t> m_vecListStart;
    std::vector<std::uint32_t> m_vecListSize;
    std::vector<std::uint32_t> m_vecListCell;
    std::vector<Triangle*> m_vecEntries;
    std::vector<Triangle*> m_vecOwned;
};

// A uniform search grid over a box: n[a] cells per axis, cell c from c * h + lo to (c + 1) * h +
// lo.
struct SearchGrid {
    FEL_vector3<float> m_v3fLow;
    FEL_vector3<float> m_v3fStep;
    int m_aintCount[3] = {0, 0, 0};
    // Triangles of each cell, k fastest.
    std::vector<std::vector<Triangle*>> m_vecLists;

    std::size_t Linear(int a, int b, int c) const {
        return (std::size_t(a) * std::size_t(m_aintCount[1]) + std::size_t(b)) *
                   std::size_t(m_aintCount[2]) +
               std::size_t(c);
    }
    FEL_vector3<float> CellMin(int a, int b, int c) const;
    FEL_vector3<float> CellMax(int a, int b, int c) const;
};

// Box overlap with an absolute slack of one float epsilon; a shared face overlaps.
bool CubesIntersect(const float* minA, const float* maxA, const float* minB, const float* maxB);
bool CubesIntersect(const double* minA, const double* maxA, const double* minB, const double* maxB);

// One cell per hexahedron of the mesh, all unknown. Throws for a mesh that is not axis-aligned
// with ascending corners.
void CreateGrid(GridCellArray& cells, FEL_pointer<FEL_mesh> mesh);

// Lays out dims[a] - 1 uniform cells over bounds[0]..bounds[1], all empty.
void SizeSearchGrid(SearchGrid& cells, const FEL_vector3<float>* bounds,
                    const FEL_vector3<int>& dims);

// SizeSearchGrid, then each cell takes, for each box m that it overlaps, the triangles of
// lists[m] that touch it, in list order.
void DiscretizeSpace(SearchGrid& cells, const FEL_vector3<float>* bounds,
                     const FEL_vector3<int>& dims, const std::vector<std::vector<Triangle*>>& lists,
                     const std::vector<FEL_vector3<float>>& mins,
                     const std::vector<FEL_vector3<float>>& maxs);
