// Mesh input: FEL_read_mesh, which reads any supported file into a mesh without being told its
// format, and the header-only reads.
#pragma once

#include <string>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "readers/FEL_file_type.h"

// zone -1 reads the whole file. flags is a first guess (0 for none) and comes back as the form
// that was read. Throws FEL_type_detection_error when no reader accepts the file.
FEL_pointer<FEL_mesh> FEL_read_mesh(const std::string& path, unsigned& flags, int zone);

// The first non-zero answer of the paged, Plot3D, Vis5D and FITS deducers, or 0.
unsigned FEL_deduce_mesh_type(const std::string& path);

// Header-only reads, for Plot3D and paged flags; 1 on success, 0 otherwise. The caller frees
// *dims of FEL_read_mesh_dimensions with delete[].
int FEL_read_mesh_n_zones(const std::string& path, unsigned flags, int* n_zones);
int FEL_read_mesh_zone_dimensions(const std::string& path, unsigned flags, int zone,
                                  FEL_vector3<int>* dims);
int FEL_read_mesh_dimensions(const std::string& path, unsigned flags, int* n_zones,
                             FEL_vector3<int>** dims);

// Formats this build does not read: the deducers answer 0 and the readers refuse.
unsigned FEL_plot3d_deduce_paged_mesh_type(const std::string& path);
unsigned FEL_vis5d_deduce_mesh_type(const std::string& path);
unsigned FEL_fits_deduce_mesh_type(const std::string& path);
FEL_pointer<FEL_mesh> FEL_plot3d_read_paged_mesh(const std::string& path, unsigned flags, int zone);
int FEL_plot3d_read_paged_mesh_dimensions(const std::string& path, unsigned flags, int* n_zones,
                                          FEL_vector3<int>** dims);
FEL_pointer<FEL_mesh> FEL_fits_read_mesh(const std::string& path, unsigned flags);
FEL_pointer<FEL_mesh> FEL_flowviz_read_mesh(const std::string& path, unsigned info);
