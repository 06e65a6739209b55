// Binary Plot3D: form deduction by size arithmetic, the size check, and the single-zone, multi-zone
// and unstructured readers.
#include "readers/FEL_plot3d_reader.h"

#include <sys/stat.h>

#include <cctype>
#include <iostream>
#include <memory>
#include <sstream>
#include <vector>

#include "FEL_exception.h"
#include "FEL_tetrahedral_mesh.h"
#include "readers/FEL_plot3d_text_reader.h"
#include "readers/FEL_plot3d_zone.h"

namespace {

using file_ptr = std::unique_ptr<FILE, int (*)(FILE*)>;

file_ptr open_binary(const std::string& path) {
    return file_ptr(std::fopen(path.c_str(), "rb"), &std::fclose);
}

// `"path":` then text; the reader's messages put a line end between the two.
[[noreturn]] void fail(const std::string& path, const char* separator, const std::string& text,
                       unsigned line) {
    throw FEL_read_error("\"" + path + "\":" + separator + text, __FILE__, line);
}

FEL_byte_reordering_enum file_order(const std::string& path) {
    return FEL_check_byte_reordering(path) ? FEL_BYTE_ORDER_SWAPPED : FEL_BYTE_ORDER_NATIVE;
}

bool read_ints_at(FILE* f, long offset, int count, std::int32_t* out,
                  FEL_byte_reordering_enum order) {
    if (std::fseek(f, offset, SEEK_SET) != 0) return false;
    return FEL_fread(out, 4, count, f, order) == static_cast<std::size_t>(count);
}

// Sum of ni * nj * nk in the file's own 32-bit arithmetic.
std::uint32_t node_total(const std::vector<std::int32_t>& dims) {
    std::uint32_t t = 0;
    for (std::size_t i = 0; i + 2 < dims.size(); i += 3)
        t += std::uint32_t(dims[i]) * std::uint32_t(dims[i + 1]) * std::uint32_t(dims[i + 2]);
    return t;
}

bool size_is(std::uint32_t expected, std::int64_t size) {
    return static_cast<std::int64_t>(static_cast<std::int32_t>(expected)) == size;
}

// Header of a binary file read by the flags' layout: where the zone count and dimensions stand.
bool read_binary_dimensions(FILE* f, unsigned flags, FEL_byte_reordering_enum order, int* n_zones,
                            std::vector<std::int32_t>* dims) {
    bool fortran = flags & FEL_PLOT3D_FORTRAN_UNFORMATTED;
    std::int32_t nz = 1;
    long at = fortran ? 4 : 0;
    if (flags & FEL_PLOT3D_MULTIZONE) {
        if (!read_ints_at(f, at, 1, &nz, order)) return false;
        at += fortran ? 12 : 4;
    }
    if (nz < 1 || nz > FEL_PLOT3D_MAX_ZONES) return false;
    dims->assign(3 * nz, 0);
    if (!read_ints_at(f, at, 3 * nz, dims->data(), order)) return false;
    *n_zones = nz;
    return true;
}

void report_deduction(const std::string& path, unsigned flags, std::uint32_t nodes, int zones) {
    if (!FEL_reader_verbose) return;
    std::cerr << "\"" << path << "\":";
    if (flags == 0) {
        std::cerr << " Plot3D type not found" << std::endl;
        return;
    }
    std::cerr << " (" << nodes << " nodes)"
              << " " << zones << "-zones";
    if (flags & FEL_PLOT3D_UNSTRUCTURED) std::cerr << " unstructured";
    if (flags & FEL_PLOT3D_FORTRAN_UNFORMATTED) std::cerr << " FTN-unformatted";
    if (flags & FEL_PLOT3D_LITTLE_ENDIAN) std::cerr << " little-endian";
    std::cerr << std::endl;
}

}  // namespace

std::int64_t FEL_file_size(const std::string& path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? static_cast<std::int64_t>(st.st_size) : -1;
}

unsigned FEL_plot3d_deduce_mesh_type(const std::string& path) {
    file_ptr f = open_binary(path);
    if (!f) fail(path, " ", "cannot open", __LINE__);
    const std::int64_t size = FEL_file_size(path);
    if (size == 0) fail(path, " ", "empty file", __LINE__);

    unsigned char head[25];
    std::size_t n = std::fread(head, 1, sizeof head, f.get());
    bool text = true;
    for (std::size_t i = 0; i < n && text; ++i)
        text = std::isprint(head[i]) || std::isspace(head[i]);
    if (text) return 0;

    std::uint32_t w[4];
    std::rewind(f.get());
    if (std::fread(w, 4, 4, f.get()) != 4) fail(path, " ", "problem reading header", __LINE__);
    const unsigned char* b0 = reinterpret_cast<const unsigned char*>(&w[0]);
    const bool little = b0[0] != 0 && b0[3] == 0;
    const unsigned base = little ? FEL_PLOT3D | FEL_PLOT3D_LITTLE_ENDIAN : FEL_PLOT3D;
    if (little != FEL_little_endian_hardware())
        for (std::uint32_t& word : w) word = __builtin_bswap32(word);
    const FEL_byte_reordering_enum order = file_order(path);

    unsigned flags = 0;
    int zones = 1;
    std::uint32_t nodes = w[0] * w[1] * w[2];
    const std::uint32_t m = w[1] * w[2] * w[3];
    if (size_is(12 * nodes + 12, size)) {
        flags = base;
    } else if (size_is(16 * nodes + 12, size)) {
        flags = base + 1;
    } else if (size_is(12 * m + 28, size)) {
        flags = base + 8, nodes = m;
    } else if (size_is(16 * m + 28, size)) {
        flags = base + 9, nodes = m;
    } else if (size_is(4 * (4 * w[1] + 4 * w[2] + 3 * w[0]) + 12, size)) {
        flags = base + 4, nodes = w[0];
    } else {
        const std::int32_t w0 = static_cast<std::int32_t>(w[0]);
        if (w0 >= 1 && w0 <= FEL_PLOT3D_MAX_ZONES) {
            std::vector<std::int32_t> dims(3 * w0);
            if (read_ints_at(f.get(), 4, 3 * w0, dims.data(), order)) {
                const std::uint32_t t = node_total(dims), h = 12 * w[0] + 4;
                if (size_is(16 * t + h, size))
                    flags = base + 3, zones = w0, nodes = t;
                else if (size_is(12 * t + h, size))
                    flags = base + 2, zones = w0, nodes = t;
            }
        }
        const std::int32_t w1 = static_cast<std::int32_t>(w[1]);
        if (flags == 0 && w0 == 4 && w1 >= 1 && w1 <= FEL_PLOT3D_MAX_ZONES && w[2] == 4) {
            std::vector<std::int32_t> dims(3 * w1);
            if (read_ints_at(f.get(), 16, 3 * w1, dims.data(), order)) {
                const std::uint32_t t = node_total(dims), h = 12 * w[1] + 20;
                if (size_is(16 * t + 8 * w[1] + h, size))
                    flags = base + 11, zones = w1, nodes = t;
                else if (size_is(12 * t + 8 * w[1] + h, size))
                    flags = base + 10, zones = w1, nodes = t;
            }
        }
    }
    report_deduction(path, flags, nodes, zones);
    return flags;
}

int FEL_plot3d_read_mesh_dimensions(const std::string& path, unsigned flags, int* n_zones,
                                    FEL_vector3<int>** dims) {
    std::vector<std::int32_t> d;
    int nz = 0;
    if (flags & FEL_PLOT3D_FORTRAN_FORMATTED) {
        if (!FEL_plot3d_read_text_dimensions(path, flags, &nz, &d)) return 0;
    } else {
        file_ptr f = open_binary(path);
        if (!f || !read_binary_dimensions(f.get(), flags, file_order(path), &nz, &d)) return 0;
    }
    *n_zones = nz;
    *dims = new FEL_vector3<int>[nz];
    for (int z = 0; z < nz; ++z)
        (*dims)[z] = FEL_vector3<int>(d[3 * z], d[3 * z + 1], d[3 * z + 2]);
    return 1;
}

bool CheckBinaryFileSize(const std::string& path, unsigned flags) {
    if (flags & FEL_PLOT3D_FORTRAN_FORMATTED) return true;
    file_ptr f = open_binary(path);
    std::vector<std::int32_t> d;
    int nz = 0;
    if (!f || !read_binary_dimensions(f.get(), flags, file_order(path), &nz, &d)) return false;
    // Dimensions read from a file of another form are arbitrary words: 128-bit sums keep the
    // product of three of them exact, so such a file simply fails the comparison.
    __int128 expected = (3 * nz + 2) * 4;
    if (nz >= 2 || (flags & FEL_PLOT3D_MULTIZONE)) expected += 12;
    const bool unstructured = flags & FEL_PLOT3D_UNSTRUCTURED, iblank = flags & FEL_PLOT3D_IBLANK;
    for (int z = 0; z < nz; ++z) {
        const __int128 a = d[3 * z], b = d[3 * z + 1], c = d[3 * z + 2];
        if (unstructured && iblank)
            expected += (4 * (a + b + c) + 2) * 4;
        else if (unstructured)
            expected += (b + 4 * c + 2 + 3 * (a + b)) * 4;
        else
            expected += (iblank ? 16 : 12) * a * b * c + 8;
    }
    return expected == FEL_file_size(path);
}

int FEL_read_transpose(int count, FILE* x, FILE* y, FILE* z, FILE* iblank,
                       FEL_byte_reordering_enum order, FEL_vector3<float>* xyz, int* iblanks) {
    constexpr int chunk = 1 << 14;
    std::vector<float> plane(chunk);
    FILE* planes[3] = {x, y, z};
    for (int start = 0; start < count; start += chunk) {
        const int n = std::min(chunk, count - start);
        for (int c = 0; c < 3; ++c) {
            if (FEL_fread(plane.data(), 4, n, planes[c], order) != static_cast<std::size_t>(n))
                return 0;
            for (int i = 0; i < n; ++i) xyz[start + i][c] = plane[i];
        }
        if (iblank &&
            FEL_fread(iblanks + start, 4, n, iblank, order) != static_cast<std::size_t>(n))
            return 0;
    }
    return 1;
}

namespace {

// One zone of nodes whose x plane starts at offset; iblank planes follow z.
FEL_pointer<FEL_mesh> read_binary_zone(const std::string& path, long offset,
                                       const std::int32_t* dims, bool iblank,
                                       FEL_byte_reordering_enum order) {
    const std::int64_t n = std::int64_t(dims[0]) * dims[1] * dims[2];
    if (dims[0] < 1 || dims[1] < 1 || dims[2] < 1 || n > INT32_MAX)
        throw FEL_read_error(__FILE__, __LINE__);
    std::unique_ptr<FEL_vector3<float>[]> xyz(new FEL_vector3<float>[n]);
    std::unique_ptr<int[]> blanks(iblank ? new int[n] : nullptr);
    file_ptr planes[4] = {open_binary(path), open_binary(path), open_binary(path),
                          iblank ? open_binary(path) : file_ptr(nullptr, &std::fclose)};
    for (int c = 0; c < (iblank ? 4 : 3); ++c)
        if (!planes[c] || std::fseek(planes[c].get(), offset + 4 * n * c, SEEK_SET) != 0)
            throw FEL_read_error(__FILE__, __LINE__);
    if (!FEL_read_transpose(int(n), planes[0].get(), planes[1].get(), planes[2].get(),
                            planes[3].get(), order, xyz.get(), blanks.get()))
        throw FEL_read_error(__FILE__, __LINE__);
    return FEL_plot3d_make_zone(dims[0], dims[1], dims[2], xyz.release(), blanks.release());
}

FEL_pointer<FEL_mesh> read_unstructured(const std::string& path, FILE* f, const std::int32_t* w,
                                        FEL_byte_reordering_enum order) {
    const int n_nodes = w[0], n_triangles = w[1], n_tetrahedra = w[2];
    if (n_nodes < 0 || n_triangles < 0 || n_tetrahedra < 0)
        fail(path, "\n", "read problem", __LINE__);
    std::unique_ptr<FEL_vector3<float>[]> nodes(new FEL_vector3<float>[n_nodes]);
    file_ptr planes[3] = {open_binary(path), open_binary(path), open_binary(path)};
    for (int c = 0; c < 3; ++c)
        if (!planes[c] || std::fseek(planes[c].get(), 12 + 4L * n_nodes * c, SEEK_SET) != 0)
            throw FEL_read_error(__FILE__, __LINE__);
    if (!FEL_read_transpose(n_nodes, planes[0].get(), planes[1].get(), planes[2].get(), nullptr,
                            order, nodes.get(), nullptr))
        throw FEL_read_error(__FILE__, __LINE__);
    // Node numbers in the file count from 1.
    std::unique_ptr<FEL_vector3<int>[]> triangles(new FEL_vector3<int>[n_triangles]);
    std::unique_ptr<int[]> zones(new int[n_triangles]);
    std::unique_ptr<FEL_vector4<int>[]> tetrahedra(new FEL_vector4<int>[n_tetrahedra]);
    std::fseek(f, 12 + 12L * n_nodes, SEEK_SET);
    if (FEL_fread(triangles.get(), 4, 3 * std::size_t(n_triangles), f, order) !=
            3 * std::size_t(n_triangles) ||
        FEL_fread(zones.get(), 4, n_triangles, f, order) != std::size_t(n_triangles) ||
        FEL_fread(tetrahedra.get(), 4, 4 * std::size_t(n_tetrahedra), f, order) !=
            4 * std::size_t(n_tetrahedra))
        throw FEL_read_error(__FILE__, __LINE__);
    auto out_of_range = [n_nodes](int node) { return node < 1 || node > n_nodes; };
    for (int t = 0; t < n_triangles; ++t)
        for (int c = 0; c < 3; ++c)
            if (out_of_range(triangles[t][c]--)) fail(path, "\n", "read problem", __LINE__);
    for (int t = 0; t < n_tetrahedra; ++t)
        for (int c = 0; c < 4; ++c)
            if (out_of_range(tetrahedra[t][c]--)) fail(path, "\n", "read problem", __LINE__);
    return FEL_pointer<FEL_mesh>(new FEL_tetrahedral_mesh(
        n_nodes, nodes.release(), n_triangles, triangles.release(), zones.release(), n_tetrahedra,
        tetrahedra.release(), "tetrahedral_mesh"));
}

}  // namespace

FEL_pointer<FEL_mesh> FEL_plot3d_read_mesh(const std::string& path, unsigned flags, int zone) {
    if (flags & FEL_PLOT3D_FORTRAN_FORMATTED)
        return FEL_plot3d_read_fortran_formatted_mesh(path, flags, zone);
    if (zone > 0 && !(flags & FEL_PLOT3D_MULTIZONE))
        fail(path, "\n",
             "Cannot read zone " + std::to_string(zone) + " when not FEL_PLOT3D_MULTIZONE",
             __LINE__);
    file_ptr f = open_binary(path);
    if (!f) fail(path, "\n", "Cannot open", __LINE__);
    if (flags == 0) flags = FEL_plot3d_deduce_mesh_type(path);
    if (flags == 0) fail(path, "\n", "Unrecognized mesh type.", __LINE__);
    const FEL_byte_reordering_enum order = file_order(path);
    flags &= ~FEL_PLOT3D_LITTLE_ENDIAN;
    if (!CheckBinaryFileSize(path, flags))
        fail(path, "\n", "Specified file type does not match file.", __LINE__);
    std::int32_t w[4];
    if (FEL_fread(w, 4, 4, f.get(), order) != 4) fail(path, " ", "read problem", __LINE__);

    const unsigned form = flags & ~FEL_PLOT3D;
    const bool iblank = form & FEL_PLOT3D_IBLANK;
    switch (form) {
        case 0:
        case 1:
            return read_binary_zone(path, 12, w, iblank, order);
        case 8:
        case 9:
            return read_binary_zone(path, 24, w + 1, iblank, order);
        case 4:
            return read_unstructured(path, f.get(), w, order);
        case 2:
        case 3:
        case 10:
        case 11: {
            const bool fortran = form & FEL_PLOT3D_FORTRAN_UNFORMATTED;
            std::vector<std::int32_t> d;
            int nz = 0;
            if (!read_binary_dimensions(f.get(), flags, order, &nz, &d))
                fail(path, " ", "read problem", __LINE__);
            if (zone >= nz)
                fail(path, "\n", "Zone " + std::to_string(zone) + " is not in the file", __LINE__);
            long offset = fortran ? 20 + 12L * nz : 4 + 12L * nz;
            std::vector<FEL_pointer<FEL_mesh>> zones;
            for (int z = 0; z < nz && (zone < 0 || z <= zone); ++z) {
                const std::int32_t* dz = &d[3 * z];
                if (fortran) offset += 4;
                if (zone < 0 || z == zone)
                    zones.push_back(read_binary_zone(path, offset, dz, iblank, order));
                offset += long(iblank ? 16 : 12) * dz[0] * dz[1] * dz[2] + (fortran ? 4 : 0);
            }
            if (zone >= 0) return zones.back();
            return FEL_plot3d_make_multi(zones);
        }
        default:
            fail(path, "\n", "Unsupported format", __LINE__);
    }
}

FEL_pointer<FEL_mesh> FEL_plot3d_read_cray_fortran_unformatted_mesh(const std::string& path,
                                                                    unsigned, int) {
    fail(path, "\n", "Unsupported format", __LINE__);
}
