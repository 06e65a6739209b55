// Slice pictures decoded to RGB with libpng, and the choice of planes.
#include "SlicePicture.h"

#include <gtest/gtest.h>
#include <png.h>

#include <fstream>
#include <tuple>

#include "ScratchDir.h"

namespace {

// Four cells along X (0 to 8), two along Y and Z (0 to 2); cell {I, J, K} = {2, 1, 2} blocked:
//
//   Y 2 +----+----+----+----+
//       |    |    |    |    |       (plane K = 2)
//     1 +----+----+----+----+
//       |    |####|    |    |
//     0 +----+----+----+----+
//       0    2    4    6    8  X
InspectRun TinyRun() {
    InspectRun run;
    run.vecAxes = {std::vector<float>{0, 2, 4, 6, 8}, {0, 1, 2}, {0, 1, 2}};
    run.vecBlocked = {FEL_vector3<int>(2, 1, 2)};
    return run;
}

TEST(SlicePicture, BlockedLeakedAndPathCellsFilledInTheDecodedPicture) {
    const ScratchDir dir;
    InspectRun run = TinyRun();
    run.vecRotors.resize(1);  // a disc across Z about (6, 1, 1.5), radius 0.5
    run.vecRotors[0].v3fCentre = {6, 1, 1.5f};
    run.vecRotors[0].dblRadius = 0.5;
    run.vecRotors[0].dblHalfThickness = 0.1;
    const SlicePlane plane = ParseSlicePlane(run, "k=2");
    std::vector<BodyLeak> vecLeaks(1);  // cell {3, 1, 2} leaked, reached by way of {4, 1, 2}
    vecLeaks[0].vecLeaked = {{2, 0, 1}};
    vecLeaks[0].vecPath = {{3, 0, 1}, {2, 0, 1}};
    WriteSlicePicture(run, vecLeaks, plane, dir / SliceFileName(plane));
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    ASSERT_TRUE(png_image_begin_read_from_file(&png, (dir / "slice_K2.png").c_str()))
        << png.message;
    png.format = PNG_FORMAT_RGB;
    std::vector<unsigned char> rgb(PNG_IMAGE_SIZE(png));
    ASSERT_TRUE(png_image_finish_read(&png, nullptr, rgb.data(), 0, nullptr)) << png.message;
    const SliceView view(run, plane);
    // The grid is wider than the legend, which goes below it.
    ASSERT_EQ(png.width, static_cast<png_uint_32>(view.Width()));
    ASSERT_GT(png.height, static_cast<png_uint_32>(view.Height()));
    const auto pixel = [&](double x, double y) {
        const size_t at = (static_cast<size_t>(view.Row(y)) * png.width + view.Column(x)) * 3;
        return std::vector<int>(rgb.begin() + at, rgb.begin() + at + 3);
    };
    EXPECT_EQ(pixel(3, 0.5), std::vector<int>(g_rgbBlockedFill, g_rgbBlockedFill + 3));
    EXPECT_EQ(pixel(5, 0.5), std::vector<int>(g_rgbLeakPath, g_rgbLeakPath + 3));
    EXPECT_EQ(pixel(7, 0.5), std::vector<int>(g_rgbLeakPath, g_rgbLeakPath + 3));
    EXPECT_EQ(pixel(5, 1.5), std::vector<int>(3, 255));
    EXPECT_EQ(pixel(6, 1.5), std::vector<int>(g_rgbRotorDisc, g_rgbRotorDisc + 3));
}

TEST(ReadRotors, PlacedAsTheGeneratorPlacesThem) {
    const ScratchDir dir;
    std::ofstream(dir / "p.Grid")
        << "Start Body Definitions\n New Body\n  type: Z-Plane Rotor\n  center: (1.0,2.0,3.0)\n"
           "  radius: 2.0\n  half thickness: 0.05\n  Is Absolute Thickness: False\n #\n"
           " New Body\n  type: X-Plane Rotor\n  center: (0,0,0)\n  radius: 1\n"
           "  half thickness: 0.1\n  Is Absolute Thickness: True\n #\n"
           " New Body\n  type: Y-Plane Rotor\n  center: (0,0,0)\n #\n"  // no radius: left out
           "End Body Definitions\n";
    // Scaled by (2, 3, 4), then moved by (1, 1, 1): the radius by the X factor, an absolute half
    // thickness by the Z factor, a relative one times the scaled radius.
    const auto rotors = ReadRotors(dir / "p.Grid", {2, 3, 4}, {1, 1, 1});
    ASSERT_EQ(rotors.size(), 2u);
    const std::tuple<int, float, float, float, double, double> expected[] = {{2, 3, 7, 13, 4, 0.2},
                                                                             {0, 1, 1, 1, 2, 0.4}};
    for (size_t n = 0; n < 2; ++n)
        EXPECT_EQ(
            std::make_tuple(rotors[n].intAxis, rotors[n].v3fCentre.x, rotors[n].v3fCentre.y,
                            rotors[n].v3fCentre.z, rotors[n].dblRadius, rotors[n].dblHalfThickness),
            expected[n]);
}

TEST(SlicePicture, UnwritableFileNamesThePath) {
    EXPECT_THROW(WriteSlicePicture(TinyRun(), {}, SlicePlane{2, 1}, "/nonexistent/slice.png"),
                 InspectError);
}

TEST(SliceView, BodiesExtentWithAMarginOrTheWholePlane) {
    // A body from (3, 0.5, 0.5) to (5, 1.5, 1.5): in plane K its box widened by a quarter of its
    // extent (2) on each side, cut to the grid; with blnWhole the grid's 0..8 by 0..2.
    InspectRun run = TinyRun();
    run.vecBodies.emplace_back();
    run.vecBodies[0].surface.vecPoints = {{3, 0.5f, 0.5f}, {5, 1.5f, 1.5f}};
    const SliceView view(run, SlicePlane{2, 1}, false), whole(run, SlicePlane{2, 1}, true);
    EXPECT_EQ(std::vector<double>({view.Low(0), view.High(0), view.Low(1), view.High(1)}),
              std::vector<double>({2.5, 5.5, 0, 2}));
    EXPECT_EQ(std::vector<double>({whole.Low(0), whole.High(0), whole.Low(1), whole.High(1)}),
              std::vector<double>({0, 8, 0, 2}));
    // A thin domain, 8 by 0.02: its short side widened towards 200 pixels as far as its long side
    // may grow, to 4000.
    run.vecAxes[1] = {0, 0.02f};
    const SliceView thin(run, SlicePlane{2, 1});
    EXPECT_NEAR(thin.Scale(), 500, 1e-9);
}

TEST(SlicePicture, PlanesByIndexOrCoordinate) {
    const InspectRun run = TinyRun();
    const std::tuple<const char*, int, int> accepted[] = {
        {"i=4", 0, 3}, {"K=1", 2, 0}, {"x=2", 0, 1}, {"x=8", 0, 3}, {"y=0.5", 1, 0}};
    for (const auto& [text, axis, cell] : accepted) {
        const SlicePlane plane = ParseSlicePlane(run, text);
        EXPECT_EQ(std::make_pair(plane.intAxis, plane.intCell), std::make_pair(axis, cell)) << text;
    }
    for (const char* text : {"i=0", "i=5", "x=9", "x=1q", "w=1", "k"})
        EXPECT_THROW(ParseSlicePlane(run, text), InspectError) << text;
}

}  // namespace
