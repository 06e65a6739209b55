// Number reading over a file held in memory, giving exactly what scanf or a formatted stream read
// gives.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
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
    // Gives the pages wholly before p back to the system: a reader that has passed them keeps a
    // file of gigabytes from being resident all at once. A later read of them maps them again.
    void release_before(const char* p);
    // The same for the whole pages within [from, to); readers on threads release their own parts.
    void release(const char* from, const char* to) const;

  private:
    const char* data = nullptr;
    std::size_t length = 0;
    std::size_t released = 0;
    bool opened = false;
    bool mapped = false;
};

// The white space of the C locale: blank, \t, \n, \v, \f, \r.
inline bool FEL_is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Each reader starts at p, skips white space, converts one number and leaves p behind it. On
// failure they return false and p is left undefined.
//   FEL_scan_int:     scanf "%d" (an out-of-range value is narrowed as the C library narrows it).
//   FEL_scan_float:   scanf "%f" / "%g" into a float.
//   FEL_extract_float: operator>> of a C++ stream into a float (no inf, nan or hex; overflow
//   fails).
bool FEL_scan_int(const char*& p, const char* end, int* value);
bool FEL_scan_float(const char*& p, const char* end, float* value);
bool FEL_extract_float(const char*& p, const char* end, float* value);

// The common case of both float readers, inline for the hot loops: a plain decimal number followed
// by white space or the end, converted by from_chars. Anything else (signs run together, exponent
// letters without digits, hex, inf, nan, out of range) answers false and is left to the readers
// above, which hand it to the C or C++ library on a copy of the token.
inline bool FEL_scan_plain_float(const char*& p, const char* end, float* value) {
    while (p != end && FEL_is_space(*p)) ++p;
    const char* q = p;
    if (q != end && *q == '+') ++q;
    const char* digits = q != end && *q == '-' && q == p ? q + 1 : q;
    if (digits == end || !((*digits >= '0' && *digits <= '9') || *digits == '.')) return false;
    // At most 9 digits worth less than 2^24 and at most 10 decimals: the quotient of two exact
    // floats, which IEEE division rounds correctly, as from_chars does.
    std::uint32_t mantissa = 0;
    int n_digits = 0, decimals = -1;
    const char* s = digits;
    for (; s != end && n_digits <= 9; ++s) {
        if (*s >= '0' && *s <= '9') {
            mantissa = mantissa * 10 + std::uint32_t(*s - '0');
            ++n_digits;
            if (decimals >= 0) ++decimals;
        } else if (*s == '.' && decimals < 0) {
            decimals = 0;
        } else {
            break;
        }
    }
    if (n_digits >= 1 && n_digits <= 9 && mantissa < (1u << 24) && decimals <= 10 &&
        (s == end || FEL_is_space(*s))) {
        static constexpr float kPowers[11] = {1e0f, 1e1f, 1e2f, 1e3f, 1e4f, 1e5f,
                                              1e6f, 1e7f, 1e8f, 1e9f, 1e10f};
        const float v = decimals > 0 ? float(mantissa) / kPowers[decimals] : float(mantissa);
        *value = digits != q ? -v : v;
        p = s;
        return true;
    }
    auto r = std::from_chars(q, end, *value, std::chars_format::general);
    if (r.ec != std::errc() || (r.ptr != end && !FEL_is_space(*r.ptr))) return false;
    p = r.ptr;
    return true;
}

// Moves p past the token [at, at + size) when the bytes at p are that token followed by white
// space or the end; at lies before p, so that reading 16 bytes from it stays inside the text.
inline bool FEL_repeats_token(const char*& p, const char* end, const char* at, std::size_t size) {
    if (size == 0 || std::size_t(end - p) < size) return false;
    if (size <= 16 && end - p >= 16) {
        // Tokens are a dozen bytes: two 8-byte words beat a call of memcmp.
        std::uint64_t a[2], b[2];
        std::memcpy(a, p, 16);
        std::memcpy(b, at, 16);
        const std::uint64_t low = size >= 8 ? ~0ull : (1ull << (8 * size)) - 1;
        const std::uint64_t high = size <= 8    ? 0
                                   : size == 16 ? ~0ull
                                                : (1ull << (8 * (size - 8))) - 1;
        if (((a[0] ^ b[0]) & low) | ((a[1] ^ b[1]) & high)) return false;
    } else if (std::memcmp(p, at, size) != 0) {
        return false;
    }
    if (p + size != end && !FEL_is_space(p[size])) return false;
    p += size;
    return true;
}
