// Topology of an i, j, k lattice of nodes: counts, cell numbering, the split of a hexahedron into
// simplices, the walk and the cells around a cell. Where the nodes lie is left to derived classes.
#pragma once

#include "FEL_mesh.h"

// Hexahedron corners are numbered by bits: 1 adds 1 to i, 2 to j, 4 to k. A cell is named by the
// lower corner of its hexahedron and, in sub, by the row of the table that lists its corners.
class FEL_structured_mesh : public FEL_single_mesh {
  public:
    // Rows 0, 1, 2: the i, j and k face.
    static const int quadrilateral_vertex[3][4];
    // Groups of four rows: i, j, k face, inside even, inside odd; in each face group the first
    // two rows are the even diagonal and the last two the odd one.
    static const int subtriangle_vertex[20][3];
    // Rows 0-4 the even pattern, 5-9 the odd one.
    static const int subtetra_vertex[10][4];
    // Row r is the corner pair (r / 8, r % 8).
    static const int edge_vertex[21][2];
    static const int hexa_face[12][4];
    // The four faces of each tetrahedron: consecutive corner triples of its row, cyclically.
    static const int subtetra_face[10][4][3];
    // Each tetrahedron's centroid in unit-cube coordinates.
    static const double subtetra_centroid[10][3];

    FEL_structured_mesh(int ni, int nj, int nk, const std::string& name);

    using FEL_mesh::begin;

    // Keyword 16 gives ni, nj, nk.
    int get(FEL_set_keyword_enum keyword, int* count, int* values, int zone = -1) const override;
    int card(int dim) const override;
    bool on_mesh(const FEL_vertex_cell& vertex) const override;
    // 0 when a node of the cell lies off the mesh.
    int get_node_indices(const FEL_cell& cell, int* out) const override;
    int get_vertex_indices(const FEL_cell& cell, int* out) const {
        return get_node_indices(cell, out);
    }
    int ijk_to_int(int i, int j, int k) const { return i + ni * j + plane * k; }
    int adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    int decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const override;
    int up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                 int flags) const override;
    int down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const override;
    int int_to_cell(int dim, int index, FEL_cell* cell, int zone = -1) const override;
    int cell_to_int(const FEL_cell& cell, int* out) const override;
    // The canonical edge between corners a and b of cell's hexahedron; 0 if they form none.
    int vertices_to_edge_cell(int a, int b, const FEL_cell& cell, FEL_cell* out) const;
    // Only a derived class knows the nodes: these throw FEL_exception.
    int locate(const FEL_phys_pos& pos, FEL_cell* out) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const override;
    int coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const override;

    int begin(FEL_vertex_cell_iter* iter, int key, char* args) const override;
    // Free axes set the cell type; a walk of sub-cells makes the mesh the advance mesh. With no
    // free axis it throws FEL_exception.
    int begin(FEL_cell_iter* iter, int key, char* args) const override;
    void advance_callback(FEL_cell_iter* iter) const override;
    using FEL_mesh::advance_callback;

    bool is_structured_mesh() const override { return true; }

    // Whether the hexahedron at (i, j, k) takes the odd pattern.
    bool simplicial_decomposition_odd(int i, int j, int k) const {
        return (((i + j + k) & 1) != 0) != (simplicial_decomposition == 2);
    }
    // Sets out to the row of corners of the cell's type: identity for a vertex or hexahedron,
    // null for an uninitialized cell; throws FEL_exception for a type it does not know.
    void cell_to_hex_vertices(const FEL_cell& cell, const int** out) const;
    // The tetrahedron of hexahedron hex holding the point at unit-cube position (u, v, w).
    int locate_subsimplex(const FEL_cell& hex, float u, float v, float w, FEL_cell* out) const;

    int get_ni() const { return ni; }
    int get_nj() const { return nj; }
    int get_nk() const { return nk; }

  protected:
    // Lattice points of the cell's nodes; the count.
    int cell_points(const FEL_cell& cell, FEL_vector3<int>* points) const;
    // The canonical cell of a type from two or three lattice points; 0 if there is none.
    int cell_from_points(int type, const FEL_vector3<int>* points, int n, int zone,
                         FEL_cell* out) const;

    std::int32_t ni, nj, nk;
    std::int32_t plane;
    std::int32_t corner_offset[8];
};
