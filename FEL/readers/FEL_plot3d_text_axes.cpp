// A one-zone text grid whose nodes lie on three axes, read straight into the axes on threads.
#include "readers/FEL_plot3d_text_axes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include "FEL_axis_aligned_mesh.h"
#include "readers/FEL_file_type.h"
#include "readers/FEL_plot3d_text_reader.h"
#include "readers/FEL_reader.h"
#include "readers/FEL_text_scan.h"

namespace {

constexpr std::ptrdiff_t kMinShare = 64 << 10;    // bytes a thread is worth starting for
constexpr std::ptrdiff_t kReleaseStep = 8 << 20;  // bytes read between two releases of pages

// One thread's part of the text, whole tokens, and what its tokens gave each axis index.
struct share {
    const char* from = nullptr;
    const char* to = nullptr;
    std::int64_t first = 0;  // the number of its first token among all the coordinates
    std::int64_t tokens = 0;
    const char* after = nullptr;  // the first token after the coordinates, if it holds it
    std::vector<float> values[3];
    std::vector<char> seen[3];
    bool ok = true;
};

// A token with the white space before it, and the axis index its value belongs to.
struct token {
    const char* at = nullptr;
    std::size_t size = 0;
    int plane = -1, index = -1;
};

// Where token number t lies: its plane (x, y, z) and its node's i, j, k, stepped token by token.
struct node_place {
    int n[3], plane, ijk[3];
    node_place(const int dims[3], std::int64_t t) : n{dims[0], dims[1], dims[2]} {
        const std::int64_t count = std::int64_t(n[0]) * n[1] * n[2];
        const std::int64_t node = t % count;
        plane = int(t / count);
        ijk[0] = int(node % n[0]);
        ijk[1] = int(node / n[0] % n[1]);
        ijk[2] = int(node / (std::int64_t(n[0]) * n[1]));
    }
    void next() {
        for (int a = 0; a < 3; ++a) {
            if (++ijk[a] < n[a]) return;
            ijk[a] = 0;
        }
        ++plane;
    }
    int index() const { return plane < 3 ? ijk[plane] : -1; }
};

bool same_bits(float a, float b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// The bits set in x, without a library call on machines that may lack the instruction.
int bit_count(std::uint64_t x) {
    x -= (x >> 1) & 0x5555555555555555ull;
    x = (x & 0x3333333333333333ull) + ((x >> 2) & 0x3333333333333333ull);
    x = (x + (x >> 4)) & 0x0f0f0f0f0f0f0f0full;
    return int((x * 0x0101010101010101ull) >> 56);
}

// Tokens beginning in [from, to): bytes that are not white space after one that is, 64 at a time.
std::int64_t count_starts(const char* from, const char* to, bool space_before) {
    std::int64_t n = 0;
    std::uint64_t before = space_before;
    const char* p = from;
#ifdef __SSE2__
    const __m128i blank = _mm_set1_epi8(' '), tab = _mm_set1_epi8('\t'), four = _mm_set1_epi8(4);
    for (; to - p >= 64; p += 64) {
        std::uint64_t space = 0;
        for (int part = 0; part < 4; ++part) {
            // Blank, or \t to \r: the byte less '\t' is at most 4, unsigned.
            const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * part));
            const __m128i controls = _mm_cmpeq_epi8(_mm_max_epu8(_mm_sub_epi8(x, tab), four), four);
            const __m128i spaces = _mm_or_si128(_mm_cmpeq_epi8(x, blank), controls);
            space |= std::uint64_t(unsigned(_mm_movemask_epi8(spaces))) << (16 * part);
        }
        n += bit_count(~space & ((space << 1) | before));
        before = space >> 63;
    }
#endif
    for (; p != to; ++p) {
        const unsigned space = FEL_is_space(*p);
        n += before & !space;
        before = space;
    }
    return n;
}

// Tokens beginning in s (its first byte begins one unless it is white space), giving its pages
// back as it passes them.
std::int64_t count_tokens(const share& s, const FEL_mapped_file& file) {
    std::int64_t n = 0;
    for (const char* block = s.from; block != s.to;) {
        const char* stop = s.to - block > kReleaseStep ? block + kReleaseStep : s.to;
        n += count_starts(block, stop, block == s.from || FEL_is_space(block[-1]));
        file.release(block, stop);
        block = stop;
    }
    return n;
}

// One whole token converted as the text reader converts it.
bool convert(const char* at, const char* end, float* value) {
    const char* p = at;
    if (!FEL_scan_plain_float(p, end, value)) {
        p = at;
        if (!FEL_scan_float(p, end, value)) return false;
    }
    return p == end;
}

// Reads the tokens of s into the values of the axes its nodes lie on. A token that, with the white
// space before it, has the bytes of the one before it on the same axis index (a row before in x,
// the token before in y and z) is that value again: one compare skips both.
void read_share(share& s, const int n[3], const FEL_mapped_file& file) {
    node_place at(n, s.first);
    std::vector<token> row(static_cast<std::size_t>(n[0]));
    token last;
    const char* released = s.from;
    for (const char* p = s.from;; at.next()) {
        if (p - released > kReleaseStep) {
            file.release(released, p - kReleaseStep / 2);
            released = p - kReleaseStep / 2;
        }
        token& before = at.plane == 0 ? row[std::size_t(at.ijk[0])] : last;
        const int index = at.index();
        if (before.plane == at.plane && before.index == index &&
            FEL_repeats_token(p, s.to, before.at, before.size))
            continue;
        const char* lead = p;
        while (p != s.to && FEL_is_space(*p)) ++p;
        if (p == s.to) return;
        if (at.plane >= 3) {
            if (at.plane == 3 && at.ijk[0] == 0 && at.ijk[1] == 0 && at.ijk[2] == 0) s.after = p;
            return;
        }
        const char* begin = p;
        while (p != s.to && !FEL_is_space(*p)) ++p;
        before = {lead, std::size_t(p - lead), at.plane, index};
        float value;
        if (!convert(begin, p, &value)) {
            s.ok = false;
            return;
        }
        char& seen = s.seen[at.plane][std::size_t(index)];
        float& kept = s.values[at.plane][std::size_t(index)];
        if (seen && !same_bits(kept, value)) {
            s.ok = false;
            return;
        }
        seen = 1;
        kept = value;
    }
}

// Runs work(t) for each share t, on a thread each but the last, which runs on the caller.
template <class Work>
void on_threads(std::size_t shares, const Work& work) {
    std::vector<std::thread> pool;
    for (std::size_t t = 0; t + 1 < shares; ++t) pool.emplace_back(work, t);
    work(shares - 1);
    for (std::thread& thread : pool) thread.join();
}

// The text from data to end cut into up to threads parts at white space.
std::vector<share> cut(const char* data, const char* end, int threads, const int n[3]) {
    const std::ptrdiff_t length = end - data;
    const std::ptrdiff_t parts =
        std::max<std::ptrdiff_t>(1, std::min<std::ptrdiff_t>(threads, length / kMinShare));
    std::vector<share> shares(static_cast<std::size_t>(parts));
    const char* from = data;
    for (std::ptrdiff_t t = 0; t < parts; ++t) {
        const char* to = t + 1 == parts ? end : data + length / parts * (t + 1);
        if (to < from) to = from;
        while (to != end && !FEL_is_space(*to)) ++to;
        share& s = shares[std::size_t(t)];
        s.from = from;
        s.to = from = to;
        for (int a = 0; a < 3; ++a) {
            s.values[a].resize(std::size_t(n[a]));
            s.seen[a].resize(std::size_t(n[a]));
        }
    }
    return shares;
}

// The axes the shares agree on, or null.
FEL_pointer<FEL_mesh> merge(const std::vector<share>& shares, const int n[3]) {
    std::unique_ptr<float[]> axes[3];
    for (int a = 0; a < 3; ++a) {
        axes[a].reset(new float[std::size_t(n[a])]);
        for (int i = 0; i < n[a]; ++i) {
            bool found = false;
            for (const share& s : shares) {
                if (!s.ok) return FEL_pointer<FEL_mesh>();
                if (!s.seen[a][std::size_t(i)]) continue;
                const float v = s.values[a][std::size_t(i)];
                if (found && !same_bits(v, axes[a][i])) return FEL_pointer<FEL_mesh>();
                axes[a][i] = v;
                found = true;
            }
            if (!found) return FEL_pointer<FEL_mesh>();
        }
    }
    return FEL_pointer<FEL_mesh>(
        new FEL_axis_aligned_mesh(new FEL_irregular_axis(n[0], axes[0].release()),
                                  new FEL_irregular_axis(n[1], axes[1].release()),
                                  new FEL_irregular_axis(n[2], axes[2].release()), "grid_axes"));
}

// A file that FEL_read_mesh takes for a one-zone text file: no other type claims it, and its
// first numbers do not read as a zone count, which the detection tries first.
bool single_text_zone(const std::string& path, const FEL_mapped_file& file,
                      FEL_plot3d_text_header* h) {
    unsigned info = 0;
    if (FEL_flowviz_deduce_file_type(path, info) != FEL_FILE_UNKNOWN ||
        FEL_deduce_mesh_type(path) != 0 || FEL_is_file_binary(path) || !file.ok())
        return false;
    FEL_plot3d_text_header multi;
    if (FEL_plot3d_read_text_header(file.begin(), file.end(), FEL_PLOT3D_MULTIZONE, &multi) &&
        multi.counted)
        return false;
    return FEL_plot3d_read_text_header(file.begin(), file.end(), 0, h);
}

FEL_pointer<FEL_mesh> read_axes(const std::string& path, int threads) {
    FEL_mapped_file file(path);
    FEL_plot3d_text_header h;
    if (!single_text_zone(path, file, &h)) return FEL_pointer<FEL_mesh>();
    const int n[3] = {h.dims[0], h.dims[1], h.dims[2]};
    const std::int64_t count = std::int64_t(n[0]) * n[1] * n[2];
    if (count > INT32_MAX) return FEL_pointer<FEL_mesh>();
    std::vector<share> shares = cut(h.data, file.end(), threads, n);
    on_threads(shares.size(),
               [&](std::size_t t) { shares[t].tokens = count_tokens(shares[t], file); });
    std::int64_t tokens = 0;
    for (share& s : shares) {
        s.first = tokens;
        tokens += s.tokens;
    }
    if (tokens < 3 * count) return FEL_pointer<FEL_mesh>();
    on_threads(shares.size(), [&](std::size_t t) { read_share(shares[t], n, file); });
    // The detection first tries to read iblanks after the coordinates: they must not begin.
    for (const share& s : shares) {
        const char* p = s.after;
        int blank;
        if (p && FEL_scan_int(p, file.end(), &blank)) return FEL_pointer<FEL_mesh>();
    }
    return merge(shares, n);
}

}  // namespace

FEL_pointer<FEL_mesh> FEL_plot3d_read_text_axes(const std::string& path, int threads) {
    try {
        return read_axes(path, threads);
    } catch (...) {
        return FEL_pointer<FEL_mesh>();
    }
}
