// Text files and tables of the generator run: grid points, solver input, corner-point table.
#pragma once

#include <cstdio>

// Grid-points file: each line's generated points, before layers and translation.
void wr_grid_pts_file(const char* path);
// Solver input: the cell widths of the final corner points, body cells and rotor centres.
void wr_solver_input_file(const char* path);
// Corner-point table of the final points on the debug stream.
void wr_corner_pts_table(FILE* stream);
// One axis's three columns of row i of the corner-point table; n is the axis's point count.
void prPtWidRat(FILE* stream, const double* x, int i, int n);
