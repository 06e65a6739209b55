// Unstructured meshes: nodes, surface triangles sorted into triangle sets, and tetrahedra.
#pragma once

#include <vector>

#include "FEL_mesh.h"

// A cell names its element by number in i, with j and k 0: a vertex is a node, a triangle an entry
// of the triangle array, a tetrahedron one of the tetrahedron array. An edge names an element in
// i and one of its edges in sub: 0 to 2 are the edges of triangle i, 3 to 8 those of tetrahedron i.
// Edges have no numbering of their own: card(1) is 0.
class FEL_unstructured_mesh : public FEL_single_mesh {
  public:
    explicit FEL_unstructured_mesh(const std::string& name) : FEL_single_mesh(name) {}
    bool is_unstructured_mesh() const override { return true; }
    // Keywords 20 and 21 give the number of triangle sets, 22 their identifiers.
    int get(FEL_set_keyword_enum keyword, int* count, int* values, int zone = -1) const override;

  protected:
    // Identifiers of the triangle sets in ascending order.
    std::vector<int> triangle_set_ids;
};

class FEL_tetrahedral_mesh : public FEL_unstructured_mesh {
  public:
    // The arrays come from new[] and become the mesh's. zones holds a triangle set identifier per
    // triangle; without it all triangles form set 0. Any array may be null with a count of 0.
    FEL_tetrahedral_mesh(int nVertices, FEL_vector3<float>* vertices, int nTriangles,
                         FEL_vector3<int>* triangles, int* zones, int nTetrahedra,
                         FEL_vector4<int>* tetrahedra,
                         const std::string& name = "tetrahedral_mesh");
    ~FEL_tetrahedral_mesh() override;

    using FEL_mesh::begin;

    int get_n_vertices() const { return n_vertices; }
    int get_n_triangles() const { return n_triangles; }
    int get_n_tetrahedra() const { return n_tetrahedra; }
    const FEL_vector3<float>* get_vertices() const { return vertices; }
    const FEL_vector3<int>* get_triangles() const { return triangles; }
    const FEL_vector4<int>* get_tetrahedra() const { return tetrahedra; }
    // The triangle set of a triangle: its zone entry, or 0 without a zone array.
    int get_triangle_zone(int triangle) const { return zones != nullptr ? zones[triangle] : 0; }

    int card(int dim) const override;
    bool on_mesh(const FEL_vertex_cell& vertex) const override;
    int get_node_indices(const FEL_cell& cell, int* out) const override;
    // Neighbourhoods and point location are not implemented: 24.
    int adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    int up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                 int flags) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell* out) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const override;
    // Every cell is a simplex: the cell itself.
    int decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    // Vertices and edges; the faces of a tetrahedron are no cells of the mesh (24).
    int down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const override;
    int int_to_cell(int dim, int index, FEL_cell* cell, int zone = -1) const override;
    int cell_to_int(const FEL_cell& cell, int* out) const override;
    int coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const override;
    int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                             const FEL_time& time) override;

    // Keys -1, -2 and -7 bound and step the element number; -15 sets the zone.
    int begin(FEL_vertex_cell_iter* iter, int key, char* args) const override;
    // The tetrahedra, or the triangles of a mesh without tetrahedra.
    int begin(FEL_cell_iter* iter, int key, char* args) const override;

  private:
    int n_vertices;
    FEL_vector3<float>* vertices;
    int n_triangles;
    FEL_vector3<int>* triangles;
    int* zones;
    int n_tetrahedra;
    FEL_vector4<int>* tetrahedra;
};
