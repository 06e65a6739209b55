// FEL_read_mesh: reads any supported file into a mesh, finding its format by the first bytes, the
// deducers, and last by trial reads.
#include "readers/FEL_reader.h"

#include <cassert>
#include <cstring>
#include <iostream>
#include <memory>

#include "FEL_exception.h"
#include "readers/FEL_plot3d_reader.h"
#include "readers/FEL_plot3d_text_reader.h"
#include "readers/FEL_stl_reader.h"

namespace {

constexpr unsigned reader_bits = FEL_PLOT3D | FEL_PLOT3D_PAGED | FEL_FITS;

FEL_pointer<FEL_mesh> read_by_reader_bits(const std::string& path, unsigned flags, int zone) {
    if (flags & FEL_PLOT3D) return FEL_plot3d_read_mesh(path, flags, zone);
    if (flags & FEL_PLOT3D_PAGED) return FEL_plot3d_read_paged_mesh(path, flags, zone);
    return FEL_fits_read_mesh(path, flags);
}

// A trial read must never end the process, as the binary STL reader does on a size mismatch, nor
// take a file with no facet at all for a surface: such tries count as failed.
bool stl_trial_has_facets(const std::string& path, unsigned binary) {
    if (binary != 1) return FEL_stl_ascii_has_facet(path);
    std::ifstream in(path, std::ios::binary);
    char header[80];
    std::int32_t count = 0;
    in.read(header, 80);
    in.read(reinterpret_cast<char*>(&count), 4);
    return in && count > 0 && 84 + 50 * std::int64_t(count) == FEL_file_size(path);
}

FEL_pointer<FEL_mesh> trial_reads(const std::string& path, unsigned& flags, int zone) {
    unsigned base = FEL_PLOT3D | FEL_PLOT3D_FORTRAN_FORMATTED;
    if (FEL_is_file_binary(path))
        base = FEL_check_byte_reordering(path)
                   ? FEL_PLOT3D | FEL_PLOT3D_FORTRAN_UNFORMATTED
                   : FEL_PLOT3D | FEL_PLOT3D_FORTRAN_UNFORMATTED | FEL_PLOT3D_LITTLE_ENDIAN;
    FEL_plot3d_text_reuse_scope reuse(path);
    FEL_pointer<FEL_mesh> mesh;
    for (unsigned d : {3u, 2u, 1u, 0u, 6u, 4u}) {
        flags = base + d;
        try {
            mesh = FEL_plot3d_read_mesh(path, flags, zone);
        } catch (...) {
        }
        if (!mesh.null()) return mesh;
    }
    for (unsigned binary : {0u, 1u}) {
        try {
            if (stl_trial_has_facets(path, binary)) mesh = FEL_stl_read_mesh(path, binary);
        } catch (...) {
        }
        if (!mesh.null()) return mesh;
    }
    return mesh;
}

}  // namespace

FEL_pointer<FEL_mesh> FEL_read_mesh(const std::string& path, unsigned& flags, int zone) {
    FEL_pointer<FEL_mesh> mesh;
    if (flags & reader_bits) {
        try {
            mesh = read_by_reader_bits(path, flags, zone);
        } catch (...) {
            flags = 0;
        }
        if (!mesh.null()) return mesh;
    }

    unsigned info = 0;
    const int kind = FEL_flowviz_deduce_file_type(path, info);
    if (kind == FEL_FILE_TECPLOT) {
        flags = (info & 1) ? FEL_PLOT3D_TECPLOT | FEL_PLOT3D | FEL_PLOT3D_FORTRAN_FORMATTED
                           : FEL_PLOT3D_TECPLOT | FEL_PLOT3D | FEL_PLOT3D_FORTRAN_UNFORMATTED;
        mesh = FEL_plot3d_read_mesh(path, flags, zone);
    } else if (kind == FEL_FILE_FLOWVIZ) {
        flags = kind;
        mesh = FEL_flowviz_read_mesh(path, info);
    } else if (kind == FEL_FILE_STL) {
        flags = kind;
        mesh = FEL_stl_read_mesh(path, info);
    } else if (kind == FEL_FILE_UNKNOWN) {
        const unsigned deduced = FEL_deduce_mesh_type(path);
        if (deduced != 0) flags = deduced;
        // A deduced form that its reader refuses leaves the trial reads to decide.
        if (deduced & reader_bits) {
            try {
                mesh = read_by_reader_bits(path, flags, zone);
            } catch (...) {
            }
        }
        if (mesh.null() && (deduced == 0 || (deduced & reader_bits)))
            mesh = trial_reads(path, flags, zone);
    }
    if (mesh.null()) throw FEL_type_detection_error(path, 0, __FILE__, __LINE__);
    return mesh;
}

unsigned FEL_deduce_mesh_type(const std::string& path) {
    if (unsigned f = FEL_plot3d_deduce_paged_mesh_type(path)) return f;
    if (unsigned f = FEL_plot3d_deduce_mesh_type(path)) return f;
    if (unsigned f = FEL_vis5d_deduce_mesh_type(path)) return f;
    return FEL_fits_deduce_mesh_type(path);
}

int FEL_read_mesh_dimensions(const std::string& path, unsigned flags, int* n_zones,
                             FEL_vector3<int>** dims) {
    if (flags & FEL_PLOT3D) return FEL_plot3d_read_mesh_dimensions(path, flags, n_zones, dims);
    if (flags & FEL_PLOT3D_PAGED)
        return FEL_plot3d_read_paged_mesh_dimensions(path, flags, n_zones, dims);
    return 0;
}

int FEL_read_mesh_n_zones(const std::string& path, unsigned flags, int* n_zones) {
    FEL_vector3<int>* dims = nullptr;
    if (!FEL_read_mesh_dimensions(path, flags, n_zones, &dims)) return 0;
    delete[] dims;
    return 1;
}

int FEL_read_mesh_zone_dimensions(const std::string& path, unsigned flags, int zone,
                                  FEL_vector3<int>* zone_dims) {
    int n_zones = 0;
    FEL_vector3<int>* dims = nullptr;
    if (!FEL_read_mesh_dimensions(path, flags, &n_zones, &dims)) return 0;
    std::unique_ptr<FEL_vector3<int>[]> owned(dims);
    if (zone < 0 || zone >= n_zones) return 0;
    *zone_dims = dims[zone];
    return 1;
}

// No paged, Vis5D or FITS file is read by this build: the deducers answer 0 for every file and
// the readers refuse.
unsigned FEL_plot3d_deduce_paged_mesh_type(const std::string&) {
    return 0;
}
unsigned FEL_vis5d_deduce_mesh_type(const std::string&) {
    return 0;
}
unsigned FEL_fits_deduce_mesh_type(const std::string&) {
    return 0;
}

FEL_pointer<FEL_mesh> FEL_plot3d_read_paged_mesh(const std::string& path, unsigned, int) {
    throw FEL_read_error("\"" + path + "\":\nUnsupported format", __FILE__, __LINE__);
}

int FEL_plot3d_read_paged_mesh_dimensions(const std::string&, unsigned, int*, FEL_vector3<int>**) {
    return 0;
}

FEL_pointer<FEL_mesh> FEL_fits_read_mesh(const std::string& path, unsigned) {
    throw FEL_read_error("\"" + path + "\":\nUnsupported format", __FILE__, __LINE__);
}

// The header is checked in full; the cells of a FLOWVIZ file would make a hexahedral mesh, a class
// this library does not have, so a well-formed file is refused after its header.
FEL_pointer<FEL_mesh> FEL_flowviz_read_mesh(const std::string& path, unsigned uintInfo) {
    assert(uintInfo & FEL_FLOWVIZ_MESH && uintInfo & FEL_FLOWVIZ_ASCII);
    (void)uintInfo;
    FILE* f = std::fopen(path.c_str(), "r");
    if (!f) {
        std::cerr << "\"" << path << "\": cannot open" << std::endl;
        throw FEL_read_error(__FILE__, __LINE__);
    }
    char header[300] = {};
    const bool got = std::fgets(header, sizeof header, f) != nullptr;
    std::fclose(f);
    const std::string line = got ? header : "";
    if (line.compare(0, 7, "FLOWVIZ") != 0 || line.find("UNSTRUCTURED") == std::string::npos ||
        line.find("HEXAHEDRAL") == std::string::npos ||
        (line.find("CARTESIAN") == std::string::npos &&
         line.find("CYLINDRICAL") == std::string::npos))
        throw FEL_read_error("\"" + path + "\":\nBad FLOWVIZ header", __FILE__, __LINE__);
    throw FEL_read_error("\"" + path + "\":\nUnsupported format", __FILE__, __LINE__);
}
