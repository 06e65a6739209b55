// Transformed meshes: forwarding to the wrapped mesh, translation and rotation of nodes.
#include "FEL_transformed_mesh.h"

#include <cmath>

int FEL_transformed_mesh::set(FEL_set_keyword_enum keyword, int value) {
    return mesh->set(keyword, value);
}
int FEL_transformed_mesh::get(FEL_set_keyword_enum keyword, int* count, int* values,
                              int zone) const {
    return mesh->get(keyword, count, values, zone);
}
int FEL_transformed_mesh::get_interpolation() const {
    return mesh->get_interpolation();
}
int FEL_transformed_mesh::get_simplicial_decomposition() const {
    return mesh->get_simplicial_decomposition();
}
int FEL_transformed_mesh::get_structured_dimensions(int* dims) const {
    return mesh->get_structured_dimensions(dims);
}
int FEL_transformed_mesh::get_n_zones() const {
    return mesh->get_n_zones();
}
bool FEL_transformed_mesh::varies_with_time() const {
    return mesh->varies_with_time();
}
int FEL_transformed_mesh::card(int dim) const {
    return mesh->card(dim);
}
bool FEL_transformed_mesh::on_mesh(const FEL_vertex_cell& vertex) const {
    return mesh->on_mesh(vertex);
}
int FEL_transformed_mesh::get_node_indices(const FEL_cell& cell, int* out) const {
    return mesh->get_node_indices(cell, out);
}
int FEL_transformed_mesh::adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const {
    return mesh->adjacent_cells(cell, n, out);
}
int FEL_transformed_mesh::decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const {
    return mesh->decomposition_cells(cell, n, out);
}
int FEL_transformed_mesh::up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                                   int flags) const {
    return mesh->up_cells(cell, dim, max_n, n, out, flags);
}
int FEL_transformed_mesh::down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const {
    return mesh->down_cells(cell, dim, n, out);
}
int FEL_transformed_mesh::int_to_cell(int dim, int index, FEL_cell* cell, int zone) const {
    return mesh->int_to_cell(dim, index, cell, zone);
}
int FEL_transformed_mesh::cell_to_int(const FEL_cell& cell, int* out) const {
    return mesh->cell_to_int(cell, out);
}
int FEL_transformed_mesh::central_difference_neighbors(const FEL_cell& cell, int axis,
                                                       FEL_cell* out) const {
    return mesh->central_difference_neighbors(cell, axis, out);
}
int FEL_transformed_mesh::central_difference_neighbors(const FEL_vertex_cell& vertex,
                                                       int axis) const {
    return mesh->central_difference_neighbors(vertex, axis);
}
int FEL_transformed_mesh::iblank_at_cell(const FEL_cell& cell, int* out) const {
    return mesh->iblank_at_cell(cell, out);
}
int FEL_transformed_mesh::iblank_at_vertex_cell(const FEL_vertex_cell& vertex, int* out) const {
    return mesh->iblank_at_vertex_cell(vertex, out);
}
int FEL_transformed_mesh::convert_time(const FEL_time& time,
                                       FEL_time_representation_enum representation,
                                       FEL_time* out) const {
    return mesh->convert_time(time, representation, out);
}
int FEL_transformed_mesh::begin(FEL_vertex_cell_iter* iter, int key, char* args) const {
    return mesh->begin(iter, key, args);
}
int FEL_transformed_mesh::begin(FEL_cell_iter* iter, int key, char* args) const {
    return mesh->begin(iter, key, args);
}
void FEL_transformed_mesh::done_callback(FEL_cell_iter* iter) const {
    mesh->done_callback(iter);
}
void FEL_transformed_mesh::done_callback(FEL_vertex_cell_iter* iter) const {
    mesh->done_callback(iter);
}
void FEL_transformed_mesh::advance_callback(FEL_cell_iter* iter) const {
    mesh->advance_callback(iter);
}
void FEL_transformed_mesh::advance_callback(FEL_vertex_cell_iter* iter) const {
    mesh->advance_callback(iter);
}
bool FEL_transformed_mesh::is_structured_mesh() const {
    return mesh->is_structured_mesh();
}
bool FEL_transformed_mesh::is_unstructured_mesh() const {
    return mesh->is_unstructured_mesh();
}
bool FEL_transformed_mesh::is_multi_mesh() const {
    return mesh->is_multi_mesh();
}
bool FEL_transformed_mesh::is_curvilinear_surface_mesh() const {
    return mesh->is_curvilinear_surface_mesh();
}
bool FEL_transformed_mesh::is_mesh_iblanked() const {
    return mesh->is_mesh_iblanked();
}

int FEL_transformed_mesh::coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const {
    const int res = mesh->coordinates_at_cell(cell, out);
    if (res == 1) move_nodes(out, cell.get_n_nodes());
    return res;
}

int FEL_transformed_mesh::coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                                     FEL_vector3<float>* out) const {
    const int res = mesh->coordinates_at_vertex_cell(vertex, out);
    if (res == 1) move_nodes(out, 1);
    return res;
}

int FEL_transformed_mesh::coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                                        FEL_vector3<float>* out) const {
    const int res = mesh->coordinates_at_structured_pos(pos, out);
    if (res == 1) move_nodes(out, 1);
    return res;
}

int FEL_transformed_mesh::locate(const FEL_phys_pos& pos, FEL_cell* out) const {
    return mesh->locate(moved_back(pos), out);
}

int FEL_transformed_mesh::locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const {
    return mesh->locate(moved_back(pos), previous, out);
}

int FEL_transformed_mesh::locate_close_vertex_cell(const FEL_phys_pos& pos,
                                                   FEL_vertex_cell* out) const {
    return mesh->locate_close_vertex_cell(moved_back(pos), out);
}

FEL_phys_pos FEL_translated_mesh::moved_back(const FEL_phys_pos& pos) const {
    return FEL_phys_pos(pos.x - offset.x, pos.y - offset.y, pos.z - offset.z, pos.time);
}

FEL_pointer<FEL_mesh> FEL_translated_mesh::get_zone(int zone) const {
    const FEL_pointer<FEL_mesh> inner = mesh->get_zone(zone);
    if (inner.null()) return inner;
    return FEL_pointer<FEL_mesh>(new FEL_translated_mesh(inner, offset, get_name()));
}

void FEL_translated_mesh::move_nodes(FEL_vector3<float>* nodes, int n) const {
    for (int c = 0; c < n; ++c) nodes[c] += offset;
}

int FEL_translated_mesh::compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                              const FEL_time& time) {
    const int res = mesh->get_bounding_box(min, max, time);
    if (res == 1) {
        *min += offset;
        *max += offset;
    }
    return res;
}

bool FEL_rotated_mesh::set_rotation(const FEL_matrix33<float>& new_matrix) {
    matrix = new_matrix;
    return std::fabs(matrix.determinant() - 1.0) < 1e-6;
}

FEL_phys_pos FEL_rotated_mesh::moved_back(const FEL_phys_pos& pos) const {
    const FEL_vector3<float> q = matrix.transpose() * FEL_vector3<float>(pos.x, pos.y, pos.z);
    return FEL_phys_pos(q.x, q.y, q.z, pos.time);
}

FEL_pointer<FEL_mesh> FEL_rotated_mesh::get_zone(int zone) const {
    const FEL_pointer<FEL_mesh> inner = mesh->get_zone(zone);
    if (inner.null()) return inner;
    return FEL_pointer<FEL_mesh>(new FEL_rotated_mesh(inner, matrix, get_name()));
}

void FEL_rotated_mesh::move_nodes(FEL_vector3<float>* nodes, int n) const {
    for (int c = 0; c < n; ++c) nodes[c] = matrix * nodes[c];
}

int FEL_rotated_mesh::compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                           const FEL_time& time) {
    return FEL_mesh::compute_bounding_box(min, max, time);
}

FEL_x_rotated_mesh::FEL_x_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, float angle,
                                       const std::string& name)
    : FEL_rotated_mesh(mesh, name) {
    const float c = std::cos(angle), s = std::sin(angle);
    set_rotation(FEL_matrix33<float>(FEL_vector3<float>(1, 0, 0), FEL_vector3<float>(0, c, -s),
                                     FEL_vector3<float>(0, s, c)));
}

FEL_y_rotated_mesh::FEL_y_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, float angle,
                                       const std::string& name)
    : FEL_rotated_mesh(mesh, name) {
    const float c = std::cos(angle), s = std::sin(angle);
    set_rotation(FEL_matrix33<float>(FEL_vector3<float>(c, 0, s), FEL_vector3<float>(0, 1, 0),
                                     FEL_vector3<float>(-s, 0, c)));
}

FEL_z_rotated_mesh::FEL_z_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, float angle,
                                       const std::string& name)
    : FEL_rotated_mesh(mesh, name) {
    const float c = std::cos(angle), s = std::sin(angle);
    set_rotation(FEL_matrix33<float>(FEL_vector3<float>(c, -s, 0), FEL_vector3<float>(s, c, 0),
                                     FEL_vector3<float>(0, 0, 1)));
}
