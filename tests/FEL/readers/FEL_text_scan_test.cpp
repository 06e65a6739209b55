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

// One reader against sscanf with format: success, the value's bits and the characters used.
template <class T>
void expect_like_scanf(bool (*read)(const char*&, const char*, T*), const char* format,
                       const std::string& text) {
    const char* p = text.c_str();
    T mine = 0, theirs = 0;
    int used = 0;
    const bool ok = read(p, text.c_str() + text.size(), &mine);
    ASSERT_EQ(ok, std::sscanf(text.c_str(), format, &theirs, &used) == 1);
    if (!ok) return;
    EXPECT_TRUE(std::memcmp(&mine, &theirs, sizeof(T)) == 0 ||
                (std::isnan(mine) && std::isnan(theirs)));
    EXPECT_EQ(p - text.c_str(), used);
}

// Runs the readers on text and compares value, success and characters used with the libraries.
void expect_like_libraries(const std::string& text) {
    SCOPED_TRACE(text);
    expect_like_scanf(FEL_scan_float, "%f%n", text);
    expect_like_scanf(FEL_scan_int, "%d%n", text);

    const char* p = text.c_str();
    float mine = 0, theirs = 0;
    std::istringstream in(text);
    const bool extracted = FEL_extract_float(p, text.c_str() + text.size(), &mine);
    ASSERT_EQ(extracted, static_cast<bool>(in >> theirs));
    if (!extracted) return;
    EXPECT_EQ(std::memcmp(&mine, &theirs, 4), 0);
    EXPECT_EQ(p - text.c_str(),
              in.eof() ? std::streamoff(text.size()) : std::streamoff(in.tellg()));
}

}  // namespace

TEST(FEL_text_scan, AwkwardNumbersReadAsTheLibrariesReadThem) {
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
    FEL_mapped_file file(dir.write("m", "1 2\n3"));
    ASSERT_TRUE(file.ok());
    EXPECT_EQ(std::string(file.begin(), file.end()), "1 2\n3");
    EXPECT_FALSE(FEL_mapped_file(dir / "missing").ok());
}

// A token of 1 to 20 bytes, then itself again, or with one byte changed, or run on: a repeat only
// when every byte matches and white space or the end follows, whichever word a byte falls in.
TEST(FEL_text_scan, RepeatedTokenMatchesEveryByte) {
    const std::string afters[] = {"", " 7", "7", "\n" + std::string(20, '9')};
    for (std::size_t size = 1; size <= 20; ++size)
        for (std::size_t changed = 0; changed <= size; ++changed)
            for (const std::string& after : afters) {
                const std::string token(size, '5');
                std::string again = token;
                if (changed < size) again[changed] = '6';
                const std::string text = token + " " + again + after;
                const char* p = text.c_str() + size + 1;
                const bool same = changed == size && after[0] != '7';
                ASSERT_EQ(FEL_repeats_token(p, text.c_str() + text.size(), text.c_str(), size),
                          same)
                    << size << " " << changed << " '" << after << "'";
                EXPECT_EQ(p, text.c_str() + size + 1 + (same ? size : 0));
            }
}
