// Line grid generation: one GridLine's specs and pre-fixed points into ascending grid points.
#pragma once

#include "gdrecords.h"

void gen_line_grid(GridLine* line);
void genXYZgdsFromSpecs(GridLine* x, GridLine* y, GridLine* z);
void discard_grids_below(GridLine* line);
void discard_grids_after(GridLine* line, double limit);
