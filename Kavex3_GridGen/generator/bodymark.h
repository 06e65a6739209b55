// Working values and steps of body-cell marking, shared by the marking sources and their tests.
#pragma once

#include "generator/clip.h"
#include "generator/gdrecords.h"

// Set for the body in hand by mark_all_body_cells and set_bdy_strt_end_indices.
extern double* GDpts[3];   // per axis, the line's gdpts
extern int Ngdpts[3];      // per axis, the line's nGdpts
extern int bdystrt[3];     // per axis, first cell of the body's extent
extern int bdyend[3];      // per axis, last cell of the body's extent
extern int CtA, Q1A, Q2A;  // cut axis, and the axes of the q1 and q2 coordinates
extern double CtMin, CtMax, Q1Min, Q1Max, Q2Min, Q2Max;

// Cross-section at the slab's middle and the two clipping scratch records, kept across bodies.
extern ClipPolygon intrpltd_cut;
extern ClipPolygon clip_scratch[2];

// box: a body's bdyMin then bdyMax. Sets bdystrt and bdyend from GDpts and Ngdpts.
void set_bdy_strt_end_indices(const double box[6]);
// Mark the cells a cut-plane body (types 0 to 2) or a cuboid (type 3) blocks; GDpts must be set.
void mark_cut_planes_body_cells(const Body* body);
void mark_cuboid_body_cells(const Body* body);
