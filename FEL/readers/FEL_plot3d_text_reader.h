// Text Plot3D: the header with its double reading of dimensions, and the coordinates of each zone.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"

// When set, every coordinate is converted on its own by the C library's "%f": the plain reading
// that the reader's shortcuts must match.
extern bool FEL_plot3d_text_plain;

// The header: the zone count when the flags allow one and the first number can be one (else one
// zone), then each dimension read as an integer and again as a float: a count must read the same
// both ways and be at least 1. data is where the coordinates begin. false when it does not read.
struct FEL_plot3d_text_header {
    int n_zones = 0;
    bool counted = false;  // the file gave a zone count
    std::vector<std::int32_t> dims;
    const char* data = nullptr;
};
bool FEL_plot3d_read_text_header(const char* begin, const char* end, unsigned flags,
                                 FEL_plot3d_text_header* h);

// zone -1 reads every zone; a zone number asks for that zone of a multi-zone file.
FEL_pointer<FEL_mesh> FEL_plot3d_read_fortran_formatted_mesh(const std::string& path,
                                                             unsigned flags, int zone);

// Zone count and dimensions of a text file, read as the text reader reads them; 1 or 0.
int FEL_plot3d_read_text_dimensions(const std::string& path, unsigned flags, int* n_zones,
                                    std::vector<std::int32_t>* dims);

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
