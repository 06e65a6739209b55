// Writer of the grid file "KX3.grid.dat": formats each distinct value once, then copies bytes.
#include "generator/gridwriter.h"

#include <cstring>
#include <string>
#include <vector>

namespace {

// Formatted text of every point of one axis, kept in one pool.
struct FormattedAxis {
    std::string pool;
    std::vector<size_t> start;  // start[i] .. start[i+1] is point i

    FormattedAxis(const double* pts, int n) : start(n + 1, 0) {
        char buf[512];
        for (int i = 0; i < n; ++i) {
            const int len = std::snprintf(buf, sizeof buf, " %12.5f", pts[i]);
            if (len < static_cast<int>(sizeof buf)) {
                pool.append(buf, len);
            } else {
                std::vector<char> big(len + 1);
                std::snprintf(big.data(), big.size(), " %12.5f", pts[i]);
                pool.append(big.data(), len);
            }
            start[i + 1] = pool.size();
        }
    }
    const char* text(int i) const { return pool.data() + start[i]; }
    size_t size(int i) const { return start[i + 1] - start[i]; }
};

// A large output buffer written with fwrite.
class ByteSink {
  public:
    explicit ByteSink(FILE* stream) : stream_(stream), buf_(1 << 20), used_(0) {}
    ~ByteSink() { flush(); }
    void put(const char* s, size_t len) {
        if (len > buf_.size() - used_) {
            flush();
            if (len > buf_.size()) {
                std::fwrite(s, 1, len, stream_);
                return;
            }
        }
        std::memcpy(buf_.data() + used_, s, len);
        used_ += len;
    }
    void put_repeated(const char* s, size_t len, long count) {
        for (long c = 0; c < count; ++c) put(s, len);
    }
    void flush() {
        if (used_) std::fwrite(buf_.data(), 1, used_, stream_);
        used_ = 0;
    }

  private:
    FILE* stream_;
    std::vector<char> buf_;
    size_t used_;
};

}  // namespace

void wr_grid_values(FILE* stream, const int n[3], const double* const pts[3]) {
    if (n[0] <= 0 || n[1] <= 0 || n[2] <= 0) return;
    const FormattedAxis x(pts[0], n[0]), y(pts[1], n[1]), z(pts[2], n[2]);
    ByteSink sink(stream);
    // X: the same row of NI values for every (J, K).
    sink.put_repeated(x.pool.data(), x.pool.size(), static_cast<long>(n[1]) * n[2]);
    for (int k = 0; k < n[2]; ++k)
        for (int j = 0; j < n[1]; ++j) sink.put_repeated(y.text(j), y.size(j), n[0]);
    for (int k = 0; k < n[2]; ++k)
        sink.put_repeated(z.text(k), z.size(k), static_cast<long>(n[0]) * n[1]);
}

void wr_grid_file(FILE* stream, bool writeTranslation, const double t[3], const int n[3],
                  const double* const pts[3]) {
    if (writeTranslation)
        std::fprintf(stream, "# %f %f %f\n", t[0], t[1], t[2]);
    else
        std::fputs("\n", stream);
    std::fprintf(stream, "%d %d %d\n", n[0], n[1], n[2]);
    wr_grid_values(stream, n, pts);
    std::fputs("\n# Num. of Body Cells:\n0\n", stream);
}
