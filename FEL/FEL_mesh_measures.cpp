// What every mesh measures of its cells: collapsed edges, volume, centroid, edge lengths, and the
// vertices nearest to a position.
#include "FEL_mesh.h"

#include <cfloat>
#include <cmath>

namespace {

float squared_distance(const FEL_vector3<float>& a, const FEL_vector3<float>& b) {
    const FEL_vector3<float> d = a - b;
    return d.x * d.x + d.y * d.y + d.z * d.z;
}

bool same_point(const FEL_vector3<float>& a, const FEL_vector3<float>& b) {
    if (g_blnUseClose) return FEL_Close(a.x, b.x) && FEL_Close(a.y, b.y) && FEL_Close(a.z, b.z);
    return a == b;
}

float triple_product(const FEL_vector3<float>& a, const FEL_vector3<float>& b,
                     const FEL_vector3<float>& c) {
    return FEL_dot(a, FEL_cross(b, c));
}

// The length of the cell's longest or shortest edge, compared squared. With no edges the
// longest is 0 and the shortest the root of FLT_MAX. The first failing code is passed on.
int extreme_edge_length(const FEL_mesh& mesh, const FEL_cell& cell, bool longest, float* out) {
    int n = 0;
    FEL_cell edges[FEL_MAX_RELATED_CELLS];
    const int res = mesh.down_cells(cell, 1, &n, edges);
    if (res != 1) return res;
    float extreme = longest ? 0.0f : FLT_MAX;
    for (int e = 0; e < n; ++e) {
        FEL_vector3<float> ends[2];
        const int r = mesh.coordinates_at_cell(edges[e], ends);
        if (r != 1) return r;
        const float d = squared_distance(ends[0], ends[1]);
        if (longest ? d > extreme : d < extreme) extreme = d;
    }
    *out = std::sqrt(extreme);
    return 1;
}

}  // namespace

int FEL_mesh::locate_close_vertex_cell(const FEL_phys_pos& pos, FEL_vertex_cell* out) const {
    const FEL_vector3<float> target(pos.x, pos.y, pos.z);
    float best = FLT_MAX;
    bool found = false;
    FEL_vertex_cell_iter it;
    for (begin(&it); !it.done; ++it) {
        FEL_vector3<float> p;
        if (coordinates_at_vertex_cell(it.cell, &p) != 1) continue;
        const float d = squared_distance(p, target);
        if (!found || d < best) {
            best = d;
            *out = it.cell;
            found = true;
        }
    }
    return found ? 1 : 0;
}

bool FEL_mesh::cell_has_collapsed_edge(const FEL_cell& cell) const {
    int n = 0;
    FEL_cell edges[FEL_MAX_RELATED_CELLS];
    if (down_cells(cell, 1, &n, edges) != 1) return false;
    for (int e = 0; e < n; ++e) {
        FEL_vector3<float> ends[2];
        if (coordinates_at_cell(edges[e], ends) != 1) continue;
        if (same_point(ends[0], ends[1])) return true;
    }
    return false;
}

int FEL_mesh::volume_of_cell(const FEL_cell& cell, double* out) const {
    if (cell.type != FEL_CELL_TETRAHEDRON && cell.type != FEL_CELL_HEXAHEDRON) return 0;
    FEL_vector3<float> p[8];
    const int res = coordinates_at_cell(cell, p);
    if (res != 1) return res;
    float sum = 0.0f;
    if (cell.type == FEL_CELL_TETRAHEDRON) {
        sum = triple_product(p[1] - p[0], p[2] - p[0], p[3] - p[0]);
    } else {
        // Long-diagonal form over corners numbered by bits (1: +i, 2: +j, 4: +k); exact for
        // hexahedra with bilinear faces.
        const FEL_vector3<float> diagonal = p[7] - p[0];
        sum = triple_product(diagonal, p[1] - p[0], p[3] - p[5]);
        sum = sum + triple_product(diagonal, p[4] - p[0], p[5] - p[6]);
        sum = sum + triple_product(diagonal, p[2] - p[0], p[6] - p[3]);
    }
    *out = std::fabs(double(sum) / 6.0);
    return 1;
}

int FEL_mesh::centroid_of_cell(const FEL_cell& cell, FEL_vector3<float>* out) const {
    FEL_vector3<float> p[8];
    const int res = coordinates_at_cell(cell, p);
    if (res != 1) return res;
    const int n = cell.get_n_nodes();
    if (n == 0) return 0;
    FEL_vector3<float> sum = p[0];
    for (int c = 1; c < n; ++c) sum += p[c];
    *out = sum * (1.0f / float(n));
    return 1;
}

int FEL_mesh::longest_edge_length_of_cell(const FEL_cell& cell, float* out) const {
    return extreme_edge_length(*this, cell, true, out);
}

int FEL_mesh::shortest_edge_length_of_cell(const FEL_cell& cell, float* out) const {
    return extreme_edge_length(*this, cell, false, out);
}

int FEL_mesh::closest_vertex_of_cell(const FEL_phys_pos& pos, const FEL_cell& cell,
                                     FEL_vertex_cell* out) const {
    int n = 0;
    FEL_cell vertices[FEL_MAX_RELATED_CELLS];
    const int res = down_cells(cell, 0, &n, vertices);
    if (res != 1) return res;
    const FEL_vector3<float> target(pos.x, pos.y, pos.z);
    float best = FLT_MAX;
    for (int v = 0; v < n; ++v) {
        FEL_vector3<float> p;
        const int r = coordinates_at_cell(vertices[v], &p);
        if (r != 1) return r;
        const float d = squared_distance(p, target);
        if (d < best) {
            best = d;
            *out = FEL_vertex_cell(vertices[v]);
        }
    }
    return 1;
}
