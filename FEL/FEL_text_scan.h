// Number reading over a file held in memory, giving exactly what scanf or a formatted stream read gives.
#pragma once

#include <cstddef>
#include <string>

// A whole file, mapped read-only. ok() is false if it will not open; an empty file is ok and empty.
class FEL_mapped_file {
public:
    explicit FEL_mapped_file(const std::string& path);
    ~FEL_mapped_file();
    FEL_mapped_file(const FEL_mapped_file&) = delete;
    FEL_mapped_file& operator=(const FEL_mapped_file&) = delete;

    bool ok() const { return opened; }
    const char* begin() const { return data; }
    const char* end() const { return data + length; }
    std::size_t size() const { return length; }

private:
    const char* data = nullptr;
    std::size_t length = 0;
    bool opened = false;
    bool mapped = false;
};

// The white space of the C locale: blank, \t, \n, \v, \f, \r.
inline bool FEL_is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Each reader starts at p, skips white space, converts one number and leaves p behind it. On
// failure they return false and p is left undefined.
//   FEL_scan_int:     scanf "%d" (an out-of-range value is narrowed as the C library narrows it).
//   FEL_scan_float:   scanf "%f" / "%g" into a float.
//   FEL_extract_float: operator>> of a C++ stream into a float (no inf, nan or hex; overflow fails).
bool FEL_scan_int(const char*& p, const char* end, int* value);
bool FEL_scan_float(const char*& p, const char* end, float* value);
bool FEL_extract_float(const char*& p, const char* end, float* value);
