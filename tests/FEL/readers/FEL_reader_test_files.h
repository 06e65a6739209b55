// Helpers of the reader tests: files written byte for byte, and the shared corpus.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include "ScratchDir.h"

// A scratch directory whose write() puts the bytes in a named file and returns its path.
struct FEL_test_dir : ScratchDir {
    std::string write(const std::string& name, const std::string& bytes) {
        WriteWholeFile(*this / name, bytes);
        return *this / name;
    }
};

// Byte strings of 32-bit numbers in either order.
inline std::string le32(std::uint32_t v) {
    std::string s(4, '\0');
    for (int b = 0; b < 4; ++b) s[b] = static_cast<char>(v >> (8 * b));
    return s;
}
inline std::string be32(std::uint32_t v) {
    std::string s(4, '\0');
    for (int b = 0; b < 4; ++b) s[3 - b] = static_cast<char>(v >> (8 * b));
    return s;
}
inline std::string le_float(float f) {
    std::uint32_t v;
    std::memcpy(&v, &f, 4);
    return le32(v);
}
inline std::string le_ints(std::initializer_list<std::uint32_t> values) {
    std::string s;
    for (std::uint32_t v : values) s += le32(v);
    return s;
}

inline std::string corpus(const std::string& relative) {
    return std::string(KAVEX_SHARED_DATA) + "/" + relative;
}
