// A mesh made of zones: each request goes to the zone that its cell names.
#pragma once

#include "FEL_mesh.h"

// Operations on a cell answer 25 when its zone is negative or not below the zone count. Node
// numbers run through all zones. A walk without a key list covers every zone in turn; a key list
// must name a zone (-15) and covers that zone only.
class FEL_multi_mesh : public FEL_mesh {
  public:
    // meshes: count pointers from new[], which become the mesh's.
    FEL_multi_mesh(int count, FEL_pointer<FEL_mesh>* meshes,
                   const std::string& name = "multi_mesh");
    ~FEL_multi_mesh() override;
    FEL_multi_mesh(const FEL_multi_mesh&) = delete;
    FEL_multi_mesh& operator=(const FEL_multi_mesh&) = delete;

    using FEL_mesh::begin;

    // Above 0, locate reports each position on the error stream.
    void set_debug_level(int level) { debug_level = level; }

    // Passed to every zone.
    int set(FEL_set_keyword_enum keyword, int value) override;
    // Keyword 18 gives the zone count; a zone's own properties come from that zone.
    int get(FEL_set_keyword_enum keyword, int* count, int* values, int zone = -1) const override;
    FEL_pointer<FEL_mesh> get_zone(int zone) const override;
    int get_n_zones() const override { return n_zones; }
    int card(int dim) const override;
    bool on_mesh(const FEL_vertex_cell& vertex) const override;
    int get_node_index(const FEL_vertex_cell& vertex) const override;
    int get_node_indices(const FEL_cell& cell, int* out) const override;
    int adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    int decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    int up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                 int flags) const override;
    int down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const override;
    int int_to_cell(int dim, int index, FEL_cell* cell, int zone = -1) const override;
    int cell_to_int(const FEL_cell& cell, int* out) const override;
    // Tries the zones in order; the previous cell's zone first in the two-cell form.
    int locate(const FEL_phys_pos& pos, FEL_cell* out) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const override;
    int coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const override;
    int coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                   FEL_vector3<float>* out) const override;
    int coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                      FEL_vector3<float>* out) const override;
    int iblank_at_cell(const FEL_cell& cell, int* out) const override;
    int iblank_at_vertex_cell(const FEL_vertex_cell& vertex, int* out) const override;
    bool is_structured_mesh() const override;
    bool is_multi_mesh() const override { return true; }
    bool is_mesh_iblanked() const override;
    // The union of the zones' boxes.
    int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                             const FEL_time& time) override;

    int begin(FEL_vertex_cell_iter* iter, int key, char* args) const override;
    int begin(FEL_cell_iter* iter, int key, char* args) const override;
    // Starts the next zone that has cells.
    void done_callback(FEL_cell_iter* iter) const override;
    void done_callback(FEL_vertex_cell_iter* iter) const override;

  private:
    bool valid_zone(int zone) const { return zone >= 0 && zone < n_zones; }
    template <class Iter>
    int begin_walk(Iter* iter, int key, char* args) const;
    template <class Iter>
    void next_zone(Iter* iter) const;

    FEL_pointer<FEL_mesh>* zones;
    int n_zones;
    int* node_offsets;
    int debug_level;
};

// The zones of a many-zone Plot3D file.
class FEL_plot3d_multi_mesh : public FEL_multi_mesh {
  public:
    FEL_plot3d_multi_mesh(int count, FEL_pointer<FEL_mesh>* meshes,
                          const std::string& name = "FEL_plot3d_multi_mesh")
        : FEL_multi_mesh(count, meshes, name) {}
};
