// Meshes that present another mesh's nodes moved by a rigid rule, computed on each access.
#pragma once

#include "FEL_matrix33.h"
#include "FEL_mesh.h"

// Passes topology, properties and walks to the wrapped mesh unchanged. Coordinates come from the
// wrapped mesh moved by the derived class's rule, and positions to locate are moved back by it
// before they are passed on.
class FEL_transformed_mesh : public FEL_mesh {
  public:
    FEL_transformed_mesh(const FEL_pointer<FEL_mesh>& mesh, const std::string& name)
        : FEL_mesh(name), mesh(mesh) {}

    using FEL_mesh::begin;

    const FEL_pointer<FEL_mesh>& get_mesh() const { return mesh; }

    int set(FEL_set_keyword_enum keyword, int value) override;
    int get(FEL_set_keyword_enum keyword, int* count, int* values, int zone = -1) const override;
    int get_interpolation() const override;
    int get_simplicial_decomposition() const override;
    int get_structured_dimensions(int* dims) const override;
    int get_n_zones() const override;
    bool varies_with_time() const override;
    int card(int dim) const override;
    bool on_mesh(const FEL_vertex_cell& vertex) const override;
    int get_node_indices(const FEL_cell& cell, int* out) const override;
    int adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    int decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    int up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                 int flags) const override;
    int down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const override;
    int int_to_cell(int dim, int index, FEL_cell* cell, int zone = -1) const override;
    int cell_to_int(const FEL_cell& cell, int* out) const override;
    int central_difference_neighbors(const FEL_cell& cell, int axis, FEL_cell* out) const override;
    int central_difference_neighbors(const FEL_vertex_cell& vertex, int axis) const override;
    int iblank_at_cell(const FEL_cell& cell, int* out) const override;
    int iblank_at_vertex_cell(const FEL_vertex_cell& vertex, int* out) const override;
    int convert_time(const FEL_time& time, FEL_time_representation_enum representation,
                     FEL_time* out) const override;
    int begin(FEL_vertex_cell_iter* iter, int key, char* args) const override;
    int begin(FEL_cell_iter* iter, int key, char* args) const override;
    void done_callback(FEL_cell_iter* iter) const override;
    void done_callback(FEL_vertex_cell_iter* iter) const override;
    void advance_callback(FEL_cell_iter* iter) const override;
    void advance_callback(FEL_vertex_cell_iter* iter) const override;
    bool is_structured_mesh() const override;
    bool is_unstructured_mesh() const override;
    bool is_multi_mesh() const override;
    bool is_curvilinear_surface_mesh() const override;
    bool is_mesh_iblanked() const override;
    int coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const override;
    int coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                   FEL_vector3<float>* out) const override;
    int coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                      FEL_vector3<float>* out) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell* out) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const override;
    int locate_close_vertex_cell(const FEL_phys_pos& pos, FEL_vertex_cell* out) const override;

  protected:
    // Moves n points of the wrapped mesh, in place, into this mesh.
    virtual void move_nodes(FEL_vector3<float>* nodes, int n) const = 0;
    // A position in this mesh as the wrapped mesh sees it.
    virtual FEL_phys_pos moved_back(const FEL_phys_pos& pos) const = 0;

    FEL_pointer<FEL_mesh> mesh;
};

// Adds an offset to every node.
class FEL_translated_mesh : public FEL_transformed_mesh {
  public:
    FEL_translated_mesh(const FEL_pointer<FEL_mesh>& mesh, const FEL_vector3<float>& offset,
                        const std::string& name = "translated_mesh")
        : FEL_transformed_mesh(mesh, name), offset(offset) {}

    // Zone i of the wrapped mesh, translated alike; null if it has none.
    FEL_pointer<FEL_mesh> get_zone(int zone) const override;
    int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                             const FEL_time& time) override;

  private:
    void move_nodes(FEL_vector3<float>* nodes, int n) const override;
    FEL_phys_pos moved_back(const FEL_phys_pos& pos) const override;

    FEL_vector3<float> offset;
};

// Multiplies every node by a matrix. Positions to locate are multiplied by its transpose, which
// undoes only a true rotation.
class FEL_rotated_mesh : public FEL_transformed_mesh {
  public:
    // The identity.
    FEL_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, const std::string& name = "rotated_mesh")
        : FEL_transformed_mesh(mesh, name) {}
    FEL_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, const FEL_matrix33<float>& matrix,
                     const std::string& name = "rotated_mesh")
        : FEL_transformed_mesh(mesh, name), matrix(matrix) {}

    // Stores the matrix; true if |determinant - 1| < 1e-6.
    bool set_rotation(const FEL_matrix33<float>& new_matrix);
    const FEL_matrix33<float>& get_rotation() const { return matrix; }

    FEL_pointer<FEL_mesh> get_zone(int zone) const override;
    // A walk over all nodes: a rotated box is not the box of the rotated nodes.
    int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                             const FEL_time& time) override;

  private:
    void move_nodes(FEL_vector3<float>* nodes, int n) const override;
    FEL_phys_pos moved_back(const FEL_phys_pos& pos) const override;

    FEL_matrix33<float> matrix;
};

// Rotations about one axis by an angle in radians, counterclockwise seen from the positive axis
// (right-handed).
class FEL_x_rotated_mesh : public FEL_rotated_mesh {
  public:
    FEL_x_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, float angle,
                       const std::string& name = "x_rotated_mesh");
};

class FEL_y_rotated_mesh : public FEL_rotated_mesh {
  public:
    FEL_y_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, float angle,
                       const std::string& name = "y_rotated_mesh");
};

class FEL_z_rotated_mesh : public FEL_rotated_mesh {
  public:
    FEL_z_rotated_mesh(const FEL_pointer<FEL_mesh>& mesh, float angle,
                       const std::string& name = "z_rotated_mesh");
};
