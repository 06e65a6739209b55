// STL surfaces: ASCII and binary reading, merging of equal vertices, and zones by shared edges.
#include "readers/FEL_stl_reader.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
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

// The ASCII reader's view of the file: lines as getline gives them, and formatted reads between.
struct line_reader {
    const char* p;
    const char* end;
    bool failed = false;

    bool next_line(const char** line, const char** line_end) {
        if (failed || p == end) return !(failed = true);
        const char* nl = static_cast<const char*>(std::memchr(p, '\n', end - p));
        *line = p;
        *line_end = nl ? nl : end;
        p = nl ? nl + 1 : end;
        return true;
    }
    static const char* find(const char* b, const char* e, const char* token) {
        const char* at = std::search(b, e, token, token + std::strlen(token));
        return at == e ? nullptr : at;
    }
    // Reads lines until one holds token; false when the file ends first.
    bool skip_to_line_with(const char* token) {
        const char *b, *e;
        while (next_line(&b, &e))
            if (find(b, e, token)) return true;
        return false;
    }
    // Leaves the position just behind the next token, as EatString does on a stream.
    void eat(const char* token) {
        const char *b, *e;
        while (next_line(&b, &e)) {
            if (const char* at = find(b, e, token)) {
                p = at + std::strlen(token);
                return;
            }
        }
        throw FEL_unexpected_eof_error(__FILE__, eat_string_eof_line);
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

FEL_pointer<FEL_mesh> FEL_stl_read_mesh(std::string path, unsigned binary) {
    g_blnUseClose = false;
    FEL_set_file_read_progress(0.0f);
    std::vector<_FEL_triangle> list;
    if (binary == 1)
        FEL_stl_read_mesh_binary(path, list);
    else
        FEL_stl_read_mesh_ascii(path, list);
    FEL_set_file_read_progress(0.2f);
    const int n_triangles = static_cast<int>(list.size());

    std::map<FEL_vector3<float>, int> vertex_map;
    for (const _FEL_triangle& t : list)
        for (const FEL_vector3<float>& v : t.vertex) vertex_map.emplace(v, -1);
    FEL_set_file_read_progress(0.3f);
    int n_vertices = 0;
    for (auto& entry : vertex_map) entry.second = n_vertices++;

    auto* triangles = new FEL_vector3<int>[n_triangles];
    for (int t = 0; t < n_triangles; ++t) {
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
    FEL_set_file_read_progress(0.5f);

    auto* vertices = new FEL_vector3<float>[n_vertices];
    auto* zones = new int[n_triangles];
    std::fill(zones, zones + n_triangles, -1);
    for (const auto& entry : vertex_map) vertices[entry.second] = entry.first;
    std::vector<_FEL_triangle>().swap(list);
    vertex_map.clear();

    // The edge map as a sorted array: for each edge, its triangles in ascending order.
    std::vector<std::pair<FEL_stl_edge, int>> edges;
    edges.reserve(3 * std::size_t(n_triangles));
    for (int t = 0; t < n_triangles; ++t)
        for (int c = 0; c < 3; ++c)
            edges.emplace_back(FEL_stl_edge(triangles[t][c], triangles[t][(c + 1) % 3]), t);
    std::sort(edges.begin(), edges.end(), [](const auto& a, const auto& b) {
        return a.first < b.first || (a.first == b.first && a.second < b.second);
    });
    FEL_set_file_read_progress(0.6f);

    auto edge_less = [](const std::pair<FEL_stl_edge, int>& e, const FEL_stl_edge& key) {
        return e.first < key;
    };
    int zone = 0;
    std::deque<int> stack;
    for (int first = 0; first < n_triangles; ++first) {
        if (zones[first] != -1) continue;
        stack.push_back(first);
        while (!stack.empty()) {
            const int t = stack.back();
            stack.pop_back();
            if (zones[t] >= 0) continue;
            for (int c = 0; c < 3; ++c) {
                const FEL_stl_edge key(triangles[t][c], triangles[t][(c + 1) % 3]);
                auto at = std::lower_bound(edges.begin(), edges.end(), key, edge_less);
                if (at == edges.end() || at->first != key) {
                    std::cerr << "Failed to find edge!!" << std::endl;
                    delete[] triangles;
                    delete[] vertices;
                    delete[] zones;
                    return FEL_pointer<FEL_mesh>();
                }
                for (; at != edges.end() && at->first == key; ++at) stack.push_back(at->second);
            }
            zones[t] = zone;
        }
        ++zone;
    }
    FEL_set_file_read_progress(0.9f);
    if (FEL_reader_verbose) {
        std::cerr << "Found " << zone << " zones in this STL file," << std::endl;
        std::cerr << "which contains " << n_triangles << " triangles." << std::endl;
    }
    g_blnUseClose = true;
    FEL_pointer<FEL_mesh> mesh(new FEL_tetrahedral_mesh(
        n_vertices, vertices, n_triangles, triangles, zones, 0, nullptr, "tetrahedral_mesh"));
    FEL_set_file_read_progress(1.0f);
    return mesh;
}
