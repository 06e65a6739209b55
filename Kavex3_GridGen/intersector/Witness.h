// The witness triangles of grid cells against the search grids of the body zones.
#pragma once

#include <vector>

#include "intersector/GridCell.h"

// The search cells that a grid cell consults in one search grid: a from lo[0] while below
// hi[0] and the grid's count, and so on. False when the cell misses the search grid's box.
bool SearchRange(const SearchGrid& grid, const FEL_vector3<float>& cellMin,
                 const FEL_vector3<float>& cellMax, int lo[3], int hi[3]);

// The witnesses of one cell, literally: for each search grid and each search cell it consults
// that overlaps it and holds triangles, the first of them that touches the cell.
void CellWitnesses(const std::vector<SearchGrid>& grids, const FEL_vector3<float>& cellMin,
                   const FEL_vector3<float>& cellMax, std::vector<Triangle*>& out);

// Gives every cell of the array the list CellWitnesses would give it, triangle by triangle over
// the cells each one can touch, on the given threads; states are left as they are.
void FindAllWitnesses(GridCellArray& cells, const std::vector<SearchGrid>& grids, int threads);
