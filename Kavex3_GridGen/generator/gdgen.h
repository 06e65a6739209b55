// Line grid generation: one GridLine's specs and pre-fixed points into ascending grid points.
#pragma once

#include "generator/gdrecords.h"

void gen_line_grid(GridLine* line);
