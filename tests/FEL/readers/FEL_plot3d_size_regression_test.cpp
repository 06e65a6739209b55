// Regression: the binary size check overflowed 64-bit arithmetic on dimensions read in a foreign
// form.
#include <gtest/gtest.h>

#include <string>

#include "FEL/readers/FEL_reader_test_files.h"
#include "readers/FEL_plot3d_reader.h"
#include "readers/FEL_reader.h"

// The check always assumes record markers, so a plain file's words become dimensions. Here the
// words 16, 2^30, 2^30 (and 16 again behind the first marker word): 12 or 16 times their product
// is a multiple of 2^64, so wrapped 64-bit arithmetic expected 28 bytes, the size of this very
// file, and let it through. Every answer must be a plain refusal.
TEST(FEL_plot3d_size_regression, CheckBinaryFileSizeOverflowOnForeignDimensions) {
    FEL_test_dir dir;
    const std::string path = dir.write("wrap.bin", le_ints({16, 1u << 30, 1u << 30, 16, 0, 0, 0}));
    for (unsigned flags : {0u, 0x1u, 0x2u, 0x3u, 0x8u, 0x9u, 0x48u, 0x49u})
        EXPECT_FALSE(CheckBinaryFileSize(path, flags)) << flags;
}
