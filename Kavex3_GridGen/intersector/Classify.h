// Cell classification: the exterior fill, the decision for a touched cell, and the ring test.
#pragma once

#include "FEL_vector3.h"
#include "intersector/GridCell.h"
#include "intersector/IntersectContext.h"

// Fills the exterior from cell (0, 0, 1) through cells that are not intersected; what it doesn't
// reach stays unknown.
void ClassifyCells(IntersectContext& run);

// The new state of a cell with triangles or marked intersected: 3 (interior) unless the flood
// from its exterior faces reached all 64 empty sub-cells, then 2 with an empty list, 1 otherwise.
// The faces on the high side of the last-but-one layer stay closed. Changes nothing in the cells.
int IsCellInterior(IntersectContext& run, FEL_vector3<int> index, GridCell& cell);

// Whether some triangle of the cell touches one of its 4 x 4 x 4 sub-cells.
bool AnySubCellTouched(const GridCellArray& cells, FEL_vector3<int> index);

// The final scan's decisions over all cells, from the highest index down, as the driver makes
// them: each cell with triangles or marked intersected gets IsCellInterior's state. The geometric
// part runs on the option's threads. Returns the number of body cells; intersected counts the
// cells left intersected.
long long DecideCells(IntersectContext& run, long long& intersected);

// Whether the intersected cells close a ring through (i, j, k) in the plane normal to coord.
// The cell must not lie on the grid's boundary.
bool FormsLoop(IntersectContext& run, unsigned i, unsigned j, unsigned k, unsigned coord);

// A cell face as the decision tries them: neighbour offset, first sub-cell, scan axes A and B.
struct CellFace {
    int m_aintStep[3];
    int m_aintFirst[3];
    int m_intAxisA, m_intAxisB;
};
// The six faces in the order they are tried.
extern const CellFace kCellFaces[6];

// Whether the flood may enter the cell at p through face f: its neighbour there is exterior. The
// high faces look only below the last-but-one layer: cells of that layer keep them closed.
bool FaceQualifies(const CellFace& f, const FEL_vector3<int>& p, const GridCellArray& cells);

// The state from the flood's counts of exterior and intersected sub-cells.
int SubCellDecision(unsigned exterior, unsigned intersected, bool listEmpty);
