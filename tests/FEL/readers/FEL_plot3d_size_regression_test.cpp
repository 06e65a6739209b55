// Regression: the binary size check overflowed 64-bit arithmetic on dimensions read in a foreign
// form.
#include <gtest/gtest.h>

#include <string>

#include "readers/FEL_plot3d_reader.h"
#include "readers/FEL_reader.h"

// The plain binary corpus grids carry no record markers, so the check (which always assumes them)
// reads a coordinate word as a dimension under the Fortran form: three such words multiplied by 16
// went past 2^63. Every answer must be a plain refusal, and the sanitizer build must stay quiet.
TEST(FEL_plot3d_size_regression, CheckBinaryFileSizeOverflowOnForeignDimensions) {
    for (const char* name : {"bluntfinxyz.bin", "combxyz.bin", "postxyz.bin"}) {
        const std::string path = std::string(KAVEX_SHARED_DATA) + "/plot3d/" + name;
        for (unsigned flags : {0u, 0x1u, 0x2u, 0x3u, 0x8u, 0x9u, 0x48u, 0x49u})
            EXPECT_FALSE(CheckBinaryFileSize(path, flags)) << name << " " << flags;
    }
}
