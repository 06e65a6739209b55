// Tests of the curvilinear meshes: the iblanks of a cell's nodes in the iblanked layout.
#include "FEL_curvilinear_mesh.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

TEST(FEL_curvilinear_mesh, IblankedLayout) {
    FEL_vector3f_and_int* nodes = new FEL_vector3f_and_int[8];
    for (int p = 0; p < 8; ++p) nodes[p] = {FEL_vector3<float>(float(p), 0, 0), p == 6 ? 0 : 1};
    FEL_pointer<FEL_curvilinear_mesh> mesh(new FEL_curvilinear_mesh_xyzi_layout(2, 2, 2, nodes));
    int iblank[8];
    ASSERT_EQ(mesh->iblank_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0), iblank), 1);
    EXPECT_EQ(std::vector<int>(iblank, iblank + 8), (std::vector<int>{1, 1, 1, 1, 1, 1, 0, 1}));
}

}  // namespace
