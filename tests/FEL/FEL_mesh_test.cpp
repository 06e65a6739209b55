// Tests of what the mesh base class implements: the bounding-box cache.
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

class counting_mesh : public FEL_curvilinear_mesh_xyz_layout {
  public:
    counting_mesh() : FEL_curvilinear_mesh_xyz_layout(2, 2, 2, box_nodes({2, 3, 4})) {}
    int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                             const FEL_time& time) override {
        ++computed;
        return FEL_curvilinear_mesh_xyz_layout::compute_bounding_box(min, max, time);
    }
    int computed = 0;
};

TEST(FEL_mesh, BoundingBoxIsCachedForAnyTime) {
    counting_mesh* raw = new counting_mesh;
    FEL_pointer<FEL_mesh> mesh(raw);
    FEL_vector3<float> min, max;
    ASSERT_EQ(mesh->get_bounding_box(&min, &max), 1);
    EXPECT_EQ(min, FEL_vector3<float>(0, 0, 0));
    EXPECT_EQ(max, FEL_vector3<float>(2, 3, 4));
    ASSERT_EQ(mesh->get_bounding_box(&min, &max, FEL_time::from_step(7)), 1);
    EXPECT_EQ(raw->computed, 1);
    EXPECT_TRUE(mesh->inside_bounding_box(FEL_phys_pos(2, 3, 4)));
    EXPECT_FALSE(mesh->inside_bounding_box(FEL_phys_pos(2, 3, 4.001f)));
}

}  // namespace
