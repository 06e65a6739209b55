// Mesh input detection: first bytes, first line, deducers, trial reads, the grid file, the corpus.
#include "readers/FEL_reader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "FEL/readers/FEL_reader_test_files.h"
#include "FEL_exception.h"
#include "FEL_tetrahedral_mesh.h"
#include "RunGridGen.h"
#include "readers/FEL_plot3d_reader.h"

TEST(FEL_reader, FirstBytesTellTextFromBinary) {
    FEL_test_dir dir;
    // Only the first 400 bytes are looked at.
    const std::pair<std::string, bool> rows[] = {{"a \"quoted\" \\ line\r\n\ttab\n", false},
                                                 {"form feed \f is not harmless", true},
                                                 {"caf\xc3\xa9", true},
                                                 {std::string(400, 'a') + '\x01', false},
                                                 {std::string(399, 'a') + '\x01', true},
                                                 {"", false}};
    for (const auto& [bytes, binary] : rows)
        EXPECT_EQ(FEL_is_file_binary(dir.write("f", bytes)), binary) << bytes;
    EXPECT_FALSE(FEL_is_file_binary("/nonexistent/file"));
}

TEST(FEL_reader, FirstLineDecidesTheTextKindInTableOrder) {
    FEL_test_dir dir;
    const std::pair<const char*, int> rows[] = {{"Layout FLOWVIZ solid\n", 1},
                                                {"FLOWVIZ solid TITLE\n", 2},
                                                {"solid TITLE\n", 4},
                                                {"ZONE T=1\n", 3},
                                                {"12 3 4\n5\n", 5},
                                                {"\n12 3 4\n", 5},
                                                {"12\t3\n", 0},
                                                {"# 1.0 2.0 3.0\n", 0}};
    for (const auto& [text, kind] : rows) {
        std::ifstream in(dir.write("f", text));
        EXPECT_EQ(FEL_ascii_file_type(in), kind) << text;
    }
    unsigned info = 0;
    EXPECT_THROW(FEL_flowviz_deduce_file_type("/nonexistent/file", info), FEL_type_detection_error);
}

TEST(FEL_reader, BinaryKindsByMagicOrExactSizeAndByteOrderByTheFirstWord) {
    FEL_test_dir dir;
    const std::string pad(100, '\x01');
    unsigned info = 7;
    EXPECT_EQ(FEL_flowviz_deduce_file_type(dir.write("tdv", "#!TDV112" + pad), info), 3);
    EXPECT_EQ(info, 0u);
    // "#!TDV112" with the bytes of each 32-bit word reversed.
    EXPECT_EQ(FEL_flowviz_deduce_file_type(dir.write("vdt", "DT!#211V" + pad), info), 3);
    // A binary STL file is known by its exact size only.
    const std::string stl = std::string(80, '\0') + le_ints({1}) + std::string(50, '\x02');
    EXPECT_EQ(FEL_flowviz_deduce_file_type(dir.write("long", stl + "x"), info), 0);
    // The byte order compares the first word both ways.
    EXPECT_EQ(FEL_check_byte_reordering(dir.write("be", le_ints({57u << 24}))),
              1);  // 57 big-endian
    EXPECT_EQ(FEL_check_byte_reordering(dir.write("le", le_ints({57}))), 0);
    EXPECT_EQ(FEL_check_byte_reordering("/nonexistent/file"), 0);
}

TEST(FEL_reader, GridFileComesBackAsItsSingleTextZone) {
    FEL_test_dir dir;
    // Whole-number coordinates from 0 pass the multi-zone tries' double reading, but the first
    // zone's third count would be 0: those tries fail and the single zone stands.
    const std::vector<double> unit = {0, 1, 2};
    unsigned flags = 0;
    const FEL_pointer<FEL_mesh> whole =
        FEL_read_mesh(dir.write("unit.dat", GridFile({unit, unit, unit}, "")), flags, -1);
    EXPECT_EQ(flags, 0x120u);
    EXPECT_EQ(whole->get_name(), "curvilinear_mesh_xyz_layout");
    EXPECT_EQ(dims_of(whole), (std::vector<int>{3, 3, 3}));
    EXPECT_EQ(node(whole, 26), FEL_vector3<float>(2, 2, 2));

    // The short path's grid opens with "# " and is no mesh at all; flags keep the last try.
    const std::vector<double> x = {-1.25, -0.5, 0.75, 2.0}, y = {0.5, 1.5, 3.0}, z = {-2.0, 2.5};
    const std::string hashed =
        dir.write("hash.dat", GridFile({x, y, z}, "# 1.000000 2.000000 3.000000"));
    flags = 0;
    EXPECT_THROW(FEL_read_mesh(hashed, flags, -1), FEL_type_detection_error);
    EXPECT_EQ(flags, 0x124u);
}

TEST(FEL_reader, FirstLineWithSolidIsTriedAsStlOnly) {
    FEL_test_dir dir;
    // A perfectly good text grid, but its first line names a solid.
    std::string text = "solid grid\n2 1 1\n0 1\n0 0\n0 0\n";
    unsigned flags = 0;
    const FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(dir.write("s", text), flags, -1);
    EXPECT_EQ(flags, 4u);
    EXPECT_EQ(dynamic_cast<const FEL_tetrahedral_mesh&>(*mesh.get()).get_n_triangles(), 0);
}

TEST(FEL_reader, CallersGuessIsDroppedWhenItsReadFails) {
    FEL_test_dir dir;
    const std::string text =
        "1\n2 2 2\n0 1.5 0 1.5 0 1.5 0 1.5\n0 0 1.5 1.5 0 0 1.5 1.5\n0 0 0 0 1.5 1.5 1.5 1.5\n";
    unsigned flags = 0x124;  // unstructured text: refused, then detection finds the zone count
    const FEL_pointer<FEL_mesh> mesh = FEL_read_mesh(dir.write("p", text), flags, -1);
    EXPECT_EQ(flags, 0x122u);
    EXPECT_EQ(mesh->get_n_zones(), 1);
}

// The zones' dimensions as "ni nj nk" joined by ", ", each flat zone marked by "*".
std::string zones_of(const FEL_pointer<FEL_mesh>& mesh) {
    std::ostringstream text;
    for (int z = 0; z < mesh->get_n_zones(); ++z) {
        const std::vector<int> d = dims_of(mesh->get_zone(z));
        const bool flat = mesh->get_zone(z)->get_name() == "curvilinear_surface_mesh";
        text << (z ? ", " : "") << d[0] << " " << d[1] << " " << d[2] << (flat ? "*" : "");
    }
    return text.str();
}

TEST(FEL_reader, PublicPlot3dCorpusFormsZonesAndRefusals) {
    const struct {
        const char* file;
        unsigned flags;
        const char* zones;
    } readable[] = {
        {"sduct.new.x.bin", 0x10A, "25 31 21, 123 31 21"},
        {"multi-ascii.xyz", 0x122, "8 12 12, 8 12 12"},
        {"mbwavelet_ascii.xyz", 0x122, "4 11 11, 4 11 11, 4 11 11"},
        {"m100_refsurf_p3d.fmt", 0x122, "69 81 1*, 82 35 1*, 82 34 1*"},
        {"wing.xyz", 0x122,
         "5 41 1*, 5 41 1*, 41 41 1*, 41 41 1*, 5 5 1*, 41 5 1*, 5 41 1*, 41 5 1*, 5 5 1*"},
        {"ffd.xyz", 0x122, "6 2 8"},
    };
    for (const auto& e : readable) {
        SCOPED_TRACE(e.file);
        unsigned flags = 0;
        const FEL_pointer<FEL_mesh> mesh =
            FEL_read_mesh(corpus(std::string("plot3d/") + e.file), flags, -1);
        EXPECT_EQ(flags, e.flags);
        EXPECT_EQ(mesh->get_name(), "FEL_plot3d_multi_mesh");
        EXPECT_EQ(zones_of(mesh), e.zones);
    }
    // Plain binary files pass the deducer, are refused by the reader's size check, and every trial
    // read fails; 64-bit reals fit no form at all. Trial candidates end at Fortran unstructured in
    // the file's own order.
    const std::pair<const char*, unsigned> refused[] = {
        {"bluntfinxyz.bin", 0x100}, {"postxyz.bin", 0x101}, {"multi-bin.xyz", 0}};
    for (const auto& [file, deduced] : refused) {
        SCOPED_TRACE(file);
        const std::string path = corpus(std::string("plot3d/") + file);
        EXPECT_EQ(FEL_plot3d_deduce_mesh_type(path), deduced);
        unsigned flags = 0;
        EXPECT_THROW(FEL_read_mesh(path, flags, -1), FEL_type_detection_error);
        EXPECT_EQ(flags, deduced == 0 ? 0x14Cu : 0x10Cu);
    }
}
