// Internal to the Plot3D readers: building the mesh of a zone, and the text header read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"

// A curvilinear mesh over the nodes, which it takes over; iblanks (may be null) is consumed too. A
// zone with a count not above 1 becomes a surface mesh.
FEL_pointer<FEL_mesh> FEL_plot3d_make_zone(int ni, int nj, int nk, FEL_vector3<float>* xyz,
                                           int* iblanks);
FEL_pointer<FEL_mesh> FEL_plot3d_make_multi(const std::vector<FEL_pointer<FEL_mesh>>& zones);

// Zone count and dimensions of a text file, read as the text reader reads them; 1 or 0.
int FEL_plot3d_read_text_dimensions(const std::string& path, unsigned flags, int* n_zones,
                                    std::vector<std::int32_t>* dims);
