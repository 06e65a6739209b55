// Tests of the grid file writer against a plain formatted loop over the same values.
#include "generator/gridwriter.h"

#include <gtest/gtest.h>

#include <string>

#include "gdtest_util.h"

namespace {

TEST(GridWriter, ValuesMatchPlainFormattingByteForByte) {
    double x[] = {-3.0, -3.0, -1e-7, 0.123456789, 12345678.9, 1e20, 1e20};
    double y[] = {0.0, 0.0, 2.5, 2.5};
    double z[] = {-0.000005, 7.0, 7.0};
    const int n[3] = {7, 4, 3};
    const double* pts[3] = {x, y, z};
    const double t[3] = {1.5, -2.0, 0.25};
    const std::string expected = stream_text([&](FILE* plain) {
        std::fprintf(plain, "# %f %f %f\n%d %d %d\n", 1.5, -2.0, 0.25, n[0], n[1], n[2]);
        for (int a = 0; a < 3; ++a)
            for (int k = 0; k < n[2]; ++k)
                for (int j = 0; j < n[1]; ++j)
                    for (int i = 0; i < n[0]; ++i)
                        std::fprintf(plain, " %12.5f", a == 0 ? x[i] : a == 1 ? y[j] : z[k]);
        std::fputs("\n# Num. of Body Cells:\n0\n", plain);
    });
    EXPECT_EQ(stream_text([&](FILE* f) { wr_grid_file(f, true, t, n, pts); }), expected);
    // The size known before writing, which the free-space check relies on.
    EXPECT_EQ(grid_file_size(true, t, n, pts), (long long)expected.size());

    // Without the translation the file starts with an empty line.
    const int one[3] = {1, 1, 1};
    const std::string single =
        "\n1 1 1\n     -3.00000      0.00000     -0.00001\n# Num. of Body Cells:\n0\n";
    EXPECT_EQ(stream_text([&](FILE* f) { wr_grid_file(f, false, t, one, pts); }), single);
    EXPECT_EQ(grid_file_size(false, t, one, pts), (long long)single.size());
}

}  // namespace
