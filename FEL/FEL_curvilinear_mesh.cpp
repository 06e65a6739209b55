// Node lookups of the curvilinear meshes: coordinates and iblank values by linear node number.
#include "FEL_curvilinear_mesh.h"

namespace {

// Slot in the option array of a curvilinear keyword, or -1.
int option_slot(FEL_set_keyword_enum keyword) {
    switch (keyword) {
        case FEL_CURVILINEAR_OPTION_2:
            return 0;
        case FEL_CURVILINEAR_OPTION_3:
            return 1;
        case FEL_CURVILINEAR_OPTION_8:
            return 2;
        case FEL_CURVILINEAR_OPTION_9:
            return 3;
        case FEL_CURVILINEAR_OPTION_10:
            return 4;
        default:
            return -1;
    }
}

}  // namespace

FEL_curvilinear_mesh::FEL_curvilinear_mesh(int ni, int nj, int nk, FEL_vector3<float>* xyz,
                                           FEL_vector3f_and_int* xyzi, const std::string& name)
    : FEL_structured_mesh(ni, nj, nk, name), xyz(xyz), xyzi(xyzi), options{0, 0, 0, 0, 0} {}

FEL_curvilinear_mesh::~FEL_curvilinear_mesh() {
    delete[] xyz;
    delete[] xyzi;
}

int FEL_curvilinear_mesh::set(FEL_set_keyword_enum keyword, int value) {
    const int slot = option_slot(keyword);
    if (slot < 0) return FEL_structured_mesh::set(keyword, value);
    options[slot] = value;
    return 1;
}

int FEL_curvilinear_mesh::get(FEL_set_keyword_enum keyword, int* count, int* values,
                              int zone) const {
    const int slot = option_slot(keyword);
    if (slot < 0) return FEL_structured_mesh::get(keyword, count, values, zone);
    values[0] = options[slot];
    if (count != nullptr) *count = 1;
    return 1;
}

int FEL_curvilinear_mesh::coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const {
    if (cell.type == FEL_CELL_HEXAHEDRON) {
        if (cell.i < 0 || cell.i >= ni - 1 || cell.j < 0 || cell.j >= nj - 1 || cell.k < 0 ||
            cell.k >= nk - 1)
            return 0;
        const int base = ijk_to_int(cell.i, cell.j, cell.k);
        for (int c = 0; c < 8; ++c) out[c] = node(base + corner_offset[c]);
        return 1;
    }
    int nodes[8];
    if (get_node_indices(cell, nodes) != 1) return 0;
    for (int c = 0; c < cell.get_n_nodes(); ++c) out[c] = node(nodes[c]);
    return 1;
}

int FEL_curvilinear_mesh::coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                                     FEL_vector3<float>* out) const {
    if (!on_mesh(vertex)) return 0;
    *out = node(ijk_to_int(vertex.i, vertex.j, vertex.k));
    return 1;
}

int FEL_curvilinear_mesh::iblank_at_cell(const FEL_cell& cell, int* out) const {
    int nodes[8];
    if (get_node_indices(cell, nodes) != 1) return 0;
    for (int c = 0; c < cell.get_n_nodes(); ++c) out[c] = xyzi != nullptr ? xyzi[nodes[c]].i : 1;
    return 1;
}

int FEL_curvilinear_mesh::iblank_at_vertex_cell(const FEL_vertex_cell& vertex, int* out) const {
    if (!on_mesh(vertex)) return 0;
    *out = xyzi != nullptr ? xyzi[ijk_to_int(vertex.i, vertex.j, vertex.k)].i : 1;
    return 1;
}

int FEL_curvilinear_mesh::locate(const FEL_phys_pos&, FEL_cell*) const {
    return FEL_NOT_IMPLEMENTED;
}

int FEL_curvilinear_mesh::locate(const FEL_phys_pos&, FEL_cell&, FEL_cell*) const {
    return FEL_NOT_IMPLEMENTED;
}

int FEL_curvilinear_mesh::compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                               const FEL_time&) {
    const int n = ni * nj * nk;
    if (n <= 0) return 0;
    *min = *max = node(0);
    for (int p = 1; p < n; ++p) {
        const FEL_vector3<float>& v = node(p);
        for (int a = 0; a < 3; ++a) {
            if (v[a] < (*min)[a]) (*min)[a] = v[a];
            if (v[a] > (*max)[a]) (*max)[a] = v[a];
        }
    }
    return 1;
}

std::size_t FEL_curvilinear_mesh::node_storage_bytes() const {
    const std::size_t n = std::size_t(ni) * std::size_t(nj) * std::size_t(nk);
    return n * (xyz != nullptr ? sizeof(FEL_vector3<float>) : sizeof(FEL_vector3f_and_int));
}
