// Routing of mesh operations to zones, and walks that pass from one zone to the next.
#include "FEL_multi_mesh.h"

#include <iostream>

FEL_multi_mesh::FEL_multi_mesh(int count, FEL_pointer<FEL_mesh>* meshes, const std::string& name)
    : FEL_mesh(name),
      zones(meshes),
      n_zones(count),
      node_offsets(new int[count > 0 ? count : 1]),
      debug_level(0) {
    int offset = 0;
    for (int z = 0; z < n_zones; ++z) {
        node_offsets[z] = offset;
        offset += zones[z].null() ? 0 : zones[z]->card(0);
    }
}

FEL_multi_mesh::~FEL_multi_mesh() {
    delete[] zones;
    delete[] node_offsets;
}

int FEL_multi_mesh::set(FEL_set_keyword_enum keyword, int value) {
    int res = FEL_mesh::set(keyword, value);
    for (int z = 0; z < n_zones; ++z)
        if (zones[z]->set(keyword, value) == 1) res = 1;
    return res;
}

int FEL_multi_mesh::get(FEL_set_keyword_enum keyword, int* count, int* values, int zone) const {
    if (keyword == FEL_N_ZONES) {
        values[0] = n_zones;
        if (count != nullptr) *count = 1;
        return 1;
    }
    if (valid_zone(zone)) return zones[zone]->get(keyword, count, values, -1);
    return FEL_mesh::get(keyword, count, values, zone);
}

FEL_pointer<FEL_mesh> FEL_multi_mesh::get_zone(int zone) const {
    return valid_zone(zone) ? zones[zone] : FEL_pointer<FEL_mesh>();
}

int FEL_multi_mesh::card(int dim) const {
    int sum = 0;
    for (int z = 0; z < n_zones; ++z) sum += zones[z]->card(dim);
    return sum;
}

bool FEL_multi_mesh::on_mesh(const FEL_vertex_cell& vertex) const {
    return valid_zone(vertex.zone) && zones[vertex.zone]->on_mesh(vertex);
}

int FEL_multi_mesh::get_node_index(const FEL_vertex_cell& vertex) const {
    if (!valid_zone(vertex.zone)) return -1;
    return zones[vertex.zone]->get_node_index(vertex) + node_offsets[vertex.zone];
}

int FEL_multi_mesh::get_node_indices(const FEL_cell& cell, int* out) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    const int res = zones[cell.zone]->get_node_indices(cell, out);
    if (res == 1)
        for (int n = 0; n < cell.get_n_nodes(); ++n) out[n] += node_offsets[cell.zone];
    return res;
}

int FEL_multi_mesh::adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[cell.zone]->adjacent_cells(cell, n, out);
}

int FEL_multi_mesh::decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[cell.zone]->decomposition_cells(cell, n, out);
}

int FEL_multi_mesh::up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                             int flags) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[cell.zone]->up_cells(cell, dim, max_n, n, out, flags);
}

int FEL_multi_mesh::down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[cell.zone]->down_cells(cell, dim, n, out);
}

int FEL_multi_mesh::int_to_cell(int dim, int index, FEL_cell* cell, int zone) const {
    if (!valid_zone(zone)) return FEL_ZONE_OUT_OF_RANGE;
    const int res = zones[zone]->int_to_cell(dim, index, cell, zone);
    if (res == 1) cell->zone = zone;
    return res;
}

int FEL_multi_mesh::cell_to_int(const FEL_cell& cell, int* out) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[cell.zone]->cell_to_int(cell, out);
}

int FEL_multi_mesh::locate(const FEL_phys_pos& pos, FEL_cell* out) const {
    if (debug_level > 0) std::cerr << "FEL_multi_mesh::locate(" << pos << ",)" << std::endl;
    int res = 0;
    for (int z = 0; z < n_zones; ++z) {
        res = zones[z]->locate(pos, out);
        if (res == 1) {
            out->zone = z;
            return 1;
        }
    }
    return res;
}

int FEL_multi_mesh::locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const {
    if (valid_zone(previous.zone) && zones[previous.zone]->locate(pos, previous, out) == 1) {
        out->zone = previous.zone;
        return 1;
    }
    return locate(pos, out);
}

int FEL_multi_mesh::coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[cell.zone]->coordinates_at_cell(cell, out);
}

int FEL_multi_mesh::coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                               FEL_vector3<float>* out) const {
    if (!valid_zone(vertex.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[vertex.zone]->coordinates_at_vertex_cell(vertex, out);
}

int FEL_multi_mesh::coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                                  FEL_vector3<float>* out) const {
    if (!valid_zone(pos.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[pos.zone]->coordinates_at_structured_pos(pos, out);
}

int FEL_multi_mesh::iblank_at_cell(const FEL_cell& cell, int* out) const {
    if (!valid_zone(cell.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[cell.zone]->iblank_at_cell(cell, out);
}

int FEL_multi_mesh::iblank_at_vertex_cell(const FEL_vertex_cell& vertex, int* out) const {
    if (!valid_zone(vertex.zone)) return FEL_ZONE_OUT_OF_RANGE;
    return zones[vertex.zone]->iblank_at_vertex_cell(vertex, out);
}

bool FEL_multi_mesh::is_structured_mesh() const {
    return n_zones > 0 && zones[0]->is_structured_mesh();
}

bool FEL_multi_mesh::is_mesh_iblanked() const {
    for (int z = 0; z < n_zones; ++z)
        if (zones[z]->is_mesh_iblanked()) return true;
    return false;
}

int FEL_multi_mesh::compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                         const FEL_time& time) {
    bool first = true;
    for (int z = 0; z < n_zones; ++z) {
        FEL_vector3<float> low, high;
        const int res = zones[z]->get_bounding_box(&low, &high, time);
        if (res != 1) return res;
        for (int a = 0; a < 3; ++a) {
            if (first || low[a] < (*min)[a]) (*min)[a] = low[a];
            if (first || high[a] > (*max)[a]) (*max)[a] = high[a];
        }
        first = false;
    }
    return first ? 0 : 1;
}

template <class Iter>
int FEL_multi_mesh::begin_walk(Iter* iter, int key, char* args) const {
    clear_walk(iter);
    if (key == 0) {
        for (int z = 0; z < n_zones; ++z) {
            if (zones[z]->begin(iter, FEL_ITER_ZONE, z, 0) != 1) continue;
            iter->done_mesh = const_cast<FEL_multi_mesh*>(this);
            return 1;
        }
        return 0;
    }
    // The zone of the key list; its other keys are the zone's to check.
    const int* next = reinterpret_cast<const int*>(args);
    int zone = -1;
    for (int k = key; k != 0; k = *next++) {
        const int value = *next++;
        if (k == FEL_ITER_ZONE) zone = value;
    }
    if (!valid_zone(zone)) {
        std::cerr << "FEL_multi_mesh::begin() needs the zone key -15 with a zone of the mesh"
                  << std::endl;
        return 0;
    }
    return zones[zone]->begin(iter, key, args);
}

template <class Iter>
void FEL_multi_mesh::next_zone(Iter* iter) const {
    // The iterator may hold the last reference to this mesh.
    const FEL_pointer<FEL_mesh> keep(const_cast<FEL_multi_mesh*>(this));
    for (int z = iter->cell.zone + 1; z < n_zones; ++z) {
        if (zones[z]->begin(iter, FEL_ITER_ZONE, z, 0) != 1) continue;
        iter->done_mesh = keep;
        return;
    }
    clear_walk(iter);
}

int FEL_multi_mesh::begin(FEL_vertex_cell_iter* iter, int key, char* args) const {
    return begin_walk(iter, key, args);
}

int FEL_multi_mesh::begin(FEL_cell_iter* iter, int key, char* args) const {
    return begin_walk(iter, key, args);
}

void FEL_multi_mesh::done_callback(FEL_cell_iter* iter) const {
    next_zone(iter);
}

void FEL_multi_mesh::done_callback(FEL_vertex_cell_iter* iter) const {
    next_zone(iter);
}
