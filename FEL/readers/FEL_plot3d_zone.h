// Internal to the Plot3D readers: building the mesh of a zone, and the text header read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"

// A file may hold at most this many zones.
constexpr int FEL_PLOT3D_MAX_ZONES = 4000;

// A curvilinear mesh over the nodes, which it takes over; iblanks (may be null) is consumed too. A
// zone with a count not above 1 becomes a surface mesh.
FEL_pointer<FEL_mesh> FEL_plot3d_make_zone(int ni, int nj, int nk, FEL_vector3<float>* xyz,
                                           int* iblanks);
FEL_pointer<FEL_mesh> FEL_plot3d_make_multi(const std::vector<FEL_pointer<FEL_mesh>>& zones);
