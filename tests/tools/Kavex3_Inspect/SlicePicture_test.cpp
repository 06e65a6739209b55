// Slice pictures decoded with libpng, and the choice of planes.
#include "SlicePicture.h"

#include <gtest/gtest.h>
#include <png.h>

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

// A PNG file decoded to RGB bytes, row by row.
struct DecodedPng {
    png_image image{};
    std::vector<unsigned char> rgb;
    explicit DecodedPng(const std::string& path) {
        image.version = PNG_IMAGE_VERSION;
        EXPECT_TRUE(png_image_begin_read_from_file(&image, path.c_str())) << image.message;
        image.format = PNG_FORMAT_RGB;
        rgb.resize(PNG_IMAGE_SIZE(image));
        EXPECT_TRUE(png_image_finish_read(&image, nullptr, rgb.data(), 0, nullptr))
            << image.message;
    }
    std::vector<int> At(int x, int y) const {
        const unsigned char* pixel = &rgb[(static_cast<size_t>(y) * image.width + x) * 3];
        return std::vector<int>(pixel, pixel + 3);
    }
};

TEST(SlicePicture, BlockedCellFilledInTheDecodedPicture) {
    const ScratchDir dir;
    const InspectRun run = TinyRun();
    const SlicePlane plane = ParseSlicePlane(run, "k=2");
    WriteSlicePicture(run, plane, dir / SliceFileName(plane));
    const DecodedPng png(dir / "slice_K2.png");
    const SliceView view(run, plane);
    // The grid is wider than the legend, which goes below it.
    ASSERT_EQ(png.image.width, static_cast<png_uint_32>(view.Width()));
    ASSERT_GT(png.image.height, static_cast<png_uint_32>(view.Height()));
    EXPECT_EQ(png.At(view.Column(3), view.Row(0.5)),
              std::vector<int>(g_rgbBlockedFill, g_rgbBlockedFill + 3));
    EXPECT_EQ(png.At(view.Column(5), view.Row(0.5)), std::vector<int>(3, 255));
}

TEST(SlicePicture, UnwritableFileNamesThePath) {
    EXPECT_THROW(WriteSlicePicture(TinyRun(), SlicePlane{2, 1}, "/nonexistent/slice.png"),
                 InspectError);
}

TEST(SlicePicture, PlanesByIndexOrCoordinate) {
    const InspectRun run = TinyRun();
    const struct {
        const char* text;
        int axis, cell;  // -1: rejected
    } cases[] = {
        {"i=4", 0, 3},   {"K=1", 2, 0},  {"x=2", 0, 1},  {"x=8", 0, 3},
        {"y=0.5", 1, 0}, {"i=0", -1, 0}, {"i=5", -1, 0}, {"x=9", -1, 0},
        {"x=1q", -1, 0}, {"w=1", -1, 0}, {"k", -1, 0},
    };
    for (const auto& c : cases) {
        if (c.axis < 0) {
            EXPECT_THROW(ParseSlicePlane(run, c.text), InspectError) << c.text;
            continue;
        }
        const SlicePlane plane = ParseSlicePlane(run, c.text);
        EXPECT_EQ(plane.intAxis, c.axis) << c.text;
        EXPECT_EQ(plane.intCell, c.cell) << c.text;
    }
}

}  // namespace
