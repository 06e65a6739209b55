// Helpers of the reader tests: files written byte for byte, the public test files in tests/data,
// and what a read mesh holds.
#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "FEL_curvilinear_mesh.h"
#include "ScratchDir.h"

// A scratch directory whose write() puts the bytes in a named file and returns its path.
struct FEL_test_dir : ScratchDir {
    std::string write(const std::string& name, const std::string& bytes) {
        WriteWholeFile(*this / name, bytes);
        return *this / name;
    }
};

// Byte strings of little-endian 32-bit numbers.
inline std::string le_ints(std::initializer_list<std::uint32_t> values) {
    std::string s;
    for (std::uint32_t v : values)
        for (int b = 0; b < 4; ++b) s += static_cast<char>(v >> (8 * b));
    return s;
}
inline std::string le_float(float f) {
    std::uint32_t v;
    std::memcpy(&v, &f, 4);
    return le_ints({v});
}

inline std::string corpus(const std::string& relative) {
    return std::string(KAVEX_TEST_DATA) + "/" + relative;
}

inline std::vector<int> dims_of(const FEL_pointer<FEL_mesh>& mesh) {
    std::vector<int> d(3, -1);
    mesh->get_structured_dimensions(d.data());
    return d;
}

// Node n of a curvilinear mesh by its linear number.
inline FEL_vector3<float> node(const FEL_pointer<FEL_mesh>& mesh, int n) {
    return dynamic_cast<const FEL_curvilinear_mesh&>(*mesh.get()).node(n);
}
