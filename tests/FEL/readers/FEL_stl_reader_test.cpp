// STL reading: both forms, exact vertex merging, vertex order, zones, and the public corpus
// (which also holds several solids in one text file and binary files whose header says "solid").
#include "readers/FEL_stl_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <iomanip>
#include <set>
#include <sstream>
#include <tuple>
#include <vector>

#include "FEL/readers/FEL_reader_test_files.h"
#include "FEL_tetrahedral_mesh.h"
#include "readers/FEL_reader.h"

namespace {

using Tri = std::vector<FEL_vector3<float>>;

std::string ascii_stl(const std::vector<Tri>& facets) {
    std::ostringstream s;
    s << std::setprecision(9) << "solid t\n";
    for (const Tri& t : facets) {
        s << "  facet normal 0 0 1\n    outer loop\n";
        for (const auto& v : t) s << "      vertex " << v.x << " " << v.y << " " << v.z << "\n";
        s << "    endloop\n  endfacet\n";
    }
    return s.str() + "endsolid t\n";
}

std::string binary_stl(const std::vector<Tri>& facets) {
    std::string s = std::string(80, ' ') + le_ints({static_cast<std::uint32_t>(facets.size())});
    for (const Tri& t : facets) {
        s += std::string(12, '\0');
        for (const auto& v : t) s += le_float(v.x) + le_float(v.y) + le_float(v.z);
        s += std::string(2, '\0');
    }
    return s;
}

//  (0,1)
//    | \        one triangle, numbered counter-clockwise from the origin
//  (0,0)-(1,0)
const Tri corner = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};

const FEL_tetrahedral_mesh& surface(const FEL_pointer<FEL_mesh>& mesh) {
    return dynamic_cast<const FEL_tetrahedral_mesh&>(*mesh.get());
}

int zone_count(const FEL_tetrahedral_mesh& m) {
    std::set<int> zones;
    for (int t = 0; t < m.get_n_triangles(); ++t) zones.insert(m.get_triangle_zone(t));
    return static_cast<int>(zones.size());
}

}  // namespace

TEST(FEL_stl_reader, BitEqualVerticesMergeMinusZeroAsZeroOrderedByCoordinateZonesByEdge) {
    //  (0,1)----(1,1)      A = corner at z = 0.0
    //    | \   B  |        B = (1,0) (1,1) (0,1) at z = -0.0: shares the edge (1,0)-(0,1)
    //    |  A \   |
    //  (0,0)----(1,0)
    FEL_test_dir dir;
    const float mz = -0.0f;
    const std::vector<Tri> signed_zero = {corner, {{1, 0, mz}, {1, 1, mz}, {0, 1, mz}}};
    const FEL_pointer<FEL_mesh> merged =
        FEL_stl_read_mesh(dir.write("z.stl", binary_stl(signed_zero)), 1);
    const FEL_tetrahedral_mesh& m = surface(merged);
    ASSERT_EQ(m.get_n_vertices(), 4);
    EXPECT_EQ(zone_count(m), 1);
    // A merged vertex keeps the coordinates met first; (1,1) was only ever -0.0.
    EXPECT_FALSE(std::signbit(m.get_vertices()[m.get_triangles()[0].y].z));
    EXPECT_TRUE(std::signbit(m.get_vertices()[m.get_triangles()[1].y].z));
    EXPECT_TRUE(g_blnUseClose);

    // The same with B's (0,1) one bit above 1 in y: the parts touch at (1,0) only. Zones are
    // numbered in the order of each part's first facet.
    std::vector<Tri> apart = signed_zero;
    apart[1][2].y = std::nextafter(1.0f, 2.0f);
    const FEL_pointer<FEL_mesh> split = FEL_stl_read_mesh(dir.write("b.stl", binary_stl(apart)), 1);
    EXPECT_EQ(surface(split).get_n_vertices(), 5);
    EXPECT_EQ(zone_count(surface(split)), 2);
    EXPECT_EQ(surface(split).get_triangle_zone(1), 1);

    // Vertices are numbered in coordinate order, not file order: (1,0,7) < (1,5,0) < (2,0,0).
    const FEL_pointer<FEL_mesh> mesh =
        FEL_stl_read_mesh(dir.write("o.stl", ascii_stl({{{2, 0, 0}, {1, 5, 0}, {1, 0, 7}}})), 0);
    EXPECT_EQ(surface(mesh).get_triangles()[0], FEL_vector3<int>(2, 1, 0));
}

TEST(FEL_stl_reader, AsciiDropsAFacetCutOffByTheEndAndNeedsASolidLine) {
    FEL_test_dir dir;
    // The second facet stops after two vertices.
    std::string cut = ascii_stl({corner, {{5, 0, 0}, {6, 0, 0}, {5, 1, 0}}});
    cut = cut.substr(0, cut.rfind("      vertex"));
    std::vector<_FEL_triangle> list;
    FEL_stl_read_mesh_ascii(dir.write("cut.stl", cut), list);
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0].vertex[2], FEL_vector3<float>(0, 1, 0));

    // No "solid" line, or no file: no facets.
    FEL_stl_read_mesh_ascii(dir.write("nosolid.stl", "facet normal 0 0 1\n vertex 1 2 3\n"), list);
    EXPECT_TRUE(list.empty());
    FEL_stl_read_mesh_ascii(dir.write("x", "") + ".missing", list);
    EXPECT_TRUE(list.empty());
}

TEST(FEL_stl_reader, BinaryOfEightyFourBytesIsEmpty) {
    FEL_test_dir dir;
    unsigned flags = 0;
    const FEL_pointer<FEL_mesh> none =
        FEL_read_mesh(dir.write("empty.stl", binary_stl({})), flags, -1);
    EXPECT_EQ(flags, 4u);
    EXPECT_EQ(surface(none).get_n_triangles() + surface(none).get_n_vertices(), 0);
}

TEST(FEL_stl_reader_death, BinaryOneByteLongerThanItsCountEndsWithStatusFive) {
    FEL_test_dir dir;
    const std::string path = dir.write("long.stl", binary_stl({corner}) + "x");
    EXPECT_EXIT(
        {
            dup2(2, 1);  // the message goes to standard output
            FEL_stl_read_mesh(path, 1);
        },
        testing::ExitedWithCode(5),
        "This file is binary, but may need to be endian converted\\. Otherwise, it must be "
        "broken\\.");
}

TEST(FEL_stl_reader, PublicCorpusMatchesIndependentCounts) {
    struct Expected {
        const char* file;
        int facets, vertices, parts;
    };
    const Expected table[] = {
        {"angle_block.STL", 704, 398, 1},   {"blade.stl", 4640, 2320, 1},
        {"bunny.stl", 9999, 5055, 1},       {"esp_airfoil.stl", 976, 732, 1},
        {"featuretype.STL", 3476, 2010, 1}, {"multibody.stl", 32, 20, 2},
        {"plate_holes.STL", 1252, 618, 1},  {"soup.stl", 100, 300, 100},
        {"teapot.stl", 894, 480, 4},        {"two_objects_mixed_case_names.stl", 24, 16, 2},
        {"unit_cube.STL", 12, 8, 1},        {"unit_sphere.STL", 1280, 642, 1},
    };
    int boxed = 0;
    for (const Expected& e : table) {
        SCOPED_TRACE(e.file);
        unsigned flags = 292;  // the bodies' first guess, refused by every STL file
        const std::string path = corpus(std::string("stl/") + e.file);
        const FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(path, flags, -1);
        // Where the facets give the box at once, it is the mesh's, bit for bit.
        FEL_vector3<float> box[4];
        if (FEL_stl_binary_bounds(path, &box[0], &box[1])) {
            ++boxed;
            mesh->get_bounding_box(&box[2], &box[3]);
            EXPECT_EQ(std::memcmp(box, box + 2, sizeof box[0] * 2), 0);
        }
        EXPECT_EQ(flags, 4u);
        const FEL_tetrahedral_mesh& m = surface(mesh);
        EXPECT_EQ(m.get_n_triangles(), e.facets);
        EXPECT_EQ(m.get_n_vertices(), e.vertices);
        EXPECT_EQ(zone_count(m), e.parts);
        const FEL_vector3<float>* v = m.get_vertices();
        auto key = [](const FEL_vector3<float>& p) { return std::make_tuple(p.x, p.y, p.z); };
        for (int n = 1; n < m.get_n_vertices(); ++n) ASSERT_LT(key(v[n - 1]), key(v[n]));
    }
    EXPECT_EQ(boxed, 7);  // the binary files
}

// The box from the facets alone is given only where the read mesh's box must be the same: not
// with a side at 0.0 or -0.0 (the merge decides which it keeps), a coordinate that is not a
// number, a text file, or a number opening the file (the bodies' first guess may take it).
TEST(FEL_stl_reader, BoxFromTheFacetsOnlyWhereTheMeshMustHaveIt) {
    const Tri a = {{1, 2, 3}, {4, -5, 6}, {-7, 8, 9}};
    const Tri zero = {{-0.0f, 1, 1}, {1, 1, 2}, {2, 2, 1}};
    const Tri nan = {{1, std::nanf(""), 1}, {1, 1, 2}, {2, 2, 1}};
    const std::tuple<std::string, bool, float> rows[] = {
        // the file, given, the box's low z
        {binary_stl({a}), true, 3},     {binary_stl({a, zero}), true, 1},
        {binary_stl({zero}), false, 0}, {binary_stl({a, nan}), false, 0},
        {ascii_stl({a}), false, 0},     {"-" + binary_stl({a}).substr(1), false, 0},
        {binary_stl({}), false, 0}};
    FEL_test_dir dir;
    for (const auto& [bytes, given, lowZ] : rows) {
        FEL_vector3<float> low, high;
        ASSERT_EQ(FEL_stl_binary_bounds(dir.write("b.stl", bytes), &low, &high), given) << bytes;
        if (!given) continue;
        EXPECT_EQ(low, FEL_vector3<float>(-7, -5, lowZ));
        EXPECT_EQ(high, FEL_vector3<float>(4, 8, 9));
    }
}
