// Tests of the lattice topology: counts, numbering, walks, key lists and the cells around a cell.
#include "FEL_structured_mesh.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <tuple>
#include <vector>

#include "FEL_exception.h"

namespace {

FEL_pointer<FEL_structured_mesh> lattice(int ni, int nj, int nk, int mode) {
    FEL_pointer<FEL_structured_mesh> mesh(new FEL_structured_mesh(ni, nj, nk, "lattice"));
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, mode);
    return mesh;
}

// The cells of a walk, each followed by a blank.
std::string walk(FEL_cell_iter* it) {
    std::ostringstream cells;
    for (; !it->done; ++*it) cells << it->cell << " ";
    return cells.str();
}

using cell_key = std::tuple<int, int, int, int, int>;

// Distinct cells of each dimension reached from the top cells of a walk, and the vertices walked.
std::vector<std::set<cell_key>> reached_by_iteration(const FEL_structured_mesh& mesh) {
    std::vector<std::set<cell_key>> seen(4);
    FEL_vertex_cell_iter v;
    for (mesh.begin(&v); !v.done; ++v) seen[0].insert({1, -1, v->i, v->j, v->k});
    FEL_cell_iter it;
    for (mesh.begin(&it); !it.done; ++it) {
        const FEL_cell top = it.cell;
        seen[top.get_dim()].insert({top.type, top.sub, top.i, top.j, top.k});
        for (int dim = 1; dim < top.get_dim(); ++dim) {
            FEL_cell down[FEL_MAX_RELATED_CELLS];
            int n = 0;
            EXPECT_EQ(mesh.down_cells(top, dim, &n, down), 1);
            for (int c = 0; c < n; ++c)
                seen[dim].insert({down[c].type, down[c].sub, down[c].i, down[c].j, down[c].k});
        }
    }
    return seen;
}

// Numbers 0 to card - 1 name exactly the cells a walk reaches, and name them back.
TEST(FEL_structured_mesh, NumbersNameTheCellsAWalkReaches) {
    const int sizes[][3] = {{3, 2, 2}, {2, 3, 4}, {4, 3, 1}, {1, 3, 3},
                            {3, 1, 2}, {2, 2, 2}, {1, 1, 3}};
    for (int mode = 0; mode <= 2; ++mode)
        for (const auto& s : sizes) {
            SCOPED_TRACE(testing::Message()
                         << s[0] << "x" << s[1] << "x" << s[2] << " mode " << mode);
            FEL_pointer<FEL_structured_mesh> mesh = lattice(s[0], s[1], s[2], mode);
            const std::vector<std::set<cell_key>> reached = reached_by_iteration(*mesh);
            for (int dim = 0; dim <= 3; ++dim) {
                std::set<cell_key> numbered;
                for (int n = 0; n < mesh->card(dim); ++n) {
                    FEL_cell cell;
                    ASSERT_EQ(mesh->int_to_cell(dim, n, &cell), 1);
                    int nodes[8], back = -1;
                    EXPECT_EQ(mesh->get_node_indices(cell, nodes), 1) << cell;
                    ASSERT_EQ(mesh->cell_to_int(cell, &back), 1) << cell;
                    EXPECT_EQ(back, n) << cell;
                    numbered.insert({cell.type, cell.sub, cell.i, cell.j, cell.k});
                }
                EXPECT_EQ(numbered, reached[dim]) << "dim " << dim;
                FEL_cell beyond;
                EXPECT_EQ(mesh->int_to_cell(dim, mesh->card(dim), &beyond), 0);
            }
        }
}

TEST(FEL_structured_mesh, WalksOfSubCells) {
    FEL_pointer<FEL_structured_mesh> mesh = lattice(3, 2, 2, 1);
    FEL_cell_iter it;
    ASSERT_EQ(mesh->begin(&it), 1);
    EXPECT_EQ(walk(&it),
              "T(0, 0, 0).0 T(0, 0, 0).1 T(0, 0, 0).2 T(0, 0, 0).3 T(0, 0, 0).4 "
              "T(1, 0, 0).5 T(1, 0, 0).6 T(1, 0, 0).7 T(1, 0, 0).8 T(1, 0, 0).9 ");
    // i fixed at 1: the triangles of one face, of the odd pattern.
    ASSERT_EQ(mesh->begin(&it, FEL_ITER_FIX_I, 1, 0), 1);
    EXPECT_EQ(walk(&it), "F(1, 0, 0).2 F(1, 0, 0).3 ");
    // k fixed at its last node: the top plane.
    ASSERT_EQ(mesh->begin(&it, FEL_ITER_FIX_K, 1, 0), 1);
    EXPECT_EQ(walk(&it), "F(0, 0, 1).10 F(0, 0, 1).11 F(1, 0, 1).8 F(1, 0, 1).9 ");
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 0);
    ASSERT_EQ(mesh->begin(&it, FEL_ITER_FIX_I, 1, 0), 1);
    EXPECT_EQ(walk(&it), "Q(1, 0, 0).0 ");
    // Two axes fixed: edges along the free one.
    ASSERT_EQ(mesh->begin(&it, FEL_ITER_FIX_J, 1, FEL_ITER_FIX_K, 0, 0), 1);
    EXPECT_EQ(walk(&it), "E(0, 1, 0).1 E(1, 1, 0).1 ");
}

TEST(FEL_structured_mesh, SinglePlaneAndSingleNodeWalks) {
    // 3 x 2 x 1 nodes: one plane of two quadrilaterals.
    FEL_pointer<FEL_structured_mesh> mesh = lattice(3, 2, 1, 0);
    FEL_cell_iter it;
    ASSERT_EQ(mesh->begin(&it), 1);
    EXPECT_EQ(walk(&it), "Q(0, 0, 0).2 Q(1, 0, 0).2 ");
    // A single node leaves no free axis.
    FEL_vertex_cell_iter v;
    FEL_pointer<FEL_structured_mesh> point = lattice(1, 1, 1, 0);
    EXPECT_THROW(point->begin(&it), FEL_exception);
    EXPECT_EQ(point->begin(&v), 1);
}

TEST(FEL_structured_mesh, BadKeysAndBoundsFail) {
    FEL_pointer<FEL_structured_mesh> mesh = lattice(3, 2, 2, 0);
    FEL_cell_iter it;
    FEL_vertex_cell_iter v;
    testing::internal::CaptureStderr();
    EXPECT_EQ(mesh->begin(&it, -13, 0, 0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "FEL_structured_mesh::begin(FEL_vertex_cell_iter*,...) bad args\n");
    EXPECT_TRUE(it.done);
    EXPECT_EQ(mesh->begin(&it, FEL_ITER_I_MAX, 2, 0), 0);  // cells stop at ni - 2
    EXPECT_TRUE(it.done);
    EXPECT_EQ(mesh->begin(&v, FEL_ITER_I_MAX, 2, 0), 1);  // vertices at ni - 1
    EXPECT_EQ(mesh->begin(&v, FEL_ITER_J_MIN, -1, 0), 0);
    EXPECT_EQ(mesh->begin(&v, FEL_ITER_FIX_I, 3, 0), 0);
    EXPECT_EQ(mesh->begin(&v, FEL_ITER_FIX_K, -1, 0), 0);
    EXPECT_EQ(mesh->begin(&it, FEL_ITER_I_MIN, 1, FEL_ITER_I_MAX, 0, 0), 0);
    EXPECT_TRUE(it.done);
}

TEST(FEL_structured_mesh, NodesOfACellAndCellsWithoutNodes) {
    FEL_pointer<FEL_structured_mesh> mesh = lattice(3, 2, 2, 0);
    int nodes[8];
    ASSERT_EQ(mesh->get_node_indices(FEL_cell(FEL_CELL_HEXAHEDRON, 1, 0, 0), nodes), 1);
    EXPECT_EQ(std::vector<int>(nodes, nodes + 8), (std::vector<int>{1, 2, 4, 5, 7, 8, 10, 11}));
    EXPECT_EQ(mesh->get_node_indices(FEL_cell(FEL_CELL_HEXAHEDRON, 2, 0, 0), nodes), 0);
    mesh->set(FEL_SIMPLICIAL_DECOMPOSITION, 1);  // a hexahedron is no cell of a decomposed walk
    FEL_cell_iter it;
    it.cell = FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0);
    EXPECT_THROW(mesh->advance_callback(&it), FEL_exception);
    it.cell = FEL_cell(FEL_CELL_TRIANGLE, 0, 0, 0, 13);
    EXPECT_THROW(mesh->advance_callback(&it), FEL_exception);
    FEL_vector3<float> xyz[8];
    EXPECT_THROW(mesh->coordinates_at_cell(FEL_cell(FEL_CELL_HEXAHEDRON, 0, 0, 0), xyz),
                 FEL_exception);
}

}  // namespace
