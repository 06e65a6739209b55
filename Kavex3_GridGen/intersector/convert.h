// Body triangulation: a surface mesh zone becomes heap Triangles appended to a list.
#pragma once

#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "intersector/Triangle.h"

// Structured zones: the last plane of the third index, two rows at a time, each row opening with
// two zero-area triangles and closing against its first column. Others: see below.
void ConvertTriangles(FEL_pointer<FEL_mesh> mesh, std::vector<Triangle*>& triangles);
// Simplicial cells, first three vertices; a cell with two FEL_Close vertices is dropped.
void ConvertUnstructuredTriangles(FEL_pointer<FEL_mesh> mesh, std::vector<Triangle*>& triangles);

// The cells of an unstructured zone that ConvertUnstructuredTriangles keeps, as flags in the
// cells' order: its own triangles matched back to the cells they came from, so that a tool judges
// a body by exactly the surface a run intersects.
std::vector<bool> KeptUnstructuredCells(FEL_pointer<FEL_mesh> zone);
// The triangles a run drops from a body's mesh (placed as the run placed it): coincident corners
// under FEL_Close, summed over its unstructured zones. Structured zones drop none.
long DroppedTriangleCount(FEL_pointer<FEL_mesh> mesh);
