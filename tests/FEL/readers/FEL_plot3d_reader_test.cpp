// Plot3D: size arithmetic of the deducer, the reader's size check, binary and text forms.
#include "readers/FEL_plot3d_reader.h"

#include <gtest/gtest.h>

#include "FEL/readers/FEL_reader_test_files.h"
#include "FEL_exception.h"
#include "readers/FEL_plot3d_text_axes.h"
#include "readers/FEL_reader.h"

namespace {

// A little-endian file with Fortran record markers: the dimension record, then one record of the
// x, y, z planes (and iblank) of node n having coordinates (n, 10 n, 100 n) and iblank n % 3 - 1.
std::string fortran_zone(int ni, int nj, int nk, bool iblank) {
    const int n = ni * nj * nk;
    std::string s = le_ints({12u, std::uint32_t(ni), std::uint32_t(nj), std::uint32_t(nk), 12u});
    const std::uint32_t bytes = (iblank ? 16 : 12) * n;
    s += le_ints({bytes});
    for (float scale : {1.0f, 10.0f, 100.0f})
        for (int i = 0; i < n; ++i) s += le_float(scale * i);
    for (int i = 0; iblank && i < n; ++i) s += le_ints({std::uint32_t(i % 3 - 1)});
    return s + le_ints({bytes});
}

// Many zones of 2 x 2 x 2 nodes in the Fortran layout: count record, dimension record, zones.
std::string fortran_zones(int count) {
    std::string s = le_ints({4u, std::uint32_t(count), 4u, std::uint32_t(12 * count)});
    for (int z = 0; z < count; ++z) s += le_ints({2, 2, 2});
    s += le_ints({std::uint32_t(12 * count)});
    for (int z = 0; z < count; ++z) {
        s += le_ints({96});
        for (int v = 0; v < 24; ++v) s += le_float(float(z));
        s += le_ints({96});
    }
    return s;
}

// The reader's message on path, behind the line that must open it: the path in quotes.
std::string message_of(const std::string& path, unsigned flags, int zone) {
    try {
        FEL_plot3d_read_mesh(path, flags, zone);
    } catch (const FEL_read_error& e) {
        const std::string opening = "\"" + path + "\":\n";
        EXPECT_EQ(e.what().substr(0, opening.size()), opening);
        return e.what().substr(opening.size());
    }
    return "no error";
}

}  // namespace

TEST(FEL_plot3d_reader, DeducerSizeTestsInTheirOrderAndIn32BitArithmetic) {
    FEL_test_dir dir;
    // 4 x 1 x 1 nodes without markers, 12 * 4 + 12 bytes: the first word 4 could also open a
    // record, but the plain form is tested first.
    const std::string four = le_ints({4, 1, 1}) + std::string(48, '\0');
    EXPECT_EQ(FEL_plot3d_deduce_mesh_type(dir.write("four", four)), 0x140u);

    // 1 x 3 x 3 nodes: 120 bytes fit both 12 N + 12 and the unstructured 4 (4*3 + 4*3 + 3) + 12.
    const std::string both = le_ints({1, 3, 3}) + std::string(108, '\0');
    EXPECT_EQ(FEL_plot3d_deduce_mesh_type(dir.write("both", both)), 0x140u);

    // 641 * 6700417 = 2^32 + 1: in 32-bit counts that is one node, 24 bytes.
    const std::string wrapped =
        le_ints({641, 6700417, 1}) + le_float(1) + le_float(2) + le_float(3);
    EXPECT_EQ(FEL_plot3d_deduce_mesh_type(dir.write("wrap", wrapped)), 0x140u);
    EXPECT_EQ(FEL_plot3d_deduce_mesh_type(dir.write("f", fortran_zone(2, 3, 4, false))), 0x148u);

    // Only the first 25 bytes decide text.
    EXPECT_EQ(
        FEL_plot3d_deduce_mesh_type(dir.write("text", std::string(25, ' ') + le_ints({1, 2}))), 0u);
    EXPECT_THROW(FEL_plot3d_deduce_mesh_type(dir.write("empty", "")), FEL_read_error);
    EXPECT_THROW(FEL_plot3d_deduce_mesh_type(dir.write("short", std::string(12, '\0'))),
                 FEL_read_error);
}

TEST(FEL_plot3d_reader, FortranSingleZoneIsReadAndThePlainFormIsRefusedBySize) {
    FEL_test_dir dir;
    const std::string path = dir.write("f", fortran_zone(2, 3, 4, false));
    unsigned flags = 0;
    const FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(path, flags, -1);
    EXPECT_EQ(flags, 0x148u);
    EXPECT_EQ(mesh->get_name(), "curvilinear_mesh_xyz_layout");
    EXPECT_EQ(dims_of(mesh), (std::vector<int>{2, 3, 4}));
    EXPECT_EQ(node(mesh, 23), FEL_vector3<float>(23, 230, 2300));

    const std::string blanked = dir.write("fi", fortran_zone(2, 2, 2, true));
    const FEL_pointer<FEL_mesh> xyzi = FEL_plot3d_read_mesh(blanked, 0, -1);
    EXPECT_EQ(xyzi->get_name(), "curvilinear_mesh_xyzi_layout");
    int iblank = 7;  // node 3: iblank 3 % 3 - 1
    EXPECT_EQ(xyzi->iblank_at_vertex_cell(FEL_vertex_cell(1, 1, 0), &iblank), 1);
    EXPECT_EQ(iblank, -1);

    // The same nodes without markers: the deducer takes them, the size check measures markers.
    const std::string marked = fortran_zone(2, 3, 4, false);
    const std::string plain_path =
        dir.write("plain", marked.substr(4, 12) + marked.substr(24, 288));
    EXPECT_EQ(message_of(plain_path, 0, -1), "Specified file type does not match file.");
    EXPECT_EQ(message_of(path, 0x1108, -1), "Unsupported format");
}

TEST(FEL_plot3d_reader, FourThousandZonesAreReadAndOneMoreIsNoPlot3d) {
    FEL_test_dir dir;
    const std::string most = dir.write("4000", fortran_zones(4000));
    unsigned flags = 0;
    const FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(most, flags, -1);
    EXPECT_EQ(flags, 0x14Au);
    ASSERT_EQ(mesh->get_n_zones(), 4000);
    EXPECT_EQ(node(mesh->get_zone(3999), 7), FEL_vector3<float>(3999, 3999, 3999));

    const std::string too_many = dir.write("4001", fortran_zones(4001));
    EXPECT_EQ(FEL_plot3d_deduce_mesh_type(too_many), 0u);
    flags = 0;
    EXPECT_THROW(FEL_read_mesh(too_many, flags, -1), FEL_type_detection_error);
}

TEST(FEL_plot3d_reader, TextDimensionsMustReadTheSameAsIntegerAndFloat) {
    FEL_test_dir dir;
    std::string nodes;
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < 12; ++i) nodes += " " + std::to_string(i) + ".25";
    const FEL_pointer<FEL_mesh> mesh =
        FEL_plot3d_read_mesh(dir.write("ok", "12.0 1 1\n" + nodes + "\n"), 0x120, -1);
    EXPECT_EQ(dims_of(mesh), (std::vector<int>{12, 1, 1}));
    EXPECT_EQ(mesh->get_name(), "curvilinear_surface_mesh");
    EXPECT_EQ(node(mesh, 11), FEL_vector3<float>(11.25f, 11.25f, 11.25f));

    EXPECT_EQ(message_of(dir.write("half", "12.5 1 1\n" + nodes + "\n"), 0x120, -1),
              "Problem reading dimensions");
    // A count of 0 is no zone, and counts beyond the numbers in the file fail before parsing.
    EXPECT_EQ(message_of(dir.write("zero", "0 1 1\n"), 0x120, -1), "Problem reading dimensions");
    EXPECT_EQ(message_of(dir.write("big", "100 100 100\n" + nodes), 0x120, -1),
              "Problem reading coordinates");
}

TEST(FEL_plot3d_reader, TextIblankFormIsFoundByTheTrialReads) {
    FEL_test_dir dir;
    //  2 x 2 x 2 nodes, x = i + 0.5, y = j + 0.5, z = k + 0.5, iblank 1 but node 7 blanked (0)
    std::string text = "2 2 2\n";
    for (int c = 0; c < 3; ++c)
        for (int n = 0; n < 8; ++n) text += std::to_string((n >> c) & 1) + ".5 ";
    text += "\n1 1 1 1 1 1 1 0\n";
    unsigned flags = 0;
    const FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(dir.write("ib", text), flags, -1);
    EXPECT_EQ(flags, 0x121u);
    EXPECT_EQ(mesh->get_name(), "curvilinear_mesh_xyzi_layout");
    int iblank = 7;
    mesh->iblank_at_vertex_cell(FEL_vertex_cell(1, 1, 1), &iblank);
    EXPECT_EQ(iblank, 0);
    EXPECT_EQ(node(mesh, 7), FEL_vector3<float>(1.5f, 1.5f, 1.5f));
}

TEST(FEL_plot3d_reader, ZonesAskedForHeaderOnlyReadsAndBigEndianNodes) {
    const std::string multi = corpus("plot3d/multi-ascii.xyz");
    const FEL_pointer<FEL_mesh> second = FEL_plot3d_read_mesh(multi, 0x122, 1);
    EXPECT_EQ(second->get_n_zones(), 1);
    EXPECT_EQ(dims_of(second), (std::vector<int>{8, 12, 12}));
    EXPECT_THROW(FEL_plot3d_read_mesh(multi, 0x122, 2), FEL_read_error);
    EXPECT_EQ(message_of(multi, 0x120, 1), "Cannot read zone 1 when not FEL_PLOT3D_MULTIZONE");

    const std::string sduct = corpus("plot3d/sduct.new.x.bin");
    int n_zones = 0;
    EXPECT_EQ(FEL_read_mesh_n_zones(sduct, 0x10A, &n_zones), 1);
    EXPECT_EQ(n_zones, 2);
    FEL_vector3<int> d;
    EXPECT_EQ(FEL_read_mesh_zone_dimensions(sduct, 0x10A, 1, &d), 1);
    EXPECT_EQ(d, FEL_vector3<int>(123, 31, 21));
    EXPECT_EQ(FEL_read_mesh_zone_dimensions(sduct, 0x10A, 2, &d), 0);
    // sduct is big-endian; zone 1's x plane starts behind the count record (12 bytes), the
    // dimension record (8 + 24) and the zone's opening marker (4).
    std::uint32_t bits = 0;
    for (unsigned char byte : ReadWholeFile(sduct).substr(48, 4)) bits = bits << 8 | byte;
    float x0;
    std::memcpy(&x0, &bits, 4);
    EXPECT_EQ(node(FEL_plot3d_read_mesh(sduct, 0x10A, -1)->get_zone(0), 0).x, x0);
}

// Regression: the binary size check overflowed 64-bit arithmetic on dimensions read in a foreign
// form. The check always assumes record markers, so a plain file's words become dimensions. Here
// the words 16, 2^30, 2^30 (and 16 again behind the first marker word): 12 or 16 times their
// product is a multiple of 2^64, so wrapped 64-bit arithmetic expected 28 bytes, the size of this
// very file, and let it through. Every answer must be a plain refusal.
TEST(FEL_plot3d_size_regression, CheckBinaryFileSizeOverflowOnForeignDimensions) {
    FEL_test_dir dir;
    const std::string path = dir.write("wrap.bin", le_ints({16, 1u << 30, 1u << 30, 16, 0, 0, 0}));
    for (unsigned flags : {0u, 0x1u, 0x2u, 0x3u, 0x8u, 0x9u, 0x48u, 0x49u})
        EXPECT_FALSE(CheckBinaryFileSize(path, flags)) << flags;
}

// The unit cube's 2 x 2 x 2 nodes as text; only what the whole reading takes for one zone whose
// nodes lie on axes is read straight into axes.
TEST(FEL_plot3d_reader, TextAxesOnlyWhereTheWholeReadingGivesOneZoneOnAxes) {
    const std::string x = " 0 1 0 1 0 1 0 1", y = " 0 0 1 1 0 0 1 1", z = " 0 0 0 0 1 1 1 1";
    const struct {
        const char* name;
        std::string text;
        bool axes;
    } cases[] = {
        {"cube", "\n2 2 2\n" + x + y + z + "\n# Num. of Body Cells:\n0\n", true},
        {"zone count", "1\n2 2 2\n" + x + y + z, false},
        {"iblanks", "2 2 2\n" + x + y + z + " 1 1 1 1 1 1 1 1", false},
        {"off the axes", "2 2 2\n" + x + y + " 0 0 0 0 1 1 1 1.5", false},
        {"joined numbers", "2 2 2\n" + x + "+0" + y.substr(2) + z, false},  // "1+0": 1, 0
        {"short", "2 2 2\n" + x + y, false},
        {"binary", le_ints({2, 2, 2}) + std::string(96, '\0'), false},
    };
    FEL_test_dir dir;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const FEL_pointer<FEL_mesh> mesh = FEL_plot3d_read_text_axes(dir.write("g", c.text), 2);
        ASSERT_EQ(!mesh.null(), c.axes);
        if (!c.axes) continue;
        FEL_vector3<float> p;
        ASSERT_TRUE(mesh->coordinates_at_vertex_cell(FEL_vertex_cell(1, 0, 1), &p));
        EXPECT_EQ(p, FEL_vector3<float>(1, 0, 1));
    }
}

// A graded 40 x 30 x 50-node grid in the generator's form, 2.3 MB: three threads cut its text
// anywhere and give every node as the whole reading does.
TEST(FEL_plot3d_reader, TextAxesOnThreadsGiveEveryNodeAsTheWholeReading) {
    std::string text = "\n40 30 50\n";
    char value[32];
    for (int a = 0; a < 3; ++a)
        for (int n = 0; n < 60000; ++n) {
            const int i = a == 0 ? n % 40 : a == 1 ? n / 40 % 30 : n / 1200;
            std::snprintf(value, sizeof value, " %12.5f", (a - 1) * 1e3 + i * (1 + 0.07 * i));
            text += value;
        }
    FEL_test_dir dir;
    const std::string path = dir.write("g", text + "\n# Num. of Body Cells:\n0\n");
    unsigned flags = 0;
    const FEL_pointer<FEL_mesh> whole = FEL_read_mesh(path, flags, -1);
    const FEL_pointer<FEL_mesh> axes = FEL_plot3d_read_text_axes(path, 3);
    ASSERT_FALSE(axes.null());
    FEL_vector3<float> p;
    for (int n = 0; n < 60000; ++n) {
        ASSERT_TRUE(
            axes->coordinates_at_vertex_cell(FEL_vertex_cell(n % 40, n / 40 % 30, n / 1200), &p));
        ASSERT_EQ(p, node(whole, n)) << n;
    }
}
