// Helpers of the reader tests: a scratch directory, files written byte for byte, the shared corpus.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

// A directory under /tmp, removed with its files at the end of the test.
class FEL_test_dir {
  public:
    FEL_test_dir() {
        char name[] = "/tmp/fel_reader_test_XXXXXX";
        dir = mkdtemp(name);
    }
    ~FEL_test_dir() {
        for (const std::string& f : files) std::remove(f.c_str());
        rmdir(dir.c_str());
    }
    std::string write(const std::string& name, const std::string& bytes) {
        std::string path = dir + "/" + name;
        FILE* f = std::fopen(path.c_str(), "wb");
        std::fwrite(bytes.data(), 1, bytes.size(), f);
        std::fclose(f);
        files.push_back(path);
        return path;
    }

  private:
    std::string dir;
    std::vector<std::string> files;
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
