// Text Plot3D: the header with its double reading of dimensions, and the coordinates of each zone.
#include "readers/FEL_plot3d_text_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "FEL_exception.h"
#include "FEL_tetrahedral_mesh.h"
#include "readers/FEL_file_type.h"
#include "readers/FEL_plot3d_zone.h"
#include "readers/FEL_text_scan.h"

namespace {

[[noreturn]] void fail(const std::string& path, const std::string& text, unsigned line) {
    throw FEL_read_error("\"" + path + "\":\n" + text, __FILE__, line);
}

// Coordinates left behind by a read that failed after them (an iblank read of a file without
// iblanks), kept only while a FEL_plot3d_text_reuse_scope lives.
struct kept_coordinates {
    bool active = false;
    std::string path;
    std::int64_t file_size = -1;
    std::size_t start = 0, end = 0;
    std::int64_t count = 0;
    std::unique_ptr<FEL_vector3<float>[]> xyz;
};
kept_coordinates kept;

}  // namespace

bool FEL_plot3d_read_text_header(const char* begin, const char* end, unsigned flags,
                                 FEL_plot3d_text_header* h) {
    const char* p = begin;
    int first;
    if (!FEL_scan_int(p, end, &first)) return false;
    const bool multi = (flags & FEL_PLOT3D_MULTIZONE) && first <= FEL_PLOT3D_MAX_ZONES;
    p = begin;
    h->n_zones = 1;
    if (multi && !FEL_scan_int(p, end, &h->n_zones)) return false;
    h->counted = multi;
    if (h->n_zones < 1) return false;
    h->dims.resize(3 * h->n_zones);
    for (std::int32_t& d : h->dims) {
        const char* at = p;
        int as_int;
        float as_float;
        if (!FEL_scan_int(p, end, &as_int)) return false;
        p = at;
        if (!FEL_scan_float(p, end, &as_float) || as_float != static_cast<float>(as_int) ||
            as_int < 1)
            return false;
        d = as_int;
    }
    h->data = p;
    return true;
}

namespace {

// Where a token of the coordinates began and how long it was.
struct token_span {
    const char* at = nullptr;
    std::size_t size = 0;
};

// One coordinate as "%f" reads it.
bool scan_plainly(const char*& p, const char* end, float* value) {
    const char* stop = p;
    while (stop != end && !FEL_is_space(*stop)) ++stop;
    const std::string token(p, stop);
    int used = 0;
    if (token.empty() || std::sscanf(token.c_str(), "%f%n", value, &used) != 1) return false;
    p += used;
    return true;
}

// x, y and z planes of count nodes into the interleaved array; file, when given, gets back the
// pages behind the reading as it goes.
bool read_planes(const char*& p, const char* end, std::int64_t count, FEL_vector3<float>* xyz,
                 std::int64_t row_size = 0, FEL_mapped_file* file = nullptr) {
    constexpr std::int64_t kReleaseStep = 1 << 19;   // nodes between two releases
    constexpr std::ptrdiff_t kKeptBehind = 8 << 20;  // bytes left mapped behind the reading
    // With a row size the x plane repeats each row; the column runs beside i so that the loop
    // divides nothing.
    const bool rows = row_size > 0;
    std::vector<token_span> row(std::size_t(rows ? row_size : 1));
    token_span last;
    for (int c = 0; c < 3; ++c)
        for (std::int64_t i = 0, column = 0; i < count; ++i) {
            while (p != end && FEL_is_space(*p)) ++p;
            if (file && (i & (kReleaseStep - 1)) == 0 && p - file->begin() > kKeptBehind)
                file->release_before(p - kKeptBehind);
            const bool by_row = c == 0 && rows;
            token_span& seen = by_row ? row[std::size_t(column)] : last;
            if (by_row && ++column == row_size) column = 0;
            const bool again = by_row ? i >= row_size : i > 0;
            if (FEL_plot3d_text_plain) {
                if (!scan_plainly(p, end, &xyz[i][c])) return false;
                continue;
            }
            // A grid's planes repeat their values: x along each row, y and z in runs. A token
            // with the bytes of the one it would repeat takes that one's value: same bytes, same
            // float.
            if (again && FEL_repeats_token(p, end, seen.at, seen.size)) {
                xyz[i][c] = by_row ? xyz[i - row_size][c] : xyz[i - 1][c];
                continue;
            }
            const char* at = p;
            if (!FEL_scan_plain_float(p, end, &xyz[i][c]) && !FEL_scan_float(p, end, &xyz[i][c]))
                return false;
            seen = {at, std::size_t(p - at)};
        }
    return true;
}

// One zone's nodes, from the coordinates a failed read left at this very place if there are any.
std::unique_ptr<FEL_vector3<float>[]> zone_coordinates(const std::string& path, const char* begin,
                                                       const char*& p, const char* end,
                                                       std::int64_t count, std::int64_t row_size,
                                                       FEL_mapped_file* file) {
    const std::size_t start = static_cast<std::size_t>(p - begin);
    if (kept.xyz && kept.path == path && kept.start == start && kept.count == count &&
        kept.file_size == end - begin) {
        p = begin + kept.end;
        return std::move(kept.xyz);
    }
    std::unique_ptr<FEL_vector3<float>[]> xyz(new FEL_vector3<float>[count]);
    if (!read_planes(p, end, count, xyz.get(), row_size, file)) return nullptr;
    return xyz;
}

// The unstructured text form: node, triangle and tetrahedron counts, the node planes, the triangles
// (node numbers from 1), a zone number per triangle, and the tetrahedra.
FEL_pointer<FEL_mesh> read_unstructured(const std::string& path, const char* p, const char* end) {
    int n_nodes, n_triangles, n_tetrahedra;
    if (!FEL_scan_int(p, end, &n_nodes) || !FEL_scan_int(p, end, &n_triangles) ||
        !FEL_scan_int(p, end, &n_tetrahedra) || n_nodes < 1 || n_triangles < 0 || n_tetrahedra < 0)
        fail(path, "Problem reading dimensions", __LINE__);
    const double numbers = 3.0 * n_nodes + 4.0 * n_triangles + 4.0 * n_tetrahedra;
    if (2 * numbers - 1 > end - p) fail(path, "Problem reading coordinates", __LINE__);
    std::unique_ptr<FEL_vector3<float>[]> nodes(new FEL_vector3<float>[n_nodes]);
    std::unique_ptr<FEL_vector3<int>[]> triangles(new FEL_vector3<int>[n_triangles]);
    std::unique_ptr<int[]> zones(new int[n_triangles]);
    std::unique_ptr<FEL_vector4<int>[]> tetrahedra(new FEL_vector4<int>[n_tetrahedra]);
    if (!read_planes(p, end, n_nodes, nodes.get()))
        fail(path, "Problem reading coordinates", __LINE__);
    auto node_number = [&](int* out) {
        if (!FEL_scan_int(p, end, out) || *out < 1 || *out > n_nodes)
            fail(path, "Problem reading elements", __LINE__);
        --*out;
    };
    for (int t = 0; t < n_triangles; ++t)
        for (int c = 0; c < 3; ++c) node_number(&triangles[t][c]);
    for (int t = 0; t < n_triangles; ++t)
        if (!FEL_scan_int(p, end, &zones[t])) fail(path, "Problem reading elements", __LINE__);
    for (int t = 0; t < n_tetrahedra; ++t)
        for (int c = 0; c < 4; ++c) node_number(&tetrahedra[t][c]);
    return FEL_pointer<FEL_mesh>(new FEL_tetrahedral_mesh(
        n_nodes, nodes.release(), n_triangles, triangles.release(), zones.release(), n_tetrahedra,
        tetrahedra.release(), "tetrahedral_mesh"));
}

}  // namespace

bool FEL_plot3d_text_plain = false;

FEL_plot3d_text_reuse_scope::FEL_plot3d_text_reuse_scope(const std::string& path) {
    kept = kept_coordinates();
    kept.active = true;
    kept.path = path;
}

FEL_plot3d_text_reuse_scope::~FEL_plot3d_text_reuse_scope() {
    kept = kept_coordinates();
}

int FEL_plot3d_read_text_dimensions(const std::string& path, unsigned flags, int* n_zones,
                                    std::vector<std::int32_t>* dims) {
    FEL_mapped_file file(path);
    FEL_plot3d_text_header h;
    if (!file.ok() || !FEL_plot3d_read_text_header(file.begin(), file.end(), flags, &h)) return 0;
    *n_zones = h.n_zones;
    *dims = std::move(h.dims);
    return 1;
}

FEL_pointer<FEL_mesh> FEL_plot3d_read_fortran_formatted_mesh(const std::string& path,
                                                             unsigned flags, int zone) {
    if (flags & FEL_PLOT3D_TECPLOT) fail(path, "Unsupported format", __LINE__);
    if (zone > 0 && !(flags & FEL_PLOT3D_MULTIZONE))
        fail(path, "Cannot read zone " + std::to_string(zone) + " when not FEL_PLOT3D_MULTIZONE",
             __LINE__);
    FEL_mapped_file file(path);
    if (!file.ok()) fail(path, "Cannot open", __LINE__);
    const char* const begin = file.begin();
    const char* const end = file.end();
    if (flags & FEL_PLOT3D_UNSTRUCTURED) return read_unstructured(path, begin, end);
    FEL_plot3d_text_header h;
    if (!FEL_plot3d_read_text_header(begin, end, flags, &h))
        fail(path, "Problem reading dimensions", __LINE__);
    const int nz = h.n_zones;
    if (zone >= nz) fail(path, "Zone " + std::to_string(zone) + " is not in the file", __LINE__);
    const int last = zone >= 0 ? zone : nz - 1;

    // n numbers take at least 2n - 1 characters: a form whose counts overrun the file fails here,
    // before any coordinate is parsed.
    const bool iblank = flags & FEL_PLOT3D_IBLANK;
    double numbers = 0;  // in double: three 32-bit counts may overflow any integer
    for (int z = 0; z <= last; ++z)
        numbers += (iblank ? 4.0 : 3.0) * h.dims[3 * z] * h.dims[3 * z + 1] * h.dims[3 * z + 2];
    if (2 * numbers - 1 > end - h.data) fail(path, "Problem reading coordinates", __LINE__);

    const char* p = h.data;
    std::vector<FEL_pointer<FEL_mesh>> zones;
    for (int z = 0; z <= last; ++z) {
        const std::int32_t* d = &h.dims[3 * z];
        const std::int64_t count = std::int64_t(d[0]) * d[1] * d[2];
        if (count > INT32_MAX) fail(path, "Problem reading coordinates", __LINE__);
        const std::size_t start = static_cast<std::size_t>(p - begin);
        std::unique_ptr<FEL_vector3<float>[]> xyz =
            zone_coordinates(path, begin, p, end, count, d[0], &file);
        if (!xyz) fail(path, "Problem reading coordinates", __LINE__);
        const std::size_t after = static_cast<std::size_t>(p - begin);
        std::unique_ptr<int[]> blanks(iblank ? new int[count] : nullptr);
        for (std::int64_t i = 0; iblank && i < count; ++i) {
            if (!FEL_scan_int(p, end, &blanks[i])) {
                if (kept.active && kept.path == path) {
                    kept.file_size = end - begin;
                    kept.start = start;
                    kept.end = after;
                    kept.count = count;
                    kept.xyz = std::move(xyz);
                }
                fail(path, "Problem reading iblank values", __LINE__);
            }
        }
        if (zone < 0 || z == zone)
            zones.push_back(
                FEL_plot3d_make_zone(d[0], d[1], d[2], xyz.release(), blanks.release()));
    }
    if (zone >= 0 || !h.counted) return zones.back();
    return FEL_plot3d_make_multi(zones);
}
