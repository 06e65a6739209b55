// Writer of the grid file "KX3.grid.dat": formats each distinct value once, then copies bytes.
#include "generator/gridwriter.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "generator/gdoutfile.h"

void append_formatted(std::string& out, const char* format, double value) {
    char buf[512];
    const int len = std::snprintf(buf, sizeof buf, format, value);
    if (len < static_cast<int>(sizeof buf)) {
        out.append(buf, len);
    } else {
        std::vector<char> big(len + 1);
        std::snprintf(big.data(), big.size(), format, value);
        out.append(big.data(), len);
    }
}

formatted_values::formatted_values(const double* values, int n, const char* format)
    : start(n + 1, 0) {
    for (int i = 0; i < n; ++i) {
        append_formatted(pool, format, values[i]);
        start[i + 1] = pool.size();
    }
}

void byte_sink::put(const char* s, size_t len) {
    if (len > buf_.size() - used_) {
        flush();
        if (len > buf_.size()) {
            std::fwrite(s, 1, len, stream_);
            gd_check_output(stream_);
            return;
        }
    }
    std::memcpy(buf_.data() + used_, s, len);
    used_ += len;
}

void byte_sink::put_repeated(const char* s, size_t len, long count) {
    if (count <= 0 || len == 0) return;
    // Up to 64 KiB of whole copies, built by doubling.
    const size_t copies = std::min<size_t>(size_t(count), std::max<size_t>(1, (1u << 16) / len));
    run_.assign(s, len);
    while (run_.size() * 2 <= copies * len) run_.append(run_);
    run_.append(run_.data(), copies * len - run_.size());
    long left = count;
    for (; left >= long(copies); left -= long(copies)) put(run_.data(), run_.size());
    put(run_.data(), size_t(left) * len);
}

void byte_sink::flush() {
    if (!used_) return;
    std::fwrite(buf_.data(), 1, used_, stream_);
    used_ = 0;
    gd_check_output(stream_);
}

bool plain_grid_text = false;

void wr_grid_values(FILE* stream, const int n[3], const double* const pts[3]) {
    if (n[0] <= 0 || n[1] <= 0 || n[2] <= 0) return;
    if (plain_grid_text) {
        for (int a = 0; a < 3; ++a)
            for (int k = 0; k < n[2]; ++k)
                for (int j = 0; j < n[1]; ++j)
                    for (int i = 0; i < n[0]; ++i)
                        std::fprintf(stream, " %12.5f", pts[a][a == 0 ? i : a == 1 ? j : k]);
        gd_check_output(stream);
        return;
    }
    const formatted_values x(pts[0], n[0], " %12.5f"), y(pts[1], n[1], " %12.5f"),
        z(pts[2], n[2], " %12.5f");
    byte_sink sink(stream);
    // X: the same row of NI values for every (J, K).
    sink.put_repeated(x.pool.data(), x.pool.size(), static_cast<long>(n[1]) * n[2]);
    for (int k = 0; k < n[2]; ++k)
        for (int j = 0; j < n[1]; ++j) sink.put_repeated(y.text(j), y.size(j), n[0]);
    for (int k = 0; k < n[2]; ++k)
        sink.put_repeated(z.text(k), z.size(k), static_cast<long>(n[0]) * n[1]);
}

namespace {

const char grid_tail[] = "\n# Num. of Body Cells:\n0\n";

}  // namespace

long long grid_file_size(bool writeTranslation, const double t[3], const int n[3],
                         const double* const pts[3]) {
    long long size =
        writeTranslation ? std::snprintf(nullptr, 0, "# %f %f %f\n", t[0], t[1], t[2]) : 1;
    size += std::snprintf(nullptr, 0, "%d %d %d\n", n[0], n[1], n[2]) + sizeof grid_tail - 1;
    if (n[0] <= 0 || n[1] <= 0 || n[2] <= 0) return size;
    const long long points = static_cast<long long>(n[0]) * n[1] * n[2];
    // Each value of axis a stands once for every point of the other two axes.
    for (int a = 0; a < 3; ++a)
        size += static_cast<long long>(formatted_values(pts[a], n[a], " %12.5f").pool.size()) *
                (points / n[a]);
    return size;
}

void wr_grid_file(FILE* stream, bool writeTranslation, const double t[3], const int n[3],
                  const double* const pts[3]) {
    if (writeTranslation)
        std::fprintf(stream, "# %f %f %f\n", t[0], t[1], t[2]);
    else
        std::fputs("\n", stream);
    std::fprintf(stream, "%d %d %d\n", n[0], n[1], n[2]);
    wr_grid_values(stream, n, pts);
    std::fputs(grid_tail, stream);
}
