// Tests of the axes and the axis-aligned meshes: locate at nodes, at ends and in sub-cells.
#include "FEL_axis_aligned_mesh.h"

#include <gtest/gtest.h>

namespace {

TEST(FEL_axis, LocateAtNodesAndEnds) {
    // Regular nodes 1, 1.5, 2, 2.5; irregular nodes 0, 1, 3, 7. An interior node starts the cell
    // above it; the upper end, exactly, gives the last cell.
    const FEL_regular_axis regular(4, 1.0f, 0.5f);
    const FEL_irregular_axis irregular(4, new float[4]{0.0f, 1.0f, 3.0f, 7.0f});
    const struct {
        const FEL_axis& axis;
        float x;
        int cell;  // -1: not found
    } rows[] = {{regular, 1.0f, 0},   {regular, 1.5f, 1},    {regular, 2.5f, 2},
                {regular, 2.6f, -1},  {irregular, 5.0f, 2},  {irregular, 7.0f, 2},
                {irregular, 1.0f, 1}, {irregular, -0.1f, -1}};
    for (const auto& row : rows) {
        int i = -1;
        EXPECT_EQ(row.axis.locate(row.x, &i), row.cell >= 0) << row.x;
        EXPECT_EQ(i, row.cell) << row.x;
    }
}

TEST(FEL_regular_mesh, LocatesInHexahedraAndTetrahedra) {
    // 3 x 2 x 2 nodes, spacing 1, 2, 3.
    FEL_pointer<FEL_mesh> mesh(new FEL_regular_mesh(3, 2, 2, 1.0f, 2.0f, 3.0f));
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 0);
    FEL_cell cell;
    ASSERT_EQ(mesh->locate(FEL_phys_pos(1.5f, 0.5f, 3.0f), &cell), 1);
    EXPECT_EQ(cell, FEL_cell(FEL_CELL_HEXAHEDRON, 1, 0, 0));
    EXPECT_EQ(mesh->locate(FEL_phys_pos(1.5f, 2.5f, 1.0f), &cell), 0);
    // In the odd hexahedron at (1, 0, 0), (0.9, 0.05, 0.1) is more than a unit from each cut-off
    // corner 0, 3, 5, 6: the central tetrahedron.
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 1);
    ASSERT_EQ(mesh->locate(FEL_phys_pos(1.9f, 0.1f, 0.3f), &cell), 1);
    EXPECT_EQ(cell, FEL_cell(FEL_CELL_TETRAHEDRON, 1, 0, 0, 9));
}

TEST(FEL_regular_mesh2, LocatesInItsPlane) {
    // 3 x 3 nodes of spacing 1; cell (0, 0) even, (1, 0) odd.
    FEL_pointer<FEL_mesh> mesh(new FEL_regular_mesh2(3, 3, 1.0f, 1.0f));
    FEL_cell cell;
    ASSERT_EQ(mesh->locate(FEL_phys_pos(0.7f, 0.2f, 9.0f), &cell), 1);
    EXPECT_EQ(cell, FEL_cell(FEL_CELL_TRIANGLE, 0, 0, 0, 8));
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 0);
    ASSERT_EQ(mesh->locate(FEL_phys_pos(1.2f, 0.9f, 0.0f), &cell), 1);
    EXPECT_EQ(cell, FEL_cell(FEL_CELL_QUADRILATERAL, 1, 0, 0, 2));
}

}  // namespace
