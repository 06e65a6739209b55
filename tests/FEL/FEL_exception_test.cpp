// Tests of the exception texts and the throw site they carry.
#include "FEL_exception.h"

#include <gtest/gtest.h>

namespace {

TEST(FEL_exception, MessageTexts) {
    EXPECT_EQ(FEL_exception("FEL_mesh.cpp", 12).what(),
              "An unknown error occurred in FEL_mesh.cpp on line 12.");
    const FEL_type_detection_error detection("body.stl", 292, "FEL_reader.cpp", 40);
    EXPECT_EQ(detection.what(),
              "Could not determine the filetype of body.stl. Failed in FEL_reader.cpp on line 40.");
    EXPECT_EQ(FEL_unexpected_eof_error("FEL_stl_reader.cpp", 573).what(),
              "An unknown error occurred in FEL_stl_reader.cpp on line 573.");
    EXPECT_EQ(FEL_bad_alloc_error("float", 5000000000LL, "a.cpp", 7).what(),
              "Could not allocate 5000000000 of type float. a.cpp line 7.");
    EXPECT_EQ(FEL_read_error().what(), "Error reading file.");
    EXPECT_EQ(FEL_read_error("r.cpp", 9).what(), "An unknown error occurred in r.cpp on line 9.");
    const FEL_read_error given("\"grid.dat\":\nCannot open", "r.cpp", 10);
    EXPECT_EQ(given.what(), "\"grid.dat\":\nCannot open");
}

TEST(FEL_exception, CaughtByTypeThroughTheFamily) {
    try {
        throw FEL_unexpected_eof_error("x.cpp", 1);
    } catch (const FEL_read_error&) {
        FAIL() << "an end of file is not a read error";
    } catch (const FEL_exception& e) {
        EXPECT_EQ(e.get_file(), "x.cpp");
    }
}

}  // namespace
