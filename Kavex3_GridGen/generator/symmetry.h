// Generation of the three lines: common symmetric patterns and the discard limits.
#pragma once

#include "generator/gdrecords.h"

// The three lines in turn, or one common pattern for the lines sharing a symmetry plane;
// the discard limits are made grid points first and applied last.
void genXYZgdsFromSpecs(GridLine* x, GridLine* y, GridLine* z);
// Appends a line with commonSymm to the common record, shifted onto the common symmetry plane.
void update_common_symmetry_gridline(const GridLine* line, GridLine* common);
void discard_grids_below(GridLine* line);
void discard_grids_after(GridLine* line, double limit);
