// Body triangulation: structured surfaces two rows at a time, unstructured ones cell by cell.
#include "intersector/convert.h"

#include <cmath>

namespace {
FEL_vector3<double> Wide(const FEL_vector3<float>& v) {
    return FEL_vector3<double>(v);
}

// FEL_Close(a, b) never holds when |a - b| exceeds 0.00021 * |a| + 0.0002 (its mantissa, relative
// and absolute steps), so a wider gap decides at once, exactly as FEL_Close would.
bool Apart(float a, float b) {
    double d = std::fabs(double(a) - double(b));
    return d > 0.001 * (std::fabs(double(a)) + 1.0);
}

bool SameVertex(const FEL_vector3<float>& a, const FEL_vector3<float>& b) {
    for (int n = 0; n < 3; ++n)
        if (Apart(a[n], b[n]) || !FEL_Close(a[n], b[n])) return false;
    return true;
}
}  // namespace

bool IsDroppedTriangle(const FEL_vector3<float> v[3]) {
    return SameVertex(v[0], v[1]) || SameVertex(v[1], v[2]) || SameVertex(v[2], v[0]);
}

long CountDroppedTriangles(FEL_pointer<FEL_mesh> mesh, std::vector<FEL_vector3<float>>* kept) {
    if (mesh->is_structured_mesh()) return 0;
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 2);
    long dropped = 0;
    FEL_cell_iter it;
    FEL_vector3<float> v[8];
    for (mesh->begin(&it); !it.done; ++it) {
        mesh->coordinates_at_cell(it.cell, v);
        if (IsDroppedTriangle(v))
            ++dropped;
        else if (kept)
            kept->insert(kept->end(), v, v + 3);
    }
    return dropped;
}

void ConvertTriangles(FEL_pointer<FEL_mesh> mesh, std::vector<Triangle*>& triangles) {
    if (!mesh->is_structured_mesh()) {
        ConvertUnstructuredTriangles(mesh, triangles);
        return;
    }
    int d[3];
    mesh->get_structured_dimensions(d);
    if (d[1] <= 1) return;
    for (int j = 1; j < d[1]; ++j) {
        FEL_vertex_cell_iter rowA, rowB;
        mesh->begin(&rowA, FEL_ITER_FIX_J, j - 1, FEL_ITER_FIX_K, d[2] - 1, 0);
        mesh->begin(&rowB, FEL_ITER_FIX_J, j, FEL_ITER_FIX_K, d[2] - 1, 0);
        FEL_vertex_cell firstA = rowA.cell, firstB = rowB.cell;
        FEL_vertex_cell curA = firstA, curB = firstB, prevA, prevB;
        FEL_vector3<float> a, b, pa, pb;
        while (!rowA.done && !rowB.done) {
            prevA = curA;
            prevB = curB;
            curA = rowA.cell;
            curB = rowB.cell;
            mesh->coordinates_at_vertex_cell(curA, &a);
            mesh->coordinates_at_vertex_cell(curB, &b);
            mesh->coordinates_at_vertex_cell(prevA, &pa);
            mesh->coordinates_at_vertex_cell(prevB, &pb);
            triangles.push_back(new Triangle(Wide(a), Wide(pa), Wide(pb)));
            triangles.push_back(new Triangle(Wide(pb), Wide(b), Wide(a)));
            ++rowA;
            ++rowB;
        }
        // Closes the row against its first column; pa, pb still hold the second-last column.
        mesh->coordinates_at_vertex_cell(firstA, &a);
        mesh->coordinates_at_vertex_cell(firstB, &b);
        triangles.push_back(new Triangle(Wide(a), Wide(pa), Wide(pb)));
        triangles.push_back(new Triangle(Wide(pb), Wide(b), Wide(a)));
    }
}

void ConvertUnstructuredTriangles(FEL_pointer<FEL_mesh> mesh, std::vector<Triangle*>& triangles) {
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 2);
    FEL_cell_iter it;
    FEL_vector3<float> v[8];
    for (mesh->begin(&it); !it.done; ++it) {
        mesh->coordinates_at_cell(it.cell, v);
        if (IsDroppedTriangle(v)) continue;
        triangles.push_back(new Triangle(Wide(v[0]), Wide(v[1]), Wide(v[2])));
    }
}

std::vector<bool> KeptUnstructuredCells(FEL_pointer<FEL_mesh> zone) {
    zone->set(FEL_SIMPLICIAL_DECOMPOSITION, 2);
    std::vector<bool> vecKept;
    FEL_cell_iter it;
    FEL_vector3<float> v[8];
    for (zone->begin(&it); !it.done; ++it) {
        zone->coordinates_at_cell(it.cell, v);
        vecKept.push_back(!IsDroppedTriangle(v));
    }
    return vecKept;
}
