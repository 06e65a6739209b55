// Tests of the multi-zone mesh: routing by zone, node numbering, walks across zones.
#include "FEL_multi_mesh.h"

#include <gtest/gtest.h>

#include <sstream>

#include "FEL_axis_aligned_mesh.h"

namespace {

// Zone 0: a unit cube of 2 x 2 x 2 nodes. Zone 1: 3 x 2 x 2 nodes of spacing 1 from the origin
// as well, so the zones overlap.
FEL_pointer<FEL_multi_mesh> two_zones() {
    FEL_pointer<FEL_mesh>* zones = new FEL_pointer<FEL_mesh>[2];
    zones[0] = new FEL_regular_mesh(2, 2, 2, 1, 1, 1);
    zones[1] = new FEL_regular_mesh(3, 2, 2, 1, 1, 2);
    FEL_pointer<FEL_multi_mesh> mesh(new FEL_plot3d_multi_mesh(2, zones));
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 0);
    return mesh;
}

TEST(FEL_multi_mesh, RoutesByZone) {
    FEL_pointer<FEL_multi_mesh> mesh = two_zones();
    EXPECT_EQ(std::make_pair(mesh->card(0), mesh->card(3)), std::make_pair(20, 3));
    EXPECT_EQ(mesh->get_node_index(FEL_vertex_cell(1, 0, 0, 1)), 9);
    int nodes[8];
    ASSERT_EQ(mesh->get_node_indices(FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0, -1, 0), nodes), 1);
    EXPECT_EQ(nodes[7], 7);
    FEL_vector3<float> corners[8];
    ASSERT_EQ(mesh->coordinates_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, 1, 0, 0, -1, 1), corners), 1);
    EXPECT_EQ(corners[7], FEL_vector3<float>(2, 1, 2));
    EXPECT_EQ(mesh->coordinates_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0, -1, 2), corners),
              25);
    EXPECT_EQ(mesh->coordinates_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0), corners), 25);
    FEL_cell numbered;
    EXPECT_EQ(mesh->int_to_cell(3, 0, &numbered, 5), 25);
    ASSERT_EQ(mesh->int_to_cell(3, 1, &numbered, 1), 1);
    EXPECT_EQ(numbered, FEL_cell(FEL_CELL_HEXAHEDRON, 1, 0, 0, -1, 1));
    EXPECT_TRUE(mesh->get_zone(2).null() && mesh->get_zone(-1).null());
    int dims[3];
    ASSERT_EQ(mesh->get(FEL_STRUCTURED_DIMENSIONS, nullptr, dims, 1), 1);
    EXPECT_EQ(dims[0], 3);
}

TEST(FEL_multi_mesh, WalksPassFromZoneToZone) {
    FEL_pointer<FEL_multi_mesh> mesh = two_zones();
    FEL_cell_iter it;
    std::ostringstream cells;
    for (mesh->begin(&it); !it.done; ++it) cells << it.cell << " ";
    EXPECT_EQ(cells.str(), "H(0, 0, 0):0 H(0, 0, 0):1 H(1, 0, 0):1 ");
    FEL_vertex_cell_iter v;
    std::string zones;  // the zone of each vertex walked
    for (mesh->begin(&v); !v.done; ++v) zones += std::to_string(v->zone);
    EXPECT_EQ(zones, std::string(8, '0') + std::string(12, '1'));
    zones.clear();
    for (mesh->begin(&v, FEL_ITER_ZONE, 1, FEL_ITER_FIX_K, 1, 0); !v.done; ++v)
        zones += std::to_string(v->zone);
    EXPECT_EQ(zones, "111111");
    testing::internal::CaptureStderr();
    EXPECT_EQ(mesh->begin(&v, FEL_ITER_FIX_K, 1, 0), 0);
    EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
    EXPECT_TRUE(v.done);

    FEL_pointer<FEL_multi_mesh> empty(new FEL_multi_mesh(0, nullptr));
    EXPECT_FALSE(empty->is_structured_mesh());
    EXPECT_EQ(empty->begin(&it), 0);
}

}  // namespace
