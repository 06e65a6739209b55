// Plot3D grids: telling the binary and text forms apart by size arithmetic, and reading them into
// curvilinear, multi-zone and tetrahedral meshes.
#pragma once

#include <cstdint>
#include <string>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "readers/FEL_reader.h"

// A file may hold at most this many zones.
constexpr int FEL_PLOT3D_MAX_ZONES = 4000;

// The flags of a binary file from its size and first four words; 0 for text or an unknown form.
// Throws FEL_read_error for a file that will not open, is empty, or is shorter than four words.
unsigned FEL_plot3d_deduce_mesh_type(const std::string& path);

// zone -1 reads every zone; a zone number asks for that zone of a multi-zone file.
FEL_pointer<FEL_mesh> FEL_plot3d_read_mesh(const std::string& path, unsigned flags, int zone);
FEL_pointer<FEL_mesh> FEL_plot3d_read_fortran_formatted_mesh(const std::string& path,
                                                             unsigned flags, int zone);
FEL_pointer<FEL_mesh> FEL_plot3d_read_cray_fortran_unformatted_mesh(const std::string& path,
                                                                    unsigned flags, int zone);

// Zone count and dimensions from the header; 1 on success, 0 otherwise. *dims is new[]-allocated.
int FEL_plot3d_read_mesh_dimensions(const std::string& path, unsigned flags, int* n_zones,
                                    FEL_vector3<int>** dims);

// Whether the file's length is the one its dimensions call for, every binary form being measured
// as if it had Fortran record markers; true for text.
bool CheckBinaryFileSize(const std::string& path, unsigned flags);

// The size in bytes, or -1 if the file cannot be examined.
std::int64_t FEL_file_size(const std::string& path);

// Reads count nodes from the plane handles x, y, z (and iblank if not null), each seeked to the
// start of its plane, straight into the interleaved array. Returns 1, or 0 on a short read.
int FEL_read_transpose(int count, FILE* x, FILE* y, FILE* z, FILE* iblank,
                       FEL_byte_reordering_enum order, FEL_vector3<float>* xyz, int* iblanks);

// While one of these lives, the text reader keeps the coordinates of a read that failed after them
// and hands them to the next read of the same file that starts at the same place, so that the
// trial reads of one detection parse a large file only once.
class FEL_plot3d_text_reuse_scope {
  public:
    explicit FEL_plot3d_text_reuse_scope(const std::string& path);
    ~FEL_plot3d_text_reuse_scope();
    FEL_plot3d_text_reuse_scope(const FEL_plot3d_text_reuse_scope&) = delete;
    FEL_plot3d_text_reuse_scope& operator=(const FEL_plot3d_text_reuse_scope&) = delete;
};
