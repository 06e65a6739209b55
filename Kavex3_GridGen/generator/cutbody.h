// Body-cell marking of cut-plane bodies: cross-sections between cuts clipped against each cell.
#pragma once

#include "generator/bodyextent.h"
#include "generator/clip.h"
#include "generator/gdrecords.h"

// Cross-section at the slab's middle and the two clipping scratch records, kept across bodies.
extern ClipPolygon intrpltd_cut;
extern ClipPolygon clip_scratch[2];

// Marks the cells a cut-plane body (types 0 to 2) blocks; w's GDpts and Ngdpts must be set.
void mark_cut_planes_body_cells(const Body* body, BodyMarkWork* w);
