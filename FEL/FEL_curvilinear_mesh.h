// Structured meshes whose nodes are stored one by one: an interleaved coordinate array, with or
// without iblank values, and the surface form for lattices that are flat in some direction.
#pragma once

#include <cstddef>

#include "FEL_structured_mesh.h"

// Nodes are read by linear number i + ni * j + ni * nj * k. The node array is the mesh's: it is
// freed with the mesh.
class FEL_curvilinear_mesh : public FEL_structured_mesh {
  public:
    ~FEL_curvilinear_mesh() override;

    // Keywords 2, 3, 8, 9 and 10 store the curvilinear options.
    int set(FEL_set_keyword_enum keyword, int value) override;
    int get(FEL_set_keyword_enum keyword, int* count, int* values, int zone = -1) const override;
    int coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const override;
    int coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                   FEL_vector3<float>* out) const override;
    // 1 for every node of a mesh without iblank values.
    int iblank_at_cell(const FEL_cell& cell, int* out) const override;
    int iblank_at_vertex_cell(const FEL_vertex_cell& vertex, int* out) const override;
    bool is_mesh_iblanked() const override { return xyzi != nullptr; }
    // Point location in curvilinear cells is not implemented: 24.
    int locate(const FEL_phys_pos& pos, FEL_cell* out) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const override;
    // A scan of the node array.
    int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                             const FEL_time& time) override;

    // Bytes held for the nodes: 12 a node, or 16 with iblank values.
    std::size_t node_storage_bytes() const;
    const FEL_vector3<float>& node(int n) const { return xyz != nullptr ? xyz[n] : xyzi[n].v; }

  protected:
    // Exactly one of xyz and xyzi is given.
    FEL_curvilinear_mesh(int ni, int nj, int nk, FEL_vector3<float>* xyz,
                         FEL_vector3f_and_int* xyzi, const std::string& name);

    FEL_vector3<float>* xyz;
    FEL_vector3f_and_int* xyzi;
    int options[5];
};

class FEL_curvilinear_mesh_xyz_layout : public FEL_curvilinear_mesh {
  public:
    // nodes: ni * nj * nk coordinates, from new[].
    FEL_curvilinear_mesh_xyz_layout(int ni, int nj, int nk, FEL_vector3<float>* nodes,
                                    const std::string& name = "curvilinear_mesh_xyz_layout")
        : FEL_curvilinear_mesh(ni, nj, nk, nodes, nullptr, name) {}
};

class FEL_curvilinear_mesh_xyzi_layout : public FEL_curvilinear_mesh {
  public:
    // nodes: ni * nj * nk coordinates with iblank values, from new[].
    FEL_curvilinear_mesh_xyzi_layout(int ni, int nj, int nk, FEL_vector3f_and_int* nodes,
                                     const std::string& name = "curvilinear_mesh_xyzi_layout")
        : FEL_curvilinear_mesh(ni, nj, nk, nullptr, nodes, name) {}
};

// A lattice with one node in some direction, from either form of node array.
class FEL_curvilinear_surface_mesh : public FEL_curvilinear_mesh {
  public:
    FEL_curvilinear_surface_mesh(int ni, int nj, int nk, FEL_vector3<float>* nodes,
                                 const std::string& name = "curvilinear_surface_mesh")
        : FEL_curvilinear_mesh(ni, nj, nk, nodes, nullptr, name) {}
    FEL_curvilinear_surface_mesh(int ni, int nj, int nk, FEL_vector3f_and_int* nodes,
                                 const std::string& name = "curvilinear_surface_mesh")
        : FEL_curvilinear_mesh(ni, nj, nk, nullptr, nodes, name) {}
    bool is_curvilinear_surface_mesh() const override { return true; }
};
