// Tests of the run's pieces: banner, grid-points file, translation file and final corner points.
#include "generator/gdrun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "gdtest_util.h"
#include "generator/gdsolverfiles.h"

namespace {

TEST(GdRun, VersionBannerWritesNoFileAndZeroesTheOutValues) {
    const char* argv[6] = {"gridgen", "-v", "a", "b", "c", "d"};
    double x = 1, y = 2, z = 3;
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(CutsGridGenerator(2, const_cast<char**>(argv), true, &x, &y, &z), 0);
    const std::string out = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(out.rfind("\n\nGridlet: A Cartesian Structured Grid Generator - Version 1.11.4\n", 0),
              0u);
    EXPECT_EQ(std::count(out.begin(), out.end(), '\n'), 4);
    EXPECT_EQ(x + y + z, 0.0);
}

TEST(GdRun, GridPointsFileListsEachLine) {
    set_test_options();
    double xs[] = {0.1, -2.5}, zs[] = {1e-20};
    Xgdln = make_line(0);
    Ygdln = make_line(1);
    Zgdln = make_line(2);
    Xgdln.gdpts = xs;
    Xgdln.nGdpts = 2;
    Zgdln.gdpts = zs;
    Zgdln.nGdpts = 1;
    const std::string path = ::testing::TempDir() + "gdpts_test.dat";
    wr_grid_pts_file(path.c_str());
    FILE* f = std::fopen(path.c_str(), "r");
    ASSERT_NE(f, nullptr);
    // 0.1 and 1e-20 to 18 significant digits: 0.100000000000000006 and 9.99999999999999945E-21.
    EXPECT_EQ(read_all(f),
              "# X-Grid Points\n2\n       0.100000000000000006\n"
              "                       -2.5\n"
              "# Y-Grid Points\n0\n# Z-Grid Points\n1\n    9.99999999999999945E-21\n");
    std::fclose(f);
    std::remove(path.c_str());
}

TEST(GdRun, TranslationFileAndItsFailure) {
    const std::string path = ::testing::TempDir() + "Lcl2Gbl_test.dat";
    wrtTrnsltn(-1.5, 0.0, 2.25, path.c_str());
    FILE* f = std::fopen(path.c_str(), "r");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(read_all(f), "-1.500000 0.000000 2.250000 \n");
    std::fclose(f);
    std::remove(path.c_str());

    ::testing::internal::CaptureStdout();
    wrtTrnsltn(0, 0, 0, "/nonexistent-dir/Lcl2Gbl.dat");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "/nonexistent-dir/Lcl2Gbl.dat could not be opened.");
}

TEST(GdRun, FinalCornerPointsWithLayersAndAnEmptyLine) {
    set_test_options();
    gd_options.gridStart[0] = 10.0;
    gd_options.gridStart[2] = -1.0;
    double xs[] = {3.0, 4.0, 6.0};
    Xgdln = make_line(0);
    Ygdln = make_line(1);
    Zgdln = make_line(2);
    Xgdln.gdpts = xs;
    Xgdln.nGdpts = 3;
    Zgdln.gdpts = xs;
    Zgdln.nGdpts = 3;
    double before[] = {0.5, 1.5}, after[] = {2.0};
    BefBdyLyrGds[0] = LayerGrids{0, nullptr, 0.0, 2, before};
    AftBdyLyrGds[0] = LayerGrids{0, nullptr, 0.0, 1, after};
    BefBdyLyrGds[1] = BefBdyLyrGds[2] = AftBdyLyrGds[1] = AftBdyLyrGds[2] = LayerGrids{};
    double t[3];
    int16_t shift[3];
    set_final_gdpts(t, shift);
    // X: 10, 10, 10.5, 12 | line 3, 4, 6 moved by 12 - 3 = 9 | 15 + 2 = 17, 17 again.
    EXPECT_EQ(std::vector<double>(finalgdpts[0], finalgdpts[0] + Nfinalgdpts[0]),
              (std::vector<double>{10, 10, 10.5, 12, 13, 15, 17, 17}));
    EXPECT_EQ(t[0], 9.0);
    EXPECT_EQ(shift[0], 3);
    // Y has no points: two zero-width cells at the start, and no translation.
    EXPECT_EQ(Nfinalgdpts[1], 2);
    EXPECT_EQ(t[1], 0.0);
    EXPECT_EQ(shift[1], 1);
    EXPECT_EQ(std::vector<double>(finalgdpts[2], finalgdpts[2] + Nfinalgdpts[2]),
              (std::vector<double>{-1, -1, 0, 2, 2}));
    EXPECT_EQ(t[2], -4.0);
}

}  // namespace
