// Writer of the grid file "KX3.grid.dat": one structured block of corner points in plain text.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

// The printf text of n values under one format (one double argument), kept in one pool: value i
// is text(i), size(i) bytes. Each value is formatted once, so that repeated values cost a copy.
struct formatted_values {
    std::string pool;
    std::vector<std::size_t> start;  // start[i] .. start[i+1] is value i

    formatted_values(const double* values, int n, const char* format);
    const char* text(int i) const { return pool.data() + start[i]; }
    std::size_t size(int i) const { return start[i + 1] - start[i]; }
};

// Appends one value as printf formats it.
void append_formatted(std::string& out, const char* format, double value);

// A large output buffer written with fwrite; flushed when it fills and when it is destroyed.
class byte_sink {
  public:
    explicit byte_sink(FILE* stream) : stream_(stream), buf_(1 << 20), used_(0) {}
    ~byte_sink() { flush(); }
    byte_sink(const byte_sink&) = delete;
    byte_sink& operator=(const byte_sink&) = delete;
    void put(const char* s, std::size_t len);
    void put(const std::string& s) { put(s.data(), s.size()); }
    // count copies of s, written as runs of copies rather than one piece at a time.
    void put_repeated(const char* s, std::size_t len, long count);
    void flush();

  private:
    FILE* stream_;
    std::vector<char> buf_;
    std::size_t used_;
    std::string run_;
};

// Writes n[0]*n[1]*n[2] X values, then as many Y and Z values, K outermost and I innermost, each
// as " %12.5f", all on one line. Each distinct value is formatted once and then copied.
void wr_grid_values(FILE* stream, const int n[3], const double* const pts[3]);

// When set, the grid file's values are printed one by one and read back without shortcuts, here
// and in the driver: the plain text paths that the fast ones must match byte for byte.
extern bool plain_grid_text;

// The exact size in bytes of the file that wr_grid_file writes for the same arguments.
long long grid_file_size(bool writeTranslation, const double t[3], const int n[3],
                         const double* const pts[3]);

// The whole grid file: translation (or empty) line, counts, values, and the fixed body-cell tail.
void wr_grid_file(FILE* stream, bool writeTranslation, const double t[3], const int n[3],
                  const double* const pts[3]);
