// Tests of what the mesh base class implements: the bounding box, cell measures and iblank
// combination.
#include "FEL_mesh.h"

#include <gtest/gtest.h>

#include "FEL_curvilinear_mesh.h"

namespace {

// One hexahedron; corner c at (c & 1, c >> 1 & 1, c >> 2 & 1) scaled by `scale`.
//        6-------7
//       /|      /|     k
//      4-------5 |     |  j
//      | 2-----|-3     | /
//      |/      |/      |/
//      0-------1       +---- i
FEL_vector3<float>* box_nodes(const FEL_vector3<float>& scale) {
    FEL_vector3<float>* nodes = new FEL_vector3<float>[8];
    for (int c = 0; c < 8; ++c)
        nodes[c] = FEL_vector3<float>(float(c & 1) * scale.x, float((c >> 1) & 1) * scale.y,
                                      float((c >> 2) & 1) * scale.z);
    return nodes;
}

const FEL_cell hex0(FEL_CELL_HEXAHEDRON, 0, 0, 0);

// No stage of the run measures cells, combines iblanks or asks whether a point lies in the
// bounding box: one compact check of them.
TEST(FEL_mesh, BoundingBoxCellMeasuresAndCombinedIblank) {
    // A 2 x 3 x 4 box: volume 24, centroid (1, 1.5, 2), edges from 2 to 4.
    FEL_pointer<FEL_mesh> box(new FEL_curvilinear_mesh_xyz_layout(2, 2, 2, box_nodes({2, 3, 4})));
    FEL_vector3<float> min, max;
    ASSERT_EQ(box->get_bounding_box(&min, &max), 1);
    EXPECT_EQ(min, FEL_vector3<float>(0, 0, 0));
    EXPECT_EQ(max, FEL_vector3<float>(2, 3, 4));
    EXPECT_TRUE(box->inside_bounding_box(FEL_phys_pos(2, 3, 4)));  // a point on a face is inside
    EXPECT_FALSE(box->inside_bounding_box(FEL_phys_pos(2, 3, 4.001f)));
    double volume = 0;
    ASSERT_EQ(box->volume_of_cell(hex0, &volume), 1);
    EXPECT_DOUBLE_EQ(volume, 24.0);
    ASSERT_EQ(box->volume_of_cell(FEL_cell(FEL_CELL_TETRAHEDRON, 0, 0, 0, 4), &volume), 1);
    EXPECT_DOUBLE_EQ(volume, 8.0);  // the central tetrahedron is a third of the box
    FEL_vector3<float> centre;
    ASSERT_EQ(box->centroid_of_cell(hex0, &centre), 1);
    EXPECT_EQ(centre, FEL_vector3<float>(1, 1.5f, 2));
    float longest = 0, shortest = 0;
    box->longest_edge_length_of_cell(hex0, &longest);
    box->shortest_edge_length_of_cell(hex0, &shortest);
    EXPECT_EQ(std::make_pair(longest, shortest), std::make_pair(4.0f, 2.0f));

    FEL_vector3f_and_int* nodes = new FEL_vector3f_and_int[8];  // only the iblanks count here
    for (int c = 0; c < 8; ++c) nodes[c] = {FEL_vector3<float>(0, 0, 0), 1};
    FEL_pointer<FEL_curvilinear_mesh> mesh(new FEL_curvilinear_mesh_xyzi_layout(2, 2, 2, nodes));
    int bits = -1;
    ASSERT_EQ(mesh->combined_iblank_at_cell(hex0, &bits), 1);
    EXPECT_EQ(bits, 1);
    const int mixed[8] = {1, 1, 1, 0, 1, -2, 2, 101};
    for (int c = 0; c < 8; ++c) nodes[c].i = mixed[c];
    mesh->combined_iblank_at_cell(hex0, &bits);
    EXPECT_EQ(bits, 15);
    nodes[0].i = 3;
    testing::internal::CaptureStderr();
    mesh->combined_iblank_at_cell(hex0, &bits);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "FEL_mesh::combined_iblank_at_cell() H(0, 0, 0) has iblank of 3?!\n");
}

}  // namespace
