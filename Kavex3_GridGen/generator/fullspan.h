// Full-span mirroring: lines extended by their mirror image and bodies copied about a plane.
#pragma once

#include "generator/gdrecords.h"

// For X, Y, Z: each line whose fullSpanAbout is set is mirrored, and every body present when the
// axis began gets a mirrored copy (so copies made for X are copied again for Y).
void full_span_grids_and_bodies();
// Extends the line by its reflection about fullSpanAbout when the plane lies below all bodies, or
// cuts it at the plane when it lies above them; a plane inside the bodies ends the process.
void full_span_mirror_grid(GridLine* line);
// Appends a deep copy of body reflected about the plane on axis; returns the copy. body may point
// into allBdys: it is found again after the table grows.
Body* mk_mirrored_body(const Body* body, double plane, int axis);
// Reflect a cut body's plane positions, its q1 coordinates or its q2 coordinates about plane.
void mirror_plane_at_pts(Body* body, double plane);
void mirror_coord1(Body* body, double plane);
void mirror_coord2(Body* body, double plane);
