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

// The rule of the unstructured path: a triangle with two vertices equal under FEL_Close is dropped.
// Applied in the grid's frame, so it depends on where the body stands, not only on its shape.
bool IsDroppedTriangle(const FEL_vector3<float> v[3]);
// The number of cells of a zone that the triangulation drops (none for a structured zone), without
// making triangles; the vertices of the kept ones are appended to kept, three each, unless null.
long CountDroppedTriangles(FEL_pointer<FEL_mesh> mesh, std::vector<FEL_vector3<float>>* kept);
// The same rule as flags in the cells' order of an unstructured zone, true where a cell is kept, so
// that a tool judges a body by exactly the surface a run intersects.
std::vector<bool> KeptUnstructuredCells(FEL_pointer<FEL_mesh> zone);
