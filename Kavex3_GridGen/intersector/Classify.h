// Cell classification: the exterior fill, the decision for a touched cell, and the ring test.
#pragma once

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "intersector/GridCell.h"

// Fills the exterior from cell (0, 0, 1) through cells that are not intersected; what it doesn't
// reach stays unknown. mesh gives the point counts.
void ClassifyCells(FEL_pointer<FEL_mesh> mesh);

// The new state of a cell with triangles or marked intersected: 3 (interior) unless the flood
// from its exterior faces reached all 64 empty sub-cells, then 2 with an empty list, 1 otherwise.
// The faces on the high side of the last-but-one layer stay closed. Changes nothing in cells.
int IsCellInterior(FEL_vector3<int> index, GridCellArray& cells, GridCell& cell);

// Whether some triangle of the cell touches one of its 4 x 4 x 4 sub-cells.
bool AnySubCellTouched(const GridCellArray& cells, FEL_vector3<int> index);

// The final scan's decisions over all cells, from the highest index down, as the driver makes
// them: each cell with triangles or marked intersected gets IsCellInterior's state. The geometric
// part runs on the option's threads. Returns the number of body cells; intersected counts the
// cells left intersected.
long long DecideCells(GridCellArray& cells, long long& intersected);

// Whether the intersected cells close a ring through (i, j, k) in the plane normal to coord.
// The cell must not lie on the grid's boundary.
bool FormsLoop(unsigned i, unsigned j, unsigned k, unsigned coord);
