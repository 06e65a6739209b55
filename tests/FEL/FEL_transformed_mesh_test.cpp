// Tests of the moved meshes: a true rotation's nodes and box, and failures passed through.
#include "FEL_transformed_mesh.h"

#include <gtest/gtest.h>

#include <cmath>

#include "FEL_axis_aligned_mesh.h"

namespace {

TEST(FEL_transformed_mesh, RotatesNodesAndBoxAndPassesFailuresThrough) {
    // 3 x 2 x 2 nodes: [0, 2] x [0, 1] x [0, 1], turned a quarter about z: x -> y, y -> -x.
    FEL_pointer<FEL_mesh> inner(new FEL_regular_mesh(3, 2, 2, 1, 1, 1));
    FEL_pointer<FEL_mesh> mesh(new FEL_z_rotated_mesh(inner, float(M_PI / 2)));
    inner = nullptr;  // the wrapper keeps it alive
    FEL_vector3<float> p, min, max;
    ASSERT_EQ(mesh->coordinates_at_vertex_cell(FEL_vertex_cell(2, 0, 1), &p), 1);
    EXPECT_NEAR(p.x, 0.0f, 1e-6);
    EXPECT_NEAR(p.y, 2.0f, 1e-6);
    // The rotated box is the box of the moved nodes.
    ASSERT_EQ(mesh->get_bounding_box(&min, &max), 1);
    EXPECT_NEAR(min.x, -1.0f, 1e-6);
    EXPECT_NEAR(max.y, 2.0f, 1e-6);

    FEL_pointer<FEL_mesh> moved(new FEL_translated_mesh(mesh, FEL_vector3<float>(10, 20, 30)));
    EXPECT_EQ(moved->coordinates_at_vertex_cell(FEL_vertex_cell(3, 0, 0), &p), 0);
    EXPECT_TRUE(moved->get_zone(1).null());
}

}  // namespace
