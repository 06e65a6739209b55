// Full-span mirroring: lines extended by their mirror image and bodies copied about a plane.
#pragma once

#include "gdrecords.h"

void full_span_grids_and_bodies();
void full_span_mirror_grid(GridLine* line);
Body* mk_mirrored_body(const Body* body, double plane, int axis);
