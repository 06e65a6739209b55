// STL surfaces: ASCII and binary reading, merging of equal vertices, and zones by shared edges.
#include "readers/FEL_stl_reader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>
#include <memory>

#include "FEL_exception.h"
#include "FEL_tetrahedral_mesh.h"
#include "readers/FEL_file_type.h"
#include "readers/FEL_text_scan.h"

// Line numbers that the end-of-file errors of the ASCII reader carry.
static constexpr unsigned eat_string_eof_line = 573;
static constexpr unsigned endfacet_eof_line = 552;

void EatString(std::ifstream& in, std::string token) {
    std::string line;
    std::getline(in, line);
    std::size_t at;
    while (true) {
        if (in.fail()) throw FEL_unexpected_eof_error(__FILE__, eat_string_eof_line);
        at = line.find(token);
        if (at != std::string::npos) break;
        std::getline(in, line);
    }
    line.erase(0, at + token.size());
    in.putback('\n');
    for (auto c = line.rbegin(); c != line.rend(); ++c) in.putback(*c);
}

namespace {

// The ASCII reader's view of the file: what getline and formatted reads would see. A token never
// spans a line end, so the first line from the position that holds it is where a search of the
// rest of the file first finds it.
struct line_reader {
    const char* p;
    const char* end;
    bool failed = false;

    // Tokens are short and near: a scan for the first letter beats a general substring search.
    const char* find(const char* token, std::size_t length) {
        if (failed) return nullptr;
        for (const char* s = p; std::size_t(end - s) >= length; ++s) {
            s = static_cast<const char*>(
                std::memchr(s, token[0], std::size_t(end - s) - length + 1));
            if (!s) return nullptr;
            if (std::memcmp(s + 1, token + 1, length - 1) == 0) return s;
        }
        return nullptr;
    }
    // Reads lines until one holds token, and stands at the start of the next; false when the file
    // ends first.
    bool skip_to_line_with(const char* token) {
        const char* at = find(token, std::strlen(token));
        if (!at) return !(failed = true);
        const char* nl = static_cast<const char*>(std::memchr(at, '\n', end - at));
        p = nl ? nl + 1 : end;
        return true;
    }
    // Leaves the position just behind the next token, as EatString does on a stream.
    void eat(const char* token) {
        const std::size_t length = std::strlen(token);
        const char* at = find(token, length);
        if (!at) {
            failed = true;
            throw FEL_unexpected_eof_error(__FILE__, eat_string_eof_line);
        }
        p = at + length;
    }
    void read_float(float* v) {
        if (!failed && !FEL_extract_float(p, end, v)) failed = true;
    }
};

[[noreturn]] void binary_size_mismatch() {
    std::cout << "This file is binary, but may need to be endian converted. "
              << "Otherwise, it must be broken." << std::endl;
    std::exit(5);
}

}  // namespace

namespace {

// Reads at most limit facets; a cut-off facet and anything after it are dropped.
void read_ascii(const std::string& path, std::vector<_FEL_triangle>& triangles, std::size_t limit) {
    FEL_mapped_file file(path);
    triangles.resize(1000);
    std::size_t n = 0;
    line_reader in{file.begin(), file.end()};
    if (file.ok() && in.skip_to_line_with("solid")) {
        // The reading ends at the first facet the file cuts off: a normal way to stop.
        try {
            while (n < limit) {
                in.eat("facet normal");
                if (n == triangles.size()) triangles.resize(triangles.size() + 1000);
                for (FEL_vector3<float>& v : triangles[n].vertex) {
                    in.eat("vertex");
                    in.read_float(&v.x);
                    in.read_float(&v.y);
                    in.read_float(&v.z);
                }
                if (!in.skip_to_line_with("endfacet"))
                    throw FEL_unexpected_eof_error(__FILE__, endfacet_eof_line);
                ++n;
            }
        } catch (const FEL_exception&) {
        }
    }
    triangles.resize(n);
}

}  // namespace

void FEL_stl_read_mesh_ascii(std::string path, std::vector<_FEL_triangle>& triangles) {
    read_ascii(path, triangles, SIZE_MAX);
}

bool FEL_stl_ascii_has_facet(const std::string& path) {
    std::vector<_FEL_triangle> first;
    read_ascii(path, first, 1);
    return !first.empty();
}

bool FEL_stl_binary_bounds(const std::string& path, FEL_vector3<float>* low,
                           FEL_vector3<float>* high) {
    std::ifstream in(path, std::ios::binary);
    char c = ' ';
    while (in.get(c) && FEL_is_space(c)) {
    }
    unsigned info = 0;
    if (!in || c == '+' || c == '-' || (c >= '0' && c <= '9') ||
        FEL_flowviz_deduce_file_type(path, info) != FEL_FILE_STL || info != 1)
        return false;
    std::vector<_FEL_triangle> list;
    FEL_stl_read_mesh_binary(path, list);
    if (list.empty()) return false;
    *low = *high = list[0].vertex[0];
    for (const _FEL_triangle& t : list)
        for (const FEL_vector3<float>& v : t.vertex)
            for (int a = 0; a < 3; ++a) {
                if (v[a] != v[a]) return false;
                if (v[a] < (*low)[a]) (*low)[a] = v[a];
                if (v[a] > (*high)[a]) (*high)[a] = v[a];
            }
    for (int a = 0; a < 3; ++a)
        if ((*low)[a] == 0.0f || (*high)[a] == 0.0f) return false;
    return true;
}

void FEL_stl_read_mesh_binary(std::string path, std::vector<_FEL_triangle>& triangles) {
    std::ifstream in(path, std::ios::binary);
    char header[80];
    std::int32_t count = 0;
    in.read(header, 80);
    in.read(reinterpret_cast<char*>(&count), 4);
    struct stat st;
    const std::int32_t expected = static_cast<std::int32_t>(std::uint32_t(count) * 50u + 84u);
    if (!in || stat(path.c_str(), &st) != 0 || expected != st.st_size) binary_size_mismatch();

    // The size check works modulo 2^32, so the count itself may still be out of reach: read what
    // the file holds.
    std::vector<char> facets(static_cast<std::size_t>(st.st_size - 84));
    in.read(facets.data(), facets.size());
    const std::size_t complete =
        std::min<std::size_t>(static_cast<std::size_t>(in.gcount()) / 50, std::max(count, 0));
    triangles.reserve(triangles.size() + complete);
    for (std::size_t f = 0; f < complete; ++f) {
        _FEL_triangle t;
        std::memcpy(&t.vertex[0], facets.data() + 50 * f + 12, 36);
        triangles.push_back(t);
    }
}

namespace {

bool has_nan(const std::vector<_FEL_triangle>& list) {
    for (const _FEL_triangle& t : list)
        for (const FEL_vector3<float>& v : t.vertex)
            if (v.x != v.x || v.y != v.y || v.z != v.z) return true;
    return false;
}

// The vertex order of the merge: x, then y, then z, as floats compare (0.0 equals -0.0).
inline bool vertex_less(const FEL_vector3<float>& a, const FEL_vector3<float>& b) {
    if (a.x != b.x) return a.x < b.x;
    if (a.y != b.y) return a.y < b.y;
    return a.z < b.z;
}

inline std::uint64_t vertex_hash(const FEL_vector3<float>& v) {
    // -0.0 and 0.0 are one vertex: hash them alike.
    const float c[3] = {v.x + 0.0f, v.y + 0.0f, v.z + 0.0f};
    std::uint32_t bits[3];
    std::memcpy(bits, c, sizeof bits);
    std::uint64_t h = (std::uint64_t(bits[0]) << 32 | bits[1]) * 0x9E3779B97F4A7C15ull;
    h ^= (h >> 29) + std::uint64_t(bits[2]) * 0xC2B2AE3D27D4EB4Full;
    return h ^ (h >> 32);
}

// Numbers the distinct vertices of the list in vertex order; each keeps the first of its equals
// in the file. Corners of the triangles get the numbers. Without a coordinate that is not a number.
void merge_vertices(const std::vector<_FEL_triangle>& list, std::vector<FEL_vector3<float>>& out,
                    FEL_vector3<int>* triangles) {
    const std::size_t corners = 3 * list.size();
    std::size_t slots = 16;
    while (slots < 2 * corners) slots *= 2;
    std::vector<std::int32_t> table(slots, -1);  // distinct vertex number, in file order
    std::vector<std::int32_t> number(corners);
    std::vector<FEL_vector3<float>> distinct;
    // The table is far larger than the caches: each lookup fetches its slot some corners ahead.
    constexpr std::size_t kAhead = 8;
    for (std::size_t c = 0; c < corners; ++c) {
        if (c + kAhead < corners) {
            const std::size_t ahead = c + kAhead;
            const FEL_vector3<float>& w = list[ahead / 3].vertex[ahead % 3];
            __builtin_prefetch(&table[vertex_hash(w) & (slots - 1)]);
        }
        const FEL_vector3<float>& v = list[c / 3].vertex[c % 3];
        std::size_t at = vertex_hash(v) & (slots - 1);
        while (true) {
            const std::int32_t d = table[at];
            if (d < 0) {
                table[at] = std::int32_t(distinct.size());
                number[c] = std::int32_t(distinct.size());
                distinct.push_back(v);
                break;
            }
            const FEL_vector3<float>& e = distinct[d];
            if (e.x == v.x && e.y == v.y && e.z == v.z) {
                number[c] = d;
                break;
            }
            at = (at + 1) & (slots - 1);
        }
    }
    // Sorted with their numbers beside them: no two are equal, so the order is the one order.
    struct numbered {
        FEL_vector3<float> v;
        std::int32_t d;
    };
    std::vector<numbered> order(distinct.size());
    for (std::size_t d = 0; d < order.size(); ++d) order[d] = {distinct[d], std::int32_t(d)};
    std::vector<FEL_vector3<float>>().swap(distinct);
    std::sort(order.begin(), order.end(),
              [](const numbered& a, const numbered& b) { return vertex_less(a.v, b.v); });
    std::vector<std::int32_t> rank(order.size());
    out.resize(order.size());
    for (std::size_t r = 0; r < order.size(); ++r) {
        rank[std::size_t(order[r].d)] = std::int32_t(r);
        out[r] = order[r].v;
    }
    for (std::size_t c = 0; c < corners; ++c) triangles[c / 3][int(c % 3)] = rank[number[c]];
}

// The map of the original merge, kept for files with coordinates that are not numbers, whose
// order it alone defines.
void merge_vertices_by_map(const std::vector<_FEL_triangle>& list,
                           std::vector<FEL_vector3<float>>& out, FEL_vector3<int>* triangles) {
    std::map<FEL_vector3<float>, int> vertex_map;
    for (const _FEL_triangle& t : list)
        for (const FEL_vector3<float>& v : t.vertex) vertex_map.emplace(v, -1);
    int n_vertices = 0;
    for (auto& entry : vertex_map) entry.second = n_vertices++;
    for (std::size_t t = 0; t < list.size(); ++t) {
        for (int c = 0; c < 3; ++c) {
            const FEL_vector3<float>& v = list[t].vertex[c];
            auto found = vertex_map.find(v);
            if (found != vertex_map.end()) {
                triangles[t][c] = found->second;
                continue;
            }
            // Only a coordinate that is not a number gets here; the triangle keeps vertex 0.
            triangles[t][c] = 0;
            std::cout << "Could not find " << v << std::endl;
            const FEL_vector3<float>* previous = nullptr;
            for (const auto& entry : vertex_map) {
                if (previous && !(*previous < entry.first))
                    std::cout << *previous << " -> " << entry.first << std::endl;
                previous = &entry.first;
            }
        }
    }
    out.resize(n_vertices);
    for (const auto& entry : vertex_map) out[entry.second] = entry.first;
}

int find_root(std::vector<int>& parent, int t) {
    while (parent[t] != t) t = parent[t] = parent[parent[t]];
    return t;
}

// Zone of each triangle: its part connected through shared edges, numbered in the order of each
// part's first triangle.
int edge_zones(int n_triangles, int n_vertices, const FEL_vector3<int>* triangles, int* zones) {
    // Edges bucketed by their smaller vertex, each bucket sorted by the larger one.
    std::vector<std::uint32_t> start(std::size_t(n_vertices) + 1, 0);
    for (int t = 0; t < n_triangles; ++t)
        for (int c = 0; c < 3; ++c)
            ++start[std::size_t(FEL_stl_edge(triangles[t][c], triangles[t][(c + 1) % 3]).First()) +
                    1];
    for (int v = 0; v < n_vertices; ++v) start[v + 1] += start[v];
    std::vector<std::pair<int, int>> edges(3 *
                                           std::size_t(n_triangles));  // larger vertex, triangle
    std::vector<std::uint32_t> fill(start.begin(), start.end() - 1);
    for (int t = 0; t < n_triangles; ++t)
        for (int c = 0; c < 3; ++c) {
            const FEL_stl_edge e(triangles[t][c], triangles[t][(c + 1) % 3]);
            edges[fill[e.First()]++] = {e.Second(), t};
        }
    std::vector<int> parent(n_triangles);
    for (int t = 0; t < n_triangles; ++t) parent[t] = t;
    for (int v = 0; v < n_vertices; ++v) {
        auto* b = edges.data() + start[v];
        auto* e = edges.data() + start[v + 1];
        std::sort(b, e, [](const auto& x, const auto& y) { return x.first < y.first; });
        for (auto* x = b + 1; x < e; ++x) {
            if (x->first != (x - 1)->first) continue;
            const int r1 = find_root(parent, x->second), r2 = find_root(parent, (x - 1)->second);
            if (r1 != r2) parent[std::max(r1, r2)] = std::min(r1, r2);
        }
    }
    int zone = 0;
    for (int t = 0; t < n_triangles; ++t) {
        const int root = find_root(parent, t);
        zones[t] = root == t ? zone++ : zones[root];
    }
    return zone;
}

}  // namespace

FEL_pointer<FEL_mesh> FEL_stl_read_mesh(std::string path, unsigned binary) {
    int n_triangles = 0, n_vertices = 0;
    FEL_vector3<int>* triangles = nullptr;
    FEL_vector3<float>* vertices = nullptr;
    int* zones = nullptr;
    {
        // Vertices merge on equal coordinates only.
        FEL_use_close_scope exact(false);
        FEL_set_file_read_progress(0.0f);
        std::vector<_FEL_triangle> list;
        if (binary == 1)
            FEL_stl_read_mesh_binary(path, list);
        else
            FEL_stl_read_mesh_ascii(path, list);
        FEL_set_file_read_progress(0.2f);
        n_triangles = static_cast<int>(list.size());
        triangles = new FEL_vector3<int>[n_triangles];
        std::vector<FEL_vector3<float>> merged;
        if (has_nan(list))
            merge_vertices_by_map(list, merged, triangles);
        else
            merge_vertices(list, merged, triangles);
        FEL_set_file_read_progress(0.3f);
        FEL_set_file_read_progress(0.5f);
        std::vector<_FEL_triangle>().swap(list);
        n_vertices = static_cast<int>(merged.size());
        vertices = new FEL_vector3<float>[n_vertices];
        std::copy(merged.begin(), merged.end(), vertices);
        std::vector<FEL_vector3<float>>().swap(merged);
        zones = new int[n_triangles];
        FEL_set_file_read_progress(0.6f);
        const int zone = edge_zones(n_triangles, n_vertices, triangles, zones);
        FEL_set_file_read_progress(0.9f);
        if (FEL_reader_verbose) {
            std::cerr << "Found " << zone << " zones in this STL file," << std::endl;
            std::cerr << "which contains " << n_triangles << " triangles." << std::endl;
        }
    }
    FEL_pointer<FEL_mesh> mesh(new FEL_tetrahedral_mesh(
        n_vertices, vertices, n_triangles, triangles, zones, 0, nullptr, "tetrahedral_mesh"));
    FEL_set_file_read_progress(1.0f);
    return mesh;
}
