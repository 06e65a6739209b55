// Plot3D grids: telling the binary and text forms apart by size arithmetic, and reading them into
// curvilinear, multi-zone and tetrahedral meshes.
#pragma once

#include <cstdint>
#include <string>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "readers/FEL_file_type.h"

// The flags of a binary file from its size and first four words; 0 for text or an unknown form.
// Throws FEL_read_error for a file that will not open, is empty, or is shorter than four words.
unsigned FEL_plot3d_deduce_mesh_type(const std::string& path);

// zone -1 reads every zone; a zone number asks for that zone of a multi-zone file.
FEL_pointer<FEL_mesh> FEL_plot3d_read_mesh(const std::string& path, unsigned flags, int zone);
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
