// A one-zone text Plot3D grid whose nodes lie on three axes, read straight into those axes.
#pragma once

#include <string>

#include "FEL_mesh.h"
#include "FEL_pointer.h"

// The grid that FEL_read_mesh reads from path, held as its three axes, when the file is a text
// Plot3D file of one zone (no zone count, no iblanks) and every
// node lies bit for bit on the axes its first row, column and layer give; the coordinates are
// read on up to threads threads without an array of nodes. Null for any other file or when
// anything fails: the caller then reads the file the ordinary way, which also reports the error.
FEL_pointer<FEL_mesh> FEL_plot3d_read_text_axes(const std::string& path, int threads);
