// Tests of the unstructured mesh over node, triangle and tetrahedron arrays.
#include "FEL_tetrahedral_mesh.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

namespace {

// A heap array holding the items, as the mesh takes ownership of its arrays.
template <class T>
T* heap(std::initializer_list<T> items) {
    return std::copy(items.begin(), items.end(), new T[items.size()]) - items.size();
}

TEST(FEL_tetrahedral_mesh, WalksTetrahedraNumbersTrianglesAndRefusesEmptyMeshes) {
    // One tetrahedron on the unit axes; two of its faces are triangles of set 7.
    auto* v = heap<FEL_vector3<float>>({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}});
    auto* t = heap<FEL_vector3<int>>({{0, 1, 2}, {0, 1, 3}});
    auto* tet = heap<FEL_vector4<int>>({{0, 1, 2, 3}});
    FEL_pointer<FEL_mesh> mesh(new FEL_tetrahedral_mesh(4, v, 2, t, heap({7, 7}), 1, tet));
    FEL_cell_iter it;
    ASSERT_EQ(mesh->begin(&it), 1);
    EXPECT_EQ(it->type, FEL_CELL_TETRAHEDRON);
    FEL_vector3<float> corners[4];
    ASSERT_EQ(mesh->coordinates_at_cell(it.cell, corners), 1);
    EXPECT_EQ(corners[3], FEL_vector3<float>(0, 0, 1));
    ++it;
    EXPECT_TRUE(it.done);
    // Triangles are numbered in their array; a number beyond it names none.
    FEL_cell cell;
    EXPECT_EQ(mesh->int_to_cell(2, 2, &cell), 0);
    ASSERT_EQ(mesh->int_to_cell(2, 1, &cell), 1);
    int back = -1;
    ASSERT_EQ(mesh->cell_to_int(cell, &back), 1);
    EXPECT_EQ(back, 1);
    ASSERT_EQ(mesh->coordinates_at_cell(cell, corners), 1);
    EXPECT_EQ(corners[2], FEL_vector3<float>(0, 0, 1));

    FEL_pointer<FEL_mesh> empty(
        new FEL_tetrahedral_mesh(0, nullptr, 0, nullptr, nullptr, 0, nullptr));
    EXPECT_EQ(empty->begin(&it), 0);
    EXPECT_TRUE(it.done);
    FEL_vector3<float> min, max;
    EXPECT_EQ(empty->get_bounding_box(&min, &max), 0);
}

}  // namespace
