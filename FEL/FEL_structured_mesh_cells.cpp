// Lattice topology around a cell: its corners, the cells it is made of, the cells it bounds and
// the cells beside it.
#include "FEL_structured_mesh.h"

#include <algorithm>
#include <iostream>

#include "FEL_exception.h"

namespace {

const int identity_corners[8] = {0, 1, 2, 3, 4, 5, 6, 7};

int corner_mask(const int* row, int n) {
    int mask = 0;
    for (int c = 0; c < n; ++c) mask |= 1 << row[c];
    return mask;
}

// Corner pairs, by position in the cell's row, that bound the cell.
const int hexahedron_edges[12][2] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {0, 2}, {1, 3},
                                     {4, 6}, {5, 7}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};

const int tetrahedron_edges[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};

const int ring4_edges[4][2] = {{0, 1}, {1, 2}, {2, 3}, {3, 0}};

const int ring3_edges[3][2] = {{0, 1}, {1, 2}, {2, 0}};

bool contains_all(const FEL_vector3<int>* inner, int n_inner, const FEL_vector3<int>* outer,
                  int n_outer) {
    for (int a = 0; a < n_inner; ++a)
        if (std::find(outer, outer + n_outer, inner[a]) == outer + n_outer) return false;
    return true;
}

bool append_unique(const FEL_cell& cell, int max_n, int* n, FEL_cell* out) {
    if (std::find(out, out + *n, cell) != out + *n) return true;
    if (*n >= max_n) return false;
    out[(*n)++] = cell;
    return true;
}

}  // namespace

void FEL_structured_mesh::cell_to_hex_vertices(const FEL_cell& cell, const int** out) const {
    const int sub = cell.sub;
    switch (cell.type) {
        case FEL_CELL_UNINITIALIZED:
            *out = nullptr;
            return;
        case FEL_CELL_VERTEX:
        case FEL_CELL_HEXAHEDRON:
            *out = identity_corners;
            return;
        case FEL_CELL_EDGE:
            if (sub >= 0 && sub < 21 && sub / 8 < sub % 8) {
                *out = edge_vertex[sub];
                return;
            }
            break;
        case FEL_CELL_TRIANGLE:
            if (sub >= 0 && sub < 20) {
                *out = subtriangle_vertex[sub];
                return;
            }
            break;
        case FEL_CELL_QUADRILATERAL:
            if (sub >= 0 && sub < 3) {
                *out = quadrilateral_vertex[sub];
                return;
            }
            break;
        case FEL_CELL_TETRAHEDRON:
            if (sub >= 0 && sub < 10) {
                *out = subtetra_vertex[sub];
                return;
            }
            break;
        default:
            std::cerr << "FEL_structured_mesh::cell_to_hex_vertices: bad cell type" << std::endl;
            break;
    }
    // A sub outside its table is the same fault of the caller as an unknown type.
    throw FEL_exception(__FILE__, __LINE__);
}

int FEL_structured_mesh::cell_points(const FEL_cell& cell, FEL_vector3<int>* points) const {
    const int* row = nullptr;
    cell_to_hex_vertices(cell, &row);
    if (row == nullptr) return 0;
    const int n = cell.get_n_nodes();
    for (int c = 0; c < n; ++c)
        points[c] = FEL_vector3<int>(cell.i + (row[c] & 1), cell.j + ((row[c] >> 1) & 1),
                                     cell.k + ((row[c] >> 2) & 1));
    return n;
}

int FEL_structured_mesh::get_node_indices(const FEL_cell& cell, int* out) const {
    FEL_vector3<int> points[8];
    const int n = cell_points(cell, points);
    if (n == 0) return 0;
    for (int c = 0; c < n; ++c) {
        const FEL_vector3<int>& p = points[c];
        if (p.x < 0 || p.x >= ni || p.y < 0 || p.y >= nj || p.z < 0 || p.z >= nk) return 0;
    }
    const int base = ijk_to_int(cell.i, cell.j, cell.k);
    const int* row = nullptr;
    cell_to_hex_vertices(cell, &row);
    for (int c = 0; c < n; ++c) out[c] = base + corner_offset[row[c]];
    return 1;
}

int FEL_structured_mesh::cell_from_points(int type, const FEL_vector3<int>* points, int n, int zone,
                                          FEL_cell* out) const {
    FEL_vector3<int> base = points[0];
    for (int p = 1; p < n; ++p)
        for (int a = 0; a < 3; ++a) base[a] = std::min(base[a], points[p][a]);
    int mask = 0;
    for (int p = 0; p < n; ++p) {
        const FEL_vector3<int> d = points[p] - base;
        if (d.x > 1 || d.y > 1 || d.z > 1) return 0;
        mask |= 1 << (d.x + 2 * d.y + 4 * d.z);
    }
    const bool odd = simplicial_decomposition_odd(base.x, base.y, base.z);
    int sub = -2;
    switch (type) {
        case FEL_CELL_VERTEX:
            sub = -1;
            break;
        case FEL_CELL_HEXAHEDRON:
            if (mask == 0xff) sub = -1;
            break;
        case FEL_CELL_EDGE:
            for (int r : {1, 2, 4, odd ? 10 : 3, odd ? 12 : 5, odd ? 20 : 6})
                if (corner_mask(edge_vertex[r], 2) == mask) sub = r;
            break;
        case FEL_CELL_QUADRILATERAL:
            for (int r = 0; r < 3; ++r)
                if (corner_mask(quadrilateral_vertex[r], 4) == mask) sub = r;
            break;
        case FEL_CELL_TRIANGLE:
            for (int r = 0; r < 20; ++r) {
                const bool odd_row = r < 12 ? (r & 2) != 0 : r >= 16;
                if (odd_row == odd && corner_mask(subtriangle_vertex[r], 3) == mask) sub = r;
            }
            break;
        case FEL_CELL_TETRAHEDRON:
            for (int r = odd ? 5 : 0; r < (odd ? 10 : 5); ++r)
                if (corner_mask(subtetra_vertex[r], 4) == mask) sub = r;
            break;
        default:
            break;
    }
    if (sub == -2) return 0;
    *out = FEL_cell(type, base.x, base.y, base.z, sub, zone);
    return 1;
}

int FEL_structured_mesh::vertices_to_edge_cell(int a, int b, const FEL_cell& cell,
                                               FEL_cell* out) const {
    const FEL_vector3<int> points[2] = {
        FEL_vector3<int>(cell.i + (a & 1), cell.j + ((a >> 1) & 1), cell.k + ((a >> 2) & 1)),
        FEL_vector3<int>(cell.i + (b & 1), cell.j + ((b >> 1) & 1), cell.k + ((b >> 2) & 1))};
    return cell_from_points(FEL_CELL_EDGE, points, 2, cell.zone, out);
}

int FEL_structured_mesh::down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const {
    *n = 0;
    FEL_vector3<int> points[8];
    const int n_points = cell_points(cell, points);
    if (n_points == 0) return 0;
    if (dim < 0 || dim >= cell.get_dim()) return 1;
    if (dim == 0) {
        for (int p = 0; p < n_points; ++p)
            out[(*n)++] = FEL_vertex_cell(points[p].x, points[p].y, points[p].z, cell.zone);
        return 1;
    }
    if (dim == 1) {
        const int(*pairs)[2] = ring3_edges;
        int n_pairs = 3;
        if (cell.type == FEL_CELL_HEXAHEDRON) {
            pairs = hexahedron_edges;
            n_pairs = 12;
        } else if (cell.type == FEL_CELL_TETRAHEDRON) {
            pairs = tetrahedron_edges;
            n_pairs = 6;
        } else if (cell.type == FEL_CELL_QUADRILATERAL) {
            pairs = ring4_edges;
            n_pairs = 4;
        }
        for (int e = 0; e < n_pairs; ++e) {
            const FEL_vector3<int> ends[2] = {points[pairs[e][0]], points[pairs[e][1]]};
            if (cell_from_points(FEL_CELL_EDGE, ends, 2, cell.zone, &out[*n]) == 1) ++*n;
        }
        return 1;
    }
    // dim 2 of a three-dimensional cell.
    if (cell.type == FEL_CELL_HEXAHEDRON) {
        for (int f = 0; f < 6; ++f) {
            const int axis = f / 2, far = f % 2;
            out[(*n)++] = FEL_cell(FEL_CELL_QUADRILATERAL, cell.i + (axis == 0 ? far : 0),
                                   cell.j + (axis == 1 ? far : 0), cell.k + (axis == 2 ? far : 0),
                                   axis, cell.zone);
        }
        return 1;
    }
    for (int f = 0; f < 4; ++f) {
        const int* face = subtetra_face[cell.sub][f];
        FEL_vector3<int> corners[3];
        for (int c = 0; c < 3; ++c)
            corners[c] = FEL_vector3<int>(cell.i + (face[c] & 1), cell.j + ((face[c] >> 1) & 1),
                                          cell.k + ((face[c] >> 2) & 1));
        if (cell_from_points(FEL_CELL_TRIANGLE, corners, 3, cell.zone, &out[*n]) == 1) ++*n;
    }
    return 1;
}

int FEL_structured_mesh::decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const {
    *n = 0;
    const bool odd = simplicial_decomposition_odd(cell.i, cell.j, cell.k);
    if (cell.type == FEL_CELL_HEXAHEDRON) {
        for (int t = 0; t < 5; ++t)
            out[(*n)++] = FEL_cell(FEL_CELL_TETRAHEDRON, cell.i, cell.j, cell.k, (odd ? 5 : 0) + t,
                                   cell.zone);
        return 1;
    }
    if (cell.type == FEL_CELL_QUADRILATERAL) {
        for (int t = 0; t < 2; ++t)
            out[(*n)++] = FEL_cell(FEL_CELL_TRIANGLE, cell.i, cell.j, cell.k,
                                   4 * cell.sub + (odd ? 2 : 0) + t, cell.zone);
        return 1;
    }
    if (cell.type == FEL_CELL_UNINITIALIZED) return 0;
    out[(*n)++] = cell;
    return 1;
}

int FEL_structured_mesh::up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                                  int) const {
    *n = 0;
    FEL_vector3<int> points[8];
    const int n_points = cell_points(cell, points);
    if (n_points == 0) return 0;
    if (dim <= cell.get_dim() || dim > 3) return 1;
    // The hexahedra, on the lattice or just beyond it, whose corners hold every point.
    int low[3], high[3];
    for (int a = 0; a < 3; ++a) {
        int lo = points[0][a], hi = points[0][a];
        for (int p = 1; p < n_points; ++p) {
            lo = std::min(lo, points[p][a]);
            hi = std::max(hi, points[p][a]);
        }
        low[a] = lo == hi ? lo - 1 : lo;
        high[a] = lo;
    }
    const bool decomposed = simplicial_decomposition != 0;
    for (int hk = low[2]; hk <= high[2]; ++hk)
        for (int hj = low[1]; hj <= high[1]; ++hj)
            for (int hi = low[0]; hi <= high[0]; ++hi) {
                FEL_cell tops[5];
                int n_tops = 1;
                tops[0] = FEL_cell(FEL_CELL_HEXAHEDRON, hi, hj, hk, -1, cell.zone);
                if (decomposed) decomposition_cells(tops[0], &n_tops, tops);
                for (int t = 0; t < n_tops; ++t) {
                    FEL_cell candidates[FEL_MAX_RELATED_CELLS];
                    int n_candidates = 1;
                    candidates[0] = tops[t];
                    if (dim < 3) down_cells(tops[t], dim, &n_candidates, candidates);
                    for (int c = 0; c < n_candidates; ++c) {
                        int nodes[8];
                        FEL_vector3<int> corners[8];
                        if (get_node_indices(candidates[c], nodes) != 1) continue;
                        const int n_corners = cell_points(candidates[c], corners);
                        if (!contains_all(points, n_points, corners, n_corners)) continue;
                        if (!append_unique(candidates[c], max_n, n, out)) return 0;
                    }
                }
            }
    return 1;
}

int FEL_structured_mesh::adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const {
    *n = 0;
    const int dim = cell.get_dim();
    if (dim == 0) return cell.type == FEL_CELL_VERTEX ? 1 : 0;
    FEL_cell faces[FEL_MAX_RELATED_CELLS];
    int n_faces = 0;
    int res = down_cells(cell, dim - 1, &n_faces, faces);
    if (res != 1) return res;
    for (int f = 0; f < n_faces; ++f) {
        FEL_cell around[FEL_MAX_RELATED_CELLS];
        int n_around = 0;
        res = up_cells(faces[f], dim, FEL_MAX_RELATED_CELLS, &n_around, around, 0);
        if (res != 1) return res;
        for (int a = 0; a < n_around; ++a)
            if (around[a] != cell && !append_unique(around[a], FEL_MAX_RELATED_CELLS, n, out))
                return 0;
    }
    return 1;
}
