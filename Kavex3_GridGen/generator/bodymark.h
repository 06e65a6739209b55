// Body-cell marking: the walk over the bodies, and cuboid bodies.
#pragma once

#include "generator/bodyextent.h"
#include "generator/gdrecords.h"

// Marks the cells that the bodies used in the solver block, on the generated lines.
void mark_all_body_cells();
// Marks the cells a cuboid (type 3) blocks; w's GDpts and Ngdpts must be set.
void mark_cuboid_body_cells(const Body* body, BodyMarkWork* w);
