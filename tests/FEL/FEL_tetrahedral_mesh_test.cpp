// Tests of the unstructured mesh over node, triangle and tetrahedron arrays.
#include "FEL_tetrahedral_mesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace {

// A heap array holding the items, as the mesh takes ownership of its arrays.
template <class T>
T* heap(std::initializer_list<T> items) {
    return std::copy(items.begin(), items.end(), new T[items.size()]) - items.size();
}

// Two triangles in set 7 sharing edge 1-2, and a third alone in set 3:
//   2 ---- 3
//   | \  t1|       4 -- 5
//   |t0 \  |        \ t2|
//   0 ---- 1          \ 6
FEL_pointer<FEL_tetrahedral_mesh> surface() {
    auto* v = heap<FEL_vector3<float>>(
        {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {3, 1, 0}, {4, 1, 0}, {4, 0, 2}});
    auto* t = heap<FEL_vector3<int>>({{0, 1, 2}, {1, 3, 2}, {4, 5, 6}});
    return new FEL_tetrahedral_mesh(7, v, 3, t, heap({7, 7, 3}), 0, nullptr);
}

TEST(FEL_tetrahedral_mesh, SurfaceTrianglesAndSets) {
    FEL_pointer<FEL_tetrahedral_mesh> mesh = surface();
    // The walk of the unstructured triangulation path: all triangles, first three nodes each.
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 2);
    FEL_cell_iter it;
    std::vector<float> first_x;
    for (mesh->begin(&it); !it.done; ++it) {
        EXPECT_EQ(it->type, FEL_CELL_TRIANGLE);
        FEL_vector3<float> p[3];
        ASSERT_EQ(mesh->coordinates_at_cell(it.cell, p), 1);
        first_x.push_back(p[1].x);
    }
    EXPECT_EQ(first_x, (std::vector<float>{1, 1, 4}));

    FEL_cell cell;
    EXPECT_EQ(mesh->int_to_cell(2, 3, &cell), 0);
    ASSERT_EQ(mesh->int_to_cell(2, 1, &cell), 1);
    int back = -1;
    ASSERT_EQ(mesh->cell_to_int(cell, &back), 1);
    EXPECT_EQ(back, 1);
}

TEST(FEL_tetrahedral_mesh, TetrahedraAndEmptyMeshes) {
    // One tetrahedron on the unit axes.
    auto* v = heap<FEL_vector3<float>>({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    auto* t = heap<FEL_vector4<int>>({{0, 1, 2, 3}});
    FEL_pointer<FEL_mesh> mesh(new FEL_tetrahedral_mesh(4, v, 0, nullptr, nullptr, 1, t));
    FEL_cell_iter it;
    ASSERT_EQ(mesh->begin(&it), 1);
    EXPECT_EQ(it->type, FEL_CELL_TETRAHEDRON);
    FEL_vector3<float> corners[4];
    ASSERT_EQ(mesh->coordinates_at_cell(it.cell, corners), 1);
    EXPECT_EQ(corners[3], FEL_vector3<float>(0, 0, 1));
    ++it;
    EXPECT_TRUE(it.done);

    FEL_pointer<FEL_mesh> empty(
        new FEL_tetrahedral_mesh(0, nullptr, 0, nullptr, nullptr, 0, nullptr));
    EXPECT_EQ(empty->begin(&it), 0);
    EXPECT_TRUE(it.done);
    FEL_vector3<float> min, max;
    EXPECT_EQ(empty->get_bounding_box(&min, &max), 0);
}

}  // namespace
