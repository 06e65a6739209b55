// Tests of the translated and rotated meshes: moved coordinates, boxes and zones.
#include "FEL_transformed_mesh.h"

#include <gtest/gtest.h>

#include <cmath>

#include "FEL_axis_aligned_mesh.h"

namespace {

// 2 x 2 x 2 nodes of spacing 1: the unit cube.
FEL_pointer<FEL_mesh> unit_cube() {
    FEL_pointer<FEL_mesh> mesh(new FEL_regular_mesh(2, 2, 2, 1, 1, 1));
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 0);
    return mesh;
}

TEST(FEL_translated_mesh, MovesCoordinatesBoxesAndZones) {
    FEL_pointer<FEL_mesh> mesh(
        new FEL_translated_mesh(unit_cube(), FEL_vector3<float>(10, 20, 30)));
    FEL_vector3<float> p, corners[8], min, max;
    ASSERT_EQ(mesh->coordinates_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0), corners), 1);
    EXPECT_EQ(corners[6], FEL_vector3<float>(10, 21, 31));
    EXPECT_EQ(mesh->coordinates_at_vertex_cell(FEL_vertex_cell(2, 0, 0), &p), 0);
    ASSERT_EQ(mesh->get_zone(0)->get_bounding_box(&min, &max), 1);
    EXPECT_EQ(min, FEL_vector3<float>(10, 20, 30));
    EXPECT_EQ(max, FEL_vector3<float>(11, 21, 31));
    EXPECT_TRUE(mesh->get_zone(1).null());
}

TEST(FEL_rotated_mesh, RotatesAndScalesNodes) {
    // 3 x 2 x 2 nodes: [0, 2] x [0, 1] x [0, 1], turned a quarter about z: x -> y, y -> -x.
    FEL_pointer<FEL_mesh> inner(new FEL_regular_mesh(3, 2, 2, 1, 1, 1));
    inner->set(FEL_SIMPLICIAL_DECOMPOSITION, 0);
    FEL_pointer<FEL_mesh> mesh(new FEL_z_rotated_mesh(inner, float(M_PI / 2)));
    inner = nullptr;  // the wrapper keeps it alive
    FEL_vector3<float> p, min, max;
    ASSERT_EQ(mesh->coordinates_at_vertex_cell(FEL_vertex_cell(2, 0, 1), &p), 1);
    EXPECT_NEAR(p.x, 0.0f, 1e-6);
    EXPECT_NEAR(p.y, 2.0f, 1e-6);
    ASSERT_EQ(mesh->get_bounding_box(&min, &max), 1);
    EXPECT_NEAR(min.x, -1.0f, 1e-6);
    EXPECT_NEAR(max.y, 2.0f, 1e-6);

    // A scale is taken as it stands.
    const FEL_matrix33<float> scale(FEL_vector3<float>(2, 0, 0), FEL_vector3<float>(0, 2, 0),
                                    FEL_vector3<float>(0, 0, 2));
    FEL_pointer<FEL_rotated_mesh> rotated(new FEL_rotated_mesh(unit_cube(), scale));
    // As the driver composes them: M p + t; the rotated box is the box of the moved nodes.
    FEL_pointer<FEL_mesh> moved(new FEL_translated_mesh(rotated, FEL_vector3<float>(1, 0, -1)));
    ASSERT_EQ(moved->get_bounding_box(&min, &max), 1);
    EXPECT_EQ(std::make_pair(min, max),
              std::make_pair(FEL_vector3<float>(1, 0, -1), FEL_vector3<float>(3, 2, 1)));
}

}  // namespace
