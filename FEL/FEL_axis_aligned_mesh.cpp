// Axis lookups and the axis-aligned meshes that combine three of them.
#include "FEL_axis_aligned_mesh.h"

int FEL_regular_axis::locate(float x, int* i) const {
    const int cell = int((x - origin) / spacing);
    if (cell >= 0 && cell < count - 1) {
        *i = cell;
        return 1;
    }
    if (cell == count - 1 && x == upper) {
        *i = cell - 1;
        return 1;
    }
    return 0;
}

int FEL_regular_axis::coordinates_at_index(int i, float* x) const {
    *x = float(i) * spacing + origin;
    return i >= 0 && i < count ? 1 : 0;
}

int FEL_regular_axis::coordinates_at_structured(float value, float* x) const {
    *x = value * spacing + origin;
    return value >= 0.0f && value <= float(count - 1) ? 1 : 0;
}

int FEL_regular_axis::compute_bounding_interval(float* low, float* high) const {
    *low = spacing < 0 ? upper : origin;
    *high = spacing < 0 ? origin : upper;
    return 1;
}

int FEL_irregular_axis::locate(float x, int* i) const {
    if (count < 2 || x < values[0] || x > values[count - 1]) return 0;
    int low = 0, high = count - 1;
    while (high - low > 1) {
        const int mid = (low + high) / 2;
        if (x >= values[mid])
            low = mid;
        else
            high = mid;
    }
    *i = low;
    return 1;
}

int FEL_irregular_axis::coordinates_at_index(int i, float* x) const {
    if (i < 0 || i >= count) return 0;
    *x = values[i];
    return 1;
}

int FEL_irregular_axis::coordinates_at_structured(float value, float* x) const {
    const int i = int(value);
    if (value < 0.0f || i > count - 1) return 0;
    if (i == count - 1) {
        if (value != float(count - 1)) return 0;
        *x = values[i];
        return 1;
    }
    const float fraction = value - float(i);
    *x = values[i] + fraction * (values[i + 1] - values[i]);
    return 1;
}

int FEL_irregular_axis::compute_bounding_interval(float* low, float* high) const {
    if (count < 1) return 0;
    *low = values[0];
    *high = values[count - 1];
    return 1;
}

int FEL_null_axis::locate(float, int* i) const {
    *i = 0;
    return 1;
}

int FEL_null_axis::coordinates_at_index(int, float* x) const {
    *x = 0.0f;
    return 1;
}

int FEL_null_axis::coordinates_at_structured(float, float* x) const {
    *x = 0.0f;
    return 1;
}

int FEL_null_axis::compute_bounding_interval(float* low, float* high) const {
    *low = *high = 0.0f;
    return 1;
}

FEL_axis_aligned_mesh::FEL_axis_aligned_mesh(FEL_axis* x, FEL_axis* y, FEL_axis* z,
                                             const std::string& name)
    : FEL_structured_mesh(x->get_count(), y->get_count(), z->get_count(), name), axes{x, y, z} {}

FEL_axis_aligned_mesh::~FEL_axis_aligned_mesh() {
    for (FEL_axis* axis : axes) delete axis;
}

int FEL_axis_aligned_mesh::coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                                      FEL_vector3<float>* out) const {
    const int index[3] = {vertex.i, vertex.j, vertex.k};
    for (int a = 0; a < 3; ++a) {
        const int res = axes[a]->coordinates_at_index(index[a], &(*out)[a]);
        if (res != 1) return res;
    }
    return 1;
}

int FEL_axis_aligned_mesh::coordinates_at_cell(const FEL_cell& cell,
                                               FEL_vector3<float>* out) const {
    FEL_vector3<int> points[8];
    const int n = cell_points(cell, points);
    if (n == 0) return 0;
    for (int c = 0; c < n; ++c) {
        const int res = coordinates_at_vertex_cell(
            FEL_vertex_cell(points[c].x, points[c].y, points[c].z), &out[c]);
        if (res != 1) return res;
    }
    return 1;
}

int FEL_axis_aligned_mesh::coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                                         FEL_vector3<float>* out) const {
    const float index[3] = {pos.i, pos.j, pos.k};
    for (int a = 0; a < 3; ++a) {
        const int res = axes[a]->coordinates_at_structured(index[a], &(*out)[a]);
        if (res != 1) return res;
    }
    return 1;
}

int FEL_axis_aligned_mesh::compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                                const FEL_time&) {
    for (int a = 0; a < 3; ++a) {
        const int res = axes[a]->compute_bounding_interval(&(*min)[a], &(*max)[a]);
        if (res != 1) return res;
    }
    return 1;
}

int FEL_axis_aligned_mesh::locate(const FEL_phys_pos& pos, FEL_cell* out) const {
    const float x[3] = {pos.x, pos.y, pos.z};
    int index[3];
    for (int a = 0; a < 3; ++a) {
        const int res = axes[a]->locate(x[a], &index[a]);
        if (res != 1) return res;
    }
    const FEL_cell hex(FEL_CELL_HEXAHEDRON, index[0], index[1], index[2]);
    if (simplicial_decomposition == 0) {
        *out = hex;
        return 1;
    }
    float fraction[3];
    for (int a = 0; a < 3; ++a) {
        float low = 0.0f, high = 0.0f;
        axes[a]->coordinates_at_index(index[a], &low);
        axes[a]->coordinates_at_index(index[a] + 1, &high);
        fraction[a] = high != low ? (x[a] - low) / (high - low) : 0.0f;
    }
    return locate_subsimplex(hex, fraction[0], fraction[1], fraction[2], out);
}

FEL_regular_mesh::FEL_regular_mesh(int ni, int nj, int nk, float dx, float dy, float dz,
                                   const std::string& name)
    : FEL_axis_aligned_mesh(new FEL_regular_axis(ni, 0.0f, dx), new FEL_regular_axis(nj, 0.0f, dy),
                            new FEL_regular_axis(nk, 0.0f, dz), name) {}

FEL_regular_mesh2::FEL_regular_mesh2(int ni, int nj, float dx, float dy, const std::string& name)
    : FEL_axis_aligned_mesh(new FEL_regular_axis(ni, 0.0f, dx), new FEL_regular_axis(nj, 0.0f, dy),
                            new FEL_null_axis(), name) {}

int FEL_regular_mesh2::locate(const FEL_phys_pos& pos, FEL_cell* out) const {
    int i = 0, j = 0;
    int res = axes[0]->locate(pos.x, &i);
    if (res != 1) return res;
    res = axes[1]->locate(pos.y, &j);
    if (res != 1) return res;
    if (simplicial_decomposition == 0) {
        *out = FEL_cell(FEL_CELL_QUADRILATERAL, i, j, 0, 2);
        return 1;
    }
    float x0, x1, y0, y1;
    axes[0]->coordinates_at_index(i, &x0);
    axes[0]->coordinates_at_index(i + 1, &x1);
    axes[1]->coordinates_at_index(j, &y0);
    axes[1]->coordinates_at_index(j + 1, &y1);
    const float u = (pos.x - x0) / (x1 - x0), v = (pos.y - y0) / (y1 - y0);
    // k-face rows: (0,1,3) below and (0,3,2) above the even diagonal; (0,1,2) below and (1,3,2)
    // above the odd one.
    int sub = 0;
    if (simplicial_decomposition_odd(i, j, 0))
        sub = u + v <= 1.0f ? 10 : 11;
    else
        sub = v <= u ? 8 : 9;
    *out = FEL_cell(FEL_CELL_TRIANGLE, i, j, 0, sub);
    return 1;
}

FEL_regular_xy_irregular_z_mesh::FEL_regular_xy_irregular_z_mesh(int ni, int nj, int nk, float dx,
                                                                 float dy, float* z,
                                                                 const std::string& name)
    : FEL_axis_aligned_mesh(new FEL_regular_axis(ni, 0.0f, dx), new FEL_regular_axis(nj, 0.0f, dy),
                            new FEL_irregular_axis(nk, z), name) {}
