// Unstructured meshes over node, triangle and tetrahedron arrays.
#include "FEL_tetrahedral_mesh.h"

#include <algorithm>

namespace {

const int triangle_edges[3][2] = {{0, 1}, {1, 2}, {2, 0}};
const int tetrahedron_edges[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};

}  // namespace

int FEL_unstructured_mesh::get(FEL_set_keyword_enum keyword, int* count, int* values,
                               int zone) const {
    const int n_sets = int(triangle_set_ids.size());
    if (keyword == FEL_N_TRIANGLE_SETS || keyword == FEL_N_TRIANGLE_SETS_2) {
        values[0] = n_sets;
        if (count != nullptr) *count = 1;
        return 1;
    }
    if (keyword == FEL_TRIANGLE_SET_IDS) {
        std::copy(triangle_set_ids.begin(), triangle_set_ids.end(), values);
        if (count != nullptr) *count = n_sets;
        return 1;
    }
    return FEL_single_mesh::get(keyword, count, values, zone);
}

FEL_tetrahedral_mesh::FEL_tetrahedral_mesh(int nVertices, FEL_vector3<float>* vertices,
                                           int nTriangles, FEL_vector3<int>* triangles, int* zones,
                                           int nTetrahedra, FEL_vector4<int>* tetrahedra,
                                           const std::string& name)
    : FEL_unstructured_mesh(name),
      n_vertices(nVertices),
      vertices(vertices),
      n_triangles(nTriangles),
      triangles(triangles),
      zones(zones),
      n_tetrahedra(nTetrahedra),
      tetrahedra(tetrahedra) {
    if (zones != nullptr) {
        triangle_set_ids.assign(zones, zones + n_triangles);
        std::sort(triangle_set_ids.begin(), triangle_set_ids.end());
        triangle_set_ids.erase(std::unique(triangle_set_ids.begin(), triangle_set_ids.end()),
                               triangle_set_ids.end());
    } else if (n_triangles > 0) {
        triangle_set_ids.push_back(0);
    }
}

FEL_tetrahedral_mesh::~FEL_tetrahedral_mesh() {
    delete[] vertices;
    delete[] triangles;
    delete[] zones;
    delete[] tetrahedra;
}

int FEL_tetrahedral_mesh::card(int dim) const {
    switch (dim) {
        case 0:
            return n_vertices;
        case 2:
            return n_triangles;
        case 3:
            return n_tetrahedra;
        default:
            return 0;
    }
}

bool FEL_tetrahedral_mesh::on_mesh(const FEL_vertex_cell& vertex) const {
    return vertex.i >= 0 && vertex.i < n_vertices;
}

int FEL_tetrahedral_mesh::get_node_indices(const FEL_cell& cell, int* out) const {
    const int e = cell.i;
    switch (cell.type) {
        case FEL_CELL_VERTEX:
            if (e < 0 || e >= n_vertices) return 0;
            out[0] = e;
            return 1;
        case FEL_CELL_TRIANGLE:
            if (e < 0 || e >= n_triangles) return 0;
            for (int c = 0; c < 3; ++c) out[c] = triangles[e][c];
            return 1;
        case FEL_CELL_TETRAHEDRON:
            if (e < 0 || e >= n_tetrahedra) return 0;
            for (int c = 0; c < 4; ++c) out[c] = tetrahedra[e][c];
            return 1;
        case FEL_CELL_EDGE:
            if (cell.sub >= 0 && cell.sub < 3 && e >= 0 && e < n_triangles) {
                for (int c = 0; c < 2; ++c) out[c] = triangles[e][triangle_edges[cell.sub][c]];
                return 1;
            }
            if (cell.sub >= 3 && cell.sub < 9 && e >= 0 && e < n_tetrahedra) {
                for (int c = 0; c < 2; ++c)
                    out[c] = tetrahedra[e][tetrahedron_edges[cell.sub - 3][c]];
                return 1;
            }
            return 0;
        default:
            return 0;
    }
}

int FEL_tetrahedral_mesh::adjacent_cells(const FEL_cell&, int* n, FEL_cell*) const {
    *n = 0;
    return FEL_NOT_IMPLEMENTED;
}

int FEL_tetrahedral_mesh::up_cells(const FEL_cell&, int, int, int* n, FEL_cell*, int) const {
    *n = 0;
    return FEL_NOT_IMPLEMENTED;
}

int FEL_tetrahedral_mesh::locate(const FEL_phys_pos&, FEL_cell*) const {
    return FEL_NOT_IMPLEMENTED;
}

int FEL_tetrahedral_mesh::locate(const FEL_phys_pos&, FEL_cell&, FEL_cell*) const {
    return FEL_NOT_IMPLEMENTED;
}

int FEL_tetrahedral_mesh::decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const {
    *n = 0;
    if (cell.type == FEL_CELL_UNINITIALIZED) return 0;
    out[(*n)++] = cell;
    return 1;
}

int FEL_tetrahedral_mesh::down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const {
    *n = 0;
    int nodes[4];
    if (get_node_indices(cell, nodes) != 1) return 0;
    if (dim < 0 || dim >= cell.get_dim()) return 1;
    if (dim == 0) {
        for (int c = 0; c < cell.get_n_nodes(); ++c)
            out[(*n)++] = FEL_vertex_cell(nodes[c], 0, 0, cell.zone);
        return 1;
    }
    if (dim == 1) {
        const bool tetrahedron = cell.type == FEL_CELL_TETRAHEDRON;
        const int first = tetrahedron ? 3 : 0, count = tetrahedron ? 6 : 3;
        for (int e = 0; e < count; ++e)
            out[(*n)++] = FEL_cell(FEL_CELL_EDGE, cell.i, 0, 0, first + e, cell.zone);
        return 1;
    }
    return FEL_NOT_IMPLEMENTED;
}

int FEL_tetrahedral_mesh::int_to_cell(int dim, int index, FEL_cell* cell, int zone) const {
    static const int type_of_dim[4] = {FEL_CELL_VERTEX, FEL_CELL_UNINITIALIZED, FEL_CELL_TRIANGLE,
                                       FEL_CELL_TETRAHEDRON};
    if (dim < 0 || dim > 3 || dim == 1 || index < 0 || index >= card(dim)) return 0;
    *cell = FEL_cell(type_of_dim[dim], index, 0, 0, -1, zone);
    return 1;
}

int FEL_tetrahedral_mesh::cell_to_int(const FEL_cell& cell, int* out) const {
    if (cell.type != FEL_CELL_VERTEX && cell.type != FEL_CELL_TRIANGLE &&
        cell.type != FEL_CELL_TETRAHEDRON)
        return 0;
    if (cell.i < 0 || cell.i >= card(cell.get_dim())) return 0;
    *out = cell.i;
    return 1;
}

int FEL_tetrahedral_mesh::coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const {
    int nodes[4];
    if (get_node_indices(cell, nodes) != 1) return 0;
    for (int c = 0; c < cell.get_n_nodes(); ++c) {
        if (nodes[c] < 0 || nodes[c] >= n_vertices) return 0;
        out[c] = vertices[nodes[c]];
    }
    return 1;
}

int FEL_tetrahedral_mesh::compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                               const FEL_time&) {
    if (n_vertices <= 0) return 0;
    *min = *max = vertices[0];
    for (int p = 1; p < n_vertices; ++p)
        for (int a = 0; a < 3; ++a) {
            if (vertices[p][a] < (*min)[a]) (*min)[a] = vertices[p][a];
            if (vertices[p][a] > (*max)[a]) (*max)[a] = vertices[p][a];
        }
    return 1;
}

int FEL_tetrahedral_mesh::begin(FEL_vertex_cell_iter* iter, int key, char* args) const {
    const int n_nodes[3] = {n_vertices, 1, 1};
    return begin_index_walk(iter, key, args, n_nodes);
}

int FEL_tetrahedral_mesh::begin(FEL_cell_iter* iter, int key, char* args) const {
    const bool volume = n_tetrahedra > 0;
    const int n_elements[3] = {volume ? n_tetrahedra : n_triangles, 1, 1};
    if (begin_index_walk(iter, key, args, n_elements) != 1) return 0;
    iter->cell.type = volume ? FEL_CELL_TETRAHEDRON : FEL_CELL_TRIANGLE;
    return 1;
}
