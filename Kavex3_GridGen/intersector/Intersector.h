// The intersection stage: the cell array of the run, the walk from the grid's corners that gives
// each touched cell its witness triangles, and the Tecplot debug dumps.
#pragma once

#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "intersector/BodyStruct.h"
#include "intersector/GridCell.h"
#include "intersector/IntersectContext.h"

// Builds the run's cells from the grid mesh and gives every cell that the walk from the eight
// corners reaches a witness triangle per search cell it overlaps (CELL_INTERSECTED), or spreads
// through it. Bodies not used in the solver are skipped. Then copies intersected states onto the
// outer layers.
void IntersectGrid(IntersectContext& run, FEL_pointer<FEL_mesh> grid,
                   std::vector<_BodyStruct> bodies, std::string folder);

// One zone of a body surface: its triangles and its mesh's bounding box.
struct SurfaceZone {
    std::vector<Triangle*> m_vecTriangles;
    FEL_vector3<float> m_v3fMin, m_v3fMax;
};

// IntersectGrid after the conversion: the zones of all used bodies in order, against the run's
// cells, which the caller has made. The cells take the triangles over.
void IntersectZones(IntersectContext& run, std::vector<SurfaceZone>& zones,
                    const std::string& folder);

// Bytes per grid cell that the stages keep at most, beyond the triangles, the lists of touched
// cells and the grid mesh: the cell itself and, at worst, four pending 32-bit seeds of a walk.
std::size_t IntersectBytesPerCell();

// Debug dumps in Tecplot text: one zone per list; or one zone of the cells' triangles, the last
// layer of each axis left out.
void OutputTriangles(std::vector<std::vector<Triangle*>>& lists, std::ostream& out);
void OutputTriangles(GridCellArray& cells, FEL_vector3<int> dims, std::ostream& out);
