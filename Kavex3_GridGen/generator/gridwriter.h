// Writer of the grid file "KX3.grid.dat": one structured block of corner points in plain text.
#pragma once

#include <cstdio>

// Writes n[0]*n[1]*n[2] X values, then as many Y and Z values, K outermost and I innermost, each
// as " %12.5f", all on one line. Each distinct value is formatted once and then copied.
void wr_grid_values(FILE* stream, const int n[3], const double* const pts[3]);

// The whole grid file: translation (or empty) line, counts, values, and the fixed body-cell tail.
void wr_grid_file(FILE* stream, bool writeTranslation, const double t[3], const int n[3],
                  const double* const pts[3]);
