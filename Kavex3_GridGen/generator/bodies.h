// The line generator's bodies: the body table, cut-points files, boxes, scaling and translation.
#pragma once

#include <cstdio>

#include "generator/gdrecords.h"

// Appends a body with its defaults; the table may move, so earlier Body pointers are invalid after.
Body* new_body_struct();
Rotor* init_rotor(Rotor* rotor);
// Finishes all bodies at the end of the Bodies section: reads points, translates, scales, boxes.
void bodies_lex_input_done();
// First body with exactly this name; null if none (or ends the process if mustExist is non-zero).
Body* body_from_name(const char* name, int mustExist);
// The body's extent on axis into low and high; a null body leaves both alone.
void bdy_low_high(const Body* body, int axis, double* low, double* high);
void set_all_bodies_min_max(double* xMin, double* xMax, double* yMin, double* yMax, double* zMin,
                            double* zMax);
// Adds t to every body's data and box, full-span copies included.
void trAllBdyPts(const double t[3]);
void dbgpr_body_info(FILE* stream, const Body* bodies, int count, const char* title);
// Reads a points file: " %d %d" (cuts, points per cut), then per cut " %lf" and the (q1, q2)
// pairs; '#' comments may stand before any number. Unreadable input ends the process.
void read_body_cuts_pts(Body* body, FILE* stream);
// Adds origin to the body's data unless all three components are 0.0.
void tr_origBdypts_if_needed(Body* body);
// Multiplies the body's data by the factors (rotor radius by f[0], absolute thickness by f[2]).
void scale_origBdypts(Body* body, const double factors[3]);
