// Number reading over memory must give what the C library's scanf and a C++ stream give.
#include "readers/FEL_text_scan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <sstream>

#include "FEL/readers/FEL_reader_test_files.h"

namespace {

// Runs both readers on text and compares value, success and characters used with the libraries.
void expect_like_libraries(const std::string& text) {
    SCOPED_TRACE(text);
    const char* begin = text.c_str();
    const char* end = begin + text.size();

    const char* p = begin;
    float mine = 0, theirs = 0;
    int used = 0;
    const bool ok = FEL_scan_float(p, end, &mine);
    ASSERT_EQ(ok, std::sscanf(begin, "%f%n", &theirs, &used) == 1);
    if (ok) {
        EXPECT_TRUE(std::memcmp(&mine, &theirs, 4) == 0 ||
                    (std::isnan(mine) && std::isnan(theirs)));
        EXPECT_EQ(p - begin, used);
    }

    p = begin;
    std::istringstream in(text);
    const bool extracted = FEL_extract_float(p, end, &mine);
    ASSERT_EQ(extracted, static_cast<bool>(in >> theirs));
    if (extracted) {
        EXPECT_EQ(std::memcmp(&mine, &theirs, 4), 0);
        EXPECT_EQ(p - begin, in.eof() ? std::streamoff(text.size()) : std::streamoff(in.tellg()));
    }

    p = begin;
    int i = 0, j = 0;
    const bool integer = FEL_scan_int(p, end, &i);
    ASSERT_EQ(integer, std::sscanf(begin, "%d%n", &j, &used) == 1);
    if (integer) {
        EXPECT_EQ(i, j);
        EXPECT_EQ(p - begin, used);
    }
}

}  // namespace

TEST(FEL_text_scan, AwkwardNumbersReadAsTheLibrariesReadThem) {
    // The texts, separated by '|'.
    std::istringstream texts(
        "12|12.0|12.5|-0.0|+1.5|+-1|-+1|1e|1e5|1.5e |1ex|inf|nan|-inf|infinity|0x1p3|.5|5.|.|-||"
        "   "
        "|1e-50|1e40|100ergs|1-2|1.2.3|1e-40|16777217|99999999999999999999|-99999999999999999999|"
        "abc|1D+00|0.1234567E+01|  -2.50000  -2.37500|  \n\t 7");
    for (std::string text; std::getline(texts, text, '|');) expect_like_libraries(text);
}

TEST(FEL_text_scan, RandomFloatsInTheWritersFormatsRoundTripExactly) {
    std::mt19937 random(12345);
    const char* formats[] = {"%.9g", " %12.5f", "%.7E", "%g"};
    char text[64];
    for (int n = 0; n < 20000; ++n) {
        std::uint32_t bits = random();
        float f;
        std::memcpy(&f, &bits, 4);
        if (!std::isfinite(f)) continue;
        std::snprintf(text, sizeof text, formats[n % 4], f);
        expect_like_libraries(text);
    }
}

TEST(FEL_text_scan, MappedFileHoldsTheWholeFileAndReportsAMissingOne) {
    FEL_test_dir dir;
    {
        FEL_mapped_file file(dir.write("m", "1 2\n3"));
        ASSERT_TRUE(file.ok());
        EXPECT_EQ(std::string(file.begin(), file.end()), "1 2\n3");
    }
    EXPECT_FALSE(FEL_mapped_file(dir / "missing").ok());
}
