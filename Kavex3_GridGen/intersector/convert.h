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
