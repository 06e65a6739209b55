// What every mesh shares: properties, the bounding-box cache, coordinates and iblank values.
#include "FEL_mesh.h"

#include <cassert>
#include <iostream>

namespace {

// Times of a cached box and a request match when equal, or when a float time equals an
// integer one as a float.
bool same_time(const FEL_time& a, const FEL_time& b) {
    if (a.representation == b.representation) {
        if (a.representation == FEL_TIME_STEP) return a.value.i == b.value.i;
        if (a.representation == FEL_TIME_UNDEFINED) return true;
        return a.value.f == b.value.f;
    }
    if (a.representation == FEL_TIME_FLOAT && b.representation == FEL_TIME_STEP)
        return a.value.f == float(b.value.i);
    if (a.representation == FEL_TIME_STEP && b.representation == FEL_TIME_FLOAT)
        return float(a.value.i) == b.value.f;
    return false;
}

// The single value of a property that every mesh answers.
int single_value(const FEL_mesh& mesh, FEL_set_keyword_enum keyword) {
    int value = 0;
    const int res = mesh.get(keyword, nullptr, &value, -1);
    assert(res == 1);
    (void)res;
    return value;
}

}  // namespace

int FEL_iblank_combine(int a, int b) {
    if (a == 1) return b;
    if (a == 2) return b != 0 ? 2 : 0;
    if (a == 0) return 0;
    if (b == 1) return a;
    if (b == 2) return 2;
    if (b == 0) return 0;
    return a < b ? a : b;
}

FEL_mesh::FEL_mesh(const std::string& name)
    : FEL_mutex_reference_counted_object(name),
      simplicial_decomposition(1),
      interpolation(16),
      bounding_box_cached(false) {}

int FEL_mesh::set(FEL_set_keyword_enum keyword, int value) {
    if (keyword == FEL_SIMPLICIAL_DECOMPOSITION && value >= 0 && value <= 2) {
        simplicial_decomposition = value;
        return 1;
    }
    if (keyword == FEL_INTERPOLATION && (value == 1 || value == 16 || value == 32 || value == 64)) {
        interpolation = value;
        return 1;
    }
    return 0;
}

int FEL_mesh::get(FEL_set_keyword_enum keyword, int* count, int* values, int) const {
    int value = 0;
    switch (keyword) {
        case FEL_SIMPLICIAL_DECOMPOSITION:
            value = simplicial_decomposition;
            break;
        case FEL_INTERPOLATION:
            value = interpolation;
            break;
        case FEL_VARIES_WITH_TIME:
            value = 0;
            break;
        default:
            return 0;
    }
    values[0] = value;
    if (count != nullptr) *count = 1;
    return 1;
}

int FEL_mesh::get_interpolation() const {
    return single_value(*this, FEL_INTERPOLATION);
}

int FEL_mesh::get_simplicial_decomposition() const {
    return single_value(*this, FEL_SIMPLICIAL_DECOMPOSITION);
}

int FEL_mesh::get_structured_dimensions(int* dims) const {
    return get(FEL_STRUCTURED_DIMENSIONS, nullptr, dims, -1);
}

int FEL_mesh::get_n_zones() const {
    return single_value(*this, FEL_N_ZONES);
}

bool FEL_mesh::varies_with_time() const {
    return single_value(*this, FEL_VARIES_WITH_TIME) != 0;
}

int FEL_mesh::get_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                               const FEL_time& requested) {
    FEL_time time = requested;
    if (time.representation == FEL_TIME_PHYSICAL) convert_time(requested, FEL_TIME_FLOAT, &time);
    if (bounding_box_cached && (same_time(time, bounding_box_time) || !varies_with_time())) {
        *min = bounding_box_min;
        *max = bounding_box_max;
        return 1;
    }
    const int res = compute_bounding_box(&bounding_box_min, &bounding_box_max, time);
    if (res != 1) return res;
    bounding_box_cached = true;
    bounding_box_time = time;
    *min = bounding_box_min;
    *max = bounding_box_max;
    return 1;
}

bool FEL_mesh::inside_bounding_box(const FEL_phys_pos& pos) {
    FEL_vector3<float> min, max;
    if (get_bounding_box(&min, &max, pos.time) != 1) return false;
    return pos.x >= min.x && pos.x <= max.x && pos.y >= min.y && pos.y <= max.y && pos.z >= min.z &&
           pos.z <= max.z;
}

int FEL_mesh::get_node_index(const FEL_vertex_cell& vertex) const {
    int index = -1;
    get_node_indices(vertex, &index);
    return index;
}

int FEL_mesh::central_difference_neighbors(const FEL_cell&, int, FEL_cell*) const {
    return FEL_NOT_IMPLEMENTED;
}

int FEL_mesh::central_difference_neighbors(const FEL_vertex_cell&, int) const {
    return FEL_NOT_IMPLEMENTED;
}

int FEL_mesh::coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                         FEL_vector3<float>* out) const {
    return coordinates_at_cell(vertex, out);
}

int FEL_mesh::coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                            FEL_vector3<float>* out) const {
    const int i = int(pos.i), j = int(pos.j), k = int(pos.k);
    FEL_cell cell(FEL_CELL_HEXAHEDRON, i, j, k, -1, pos.zone);
    cell.time = pos.time;
    FEL_vector3<float> c[8];
    const int res = coordinates_at_cell(cell, c);
    if (res != 1) return res;
    const float fi = pos.i - float(i), fj = pos.j - float(j), fk = pos.k - float(k);
    FEL_vector3<float> along_i[4];
    for (int n = 0; n < 4; ++n) along_i[n] = c[2 * n] * (1.0f - fi) + c[2 * n + 1] * fi;
    const FEL_vector3<float> low = along_i[0] * (1.0f - fj) + along_i[1] * fj;
    const FEL_vector3<float> high = along_i[2] * (1.0f - fj) + along_i[3] * fj;
    *out = low * (1.0f - fk) + high * fk;
    return 1;
}

int FEL_mesh::iblank_at_cell(const FEL_cell& cell, int* out) const {
    for (int n = 0; n < cell.get_n_nodes(); ++n) out[n] = 1;
    return 1;
}

int FEL_mesh::iblank_at_vertex_cell(const FEL_vertex_cell&, int* out) const {
    *out = 1;
    return 1;
}

int FEL_mesh::combined_iblank_at_cell(const FEL_cell& cell, int* out) const {
    *out = 0;
    int iblank[8];
    const int res = iblank_at_cell(cell, iblank);
    if (res != 1) return res;
    for (int n = 0; n < cell.get_n_nodes(); ++n) {
        const int value = iblank[n];
        if (value == 1)
            *out |= 1;
        else if (value == 2)
            *out |= 2;
        else if (value == 0 || value == 101)
            *out |= 4;
        else if (value < 0)
            *out |= 8;
        else
            std::cerr << "FEL_mesh::combined_iblank_at_cell() " << cell << " has iblank of "
                      << value << "?!" << std::endl;
    }
    return 1;
}

int FEL_mesh::coordinates_and_iblank_at_cell(const FEL_cell& cell,
                                             FEL_vector3f_and_int* out) const {
    FEL_vector3<float> xyz[8];
    int iblank[8];
    int res = coordinates_at_cell(cell, xyz);
    if (res != 1) return res;
    res = iblank_at_cell(cell, iblank);
    if (res != 1) return res;
    for (int n = 0; n < cell.get_n_nodes(); ++n) {
        out[n].v = xyz[n];
        out[n].i = iblank[n];
    }
    return 1;
}

int FEL_mesh::coordinates_and_iblank_at_vertex_cell(const FEL_vertex_cell& vertex,
                                                    FEL_vector3f_and_int* out) const {
    FEL_vector3<float> xyz;
    int iblank = 1;
    int res = coordinates_at_vertex_cell(vertex, &xyz);
    if (res != 1) return res;
    res = iblank_at_vertex_cell(vertex, &iblank);
    if (res != 1) return res;
    out->v = xyz;
    out->i = iblank;
    return 1;
}

int FEL_mesh::convert_time(const FEL_time&, FEL_time_representation_enum, FEL_time* out) const {
    *out = FEL_time();
    return 1;
}

int FEL_mesh::compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                   const FEL_time& time) {
    FEL_vertex_cell_iter it;
    if (begin(&it) != 1) return 0;
    bool first = true;
    for (; !it.done; ++it) {
        it.cell.time = time;
        FEL_vector3<float> p;
        const int res = coordinates_at_vertex_cell(it.cell, &p);
        if (res != 1) return res;
        if (first) {
            *min = p;
            *max = p;
            first = false;
            continue;
        }
        for (int a = 0; a < 3; ++a) {
            if (p[a] < (*min)[a]) (*min)[a] = p[a];
            if (p[a] > (*max)[a]) (*max)[a] = p[a];
        }
    }
    return first ? 0 : 1;
}

int FEL_single_mesh::get(FEL_set_keyword_enum keyword, int* count, int* values, int zone) const {
    if (keyword == FEL_N_ZONES) {
        values[0] = 1;
        if (count != nullptr) *count = 1;
        return 1;
    }
    return FEL_mesh::get(keyword, count, values, zone);
}

FEL_pointer<FEL_mesh> FEL_single_mesh::get_zone(int zone) const {
    if (zone != 0) return FEL_pointer<FEL_mesh>();
    return FEL_pointer<FEL_mesh>(const_cast<FEL_single_mesh*>(this));
}
