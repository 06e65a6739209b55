// Body triangulation: structured counts with their degenerate and closing triangles, and the
// unstructured filter of coincident vertices.
#include "intersector/convert.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "FEL_axis_aligned_mesh.h"
#include "FEL_tetrahedral_mesh.h"

namespace {
struct Owned {  // the triangles made, freed at the end
    std::vector<Triangle*> t;
    ~Owned() {
        for (Triangle* p : t) delete p;
    }
};

bool Is(const Triangle* t, std::vector<double> v) {
    return std::equal(v.begin(), v.end(), t->m_adblVertices);
}

TEST(ConvertTriangles, StructuredRowsCountTwoPerVertexPlusTwo) {
    const int dims[][4] = {{3, 2, 1, 8}, {1, 3, 1, 8}, {4, 1, 1, 0}, {3, 3, 2, 16}, {5, 4, 3, 36}};
    for (const auto& d : dims) {
        Owned out;
        ConvertTriangles(
            FEL_pointer<FEL_mesh>(new FEL_regular_mesh(d[0], d[1], d[2], 1, 2, 3, "m")), out.t);
        EXPECT_EQ(int(out.t.size()), d[3]) << d[0] << "x" << d[1] << "x" << d[2];
        for (Triangle* t : out.t)
            EXPECT_EQ(t->m_adblVertices[2], 3.0 * (d[2] - 1));  // last k plane
    }
    // 3 x 2 points, spacing 1 by 2:  B0 (0,2) B1 (1,2) B2 (2,2)
    //                                A0 (0,0) A1 (1,0) A2 (2,0)
    Owned out;
    ConvertTriangles(FEL_pointer<FEL_mesh>(new FEL_regular_mesh(3, 2, 1, 1, 2, 1, "m")), out.t);
    ASSERT_EQ(out.t.size(), 8u);
    EXPECT_TRUE(Is(out.t[0], {0, 0, 0, 0, 0, 0, 0, 2, 0}));  // (A0, A0, B0): zero area
    EXPECT_TRUE(Is(out.t[1], {0, 2, 0, 0, 2, 0, 0, 0, 0}));  // (B0, B0, A0)
    EXPECT_TRUE(Is(out.t[2], {1, 0, 0, 0, 0, 0, 0, 2, 0}));  // (A1, A0, B0)
    EXPECT_TRUE(Is(out.t[3], {0, 2, 0, 1, 2, 0, 1, 0, 0}));  // (B0, B1, A1)
    EXPECT_TRUE(Is(out.t[6], {0, 0, 0, 1, 0, 0, 1, 2, 0}));  // closing: (A0, A1, B1)
    EXPECT_TRUE(Is(out.t[7], {1, 2, 0, 0, 2, 0, 0, 0, 0}));  // (B1, B0, A0)
}

TEST(ConvertUnstructuredTriangles, DropsCoincidentVerticesByFelClose) {
    // Triangles: a good one, one with vertices 0 and 2 equal, one with 1 and 2 within tolerance.
    const FEL_vector3<float> points[5] = {
        {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1.00001f, 1, 0}};
    const FEL_vector3<int> tris[3] = {{0, 1, 2}, {2, 1, 2}, {0, 3, 4}};
    auto mesh = [&] {
        auto* v = new FEL_vector3<float>[5];
        auto* t = new FEL_vector3<int>[3];
        std::copy(points, points + 5, v);
        std::copy(tris, tris + 3, t);
        return FEL_pointer<FEL_mesh>(new FEL_tetrahedral_mesh(5, v, 3, t, nullptr, 0, nullptr));
    };
    for (bool useClose : {true, false}) {
        FEL_use_close_scope scope(useClose);
        Owned out;
        ConvertTriangles(mesh(), out.t);
        ASSERT_EQ(out.t.size(), useClose ? 1u : 2u);
        EXPECT_TRUE(Is(out.t[0], {0, 0, 0, 1, 0, 0, 0, 1, 0}));
        // What a tool that judges the run's surface sees: the same choice, cell by cell.
        EXPECT_EQ(KeptUnstructuredCells(mesh()), std::vector<bool>({true, false, !useClose}));
        EXPECT_EQ(CountDroppedTriangles(mesh(), nullptr), useClose ? 2 : 1);
    }
}
}  // namespace
