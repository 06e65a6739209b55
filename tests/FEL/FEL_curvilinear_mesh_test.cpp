// Tests of the curvilinear meshes: node lookup by linear number, storage and the surface form.
#include "FEL_curvilinear_mesh.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// 3 x 2 x 1 nodes; node n at (n, 10 n, 100 n) so that a lookup shows the number it read.
//   3 - 4 - 5
//   |   |   |
//   0 - 1 - 2
FEL_vector3<float>* numbered_nodes(int n) {
    FEL_vector3<float>* nodes = new FEL_vector3<float>[n];
    for (int p = 0; p < n; ++p) nodes[p] = FEL_vector3<float>(float(p), 10.0f * p, 100.0f * p);
    return nodes;
}

TEST(FEL_curvilinear_mesh, NodesByLinearNumber) {
    FEL_pointer<FEL_curvilinear_mesh> mesh(
        new FEL_curvilinear_surface_mesh(3, 2, 1, numbered_nodes(6)));
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 0);
    FEL_vector3<float> quad[4];
    ASSERT_EQ(mesh->coordinates_at_cell(FEL_cell(FEL_CELL_QUADRILATERAL, 1, 0, 0, 2), quad), 1);
    // k face corners 0, 1, 3, 2 of the hexahedron at (1, 0, 0): nodes 1, 2, 5, 4.
    EXPECT_EQ((std::vector<float>{quad[0].x, quad[1].x, quad[2].x, quad[3].x}),
              (std::vector<float>{1, 2, 5, 4}));
    EXPECT_EQ(mesh->coordinates_at_cell(FEL_cell(FEL_CELL_QUADRILATERAL, 2, 0, 0, 2), quad), 0);
    FEL_vector3<float> p;
    EXPECT_EQ(mesh->coordinates_at_vertex_cell(FEL_vertex_cell(3, 0, 0), &p), 0);
    int iblank = 0;
    ASSERT_EQ(mesh->iblank_at_vertex_cell(FEL_vertex_cell(1, 1, 0), &iblank), 1);
    EXPECT_EQ(iblank, 1);
}

TEST(FEL_curvilinear_mesh, IblankedLayout) {
    FEL_vector3f_and_int* nodes = new FEL_vector3f_and_int[8];
    for (int p = 0; p < 8; ++p) nodes[p] = {FEL_vector3<float>(float(p), 0, 0), p == 6 ? 0 : 1};
    FEL_pointer<FEL_curvilinear_mesh> mesh(new FEL_curvilinear_mesh_xyzi_layout(2, 2, 2, nodes));
    int iblank[8];
    ASSERT_EQ(mesh->iblank_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0), iblank), 1);
    EXPECT_EQ(std::vector<int>(iblank, iblank + 8), (std::vector<int>{1, 1, 1, 1, 1, 1, 0, 1}));
}

}  // namespace
