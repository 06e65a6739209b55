// The working values of body-cell marking for the body in hand: the lines' points and the body's
// extent in cells.
#pragma once

#include "generator/gdrecords.h"

// Filled by mark_all_body_cells and set_bdy_strt_end_indices, read by the marking of each body
// type.
struct BodyMarkWork {
    const double* GDpts[3];  // per axis, the line's gdpts
    int Ngdpts[3];           // per axis, the line's nGdpts
    int bdystrt[3];          // per axis, first cell of the body's extent
    int bdyend[3];           // per axis, last cell of the body's extent
};

// box: a body's bdyMin then bdyMax. Sets w's bdystrt and bdyend from its GDpts and Ngdpts.
void set_bdy_strt_end_indices(BodyMarkWork* w, const double box[6]);

// The body's own blockFraction, or dflt (cutBlockFraction or cuboidBlockFraction) when unset.
double bdy_block_fraction(const Body* body, double dflt);
// set_bdy_strt_end_indices with the body's box.
void set_bdy_extent(BodyMarkWork* w, const Body* body);
// On axis a, drops an end cell of the extent unless the body covers strictly more than b of its
// length; a single cell stays whatever its coverage. False when no cell is left.
bool trim_bdy_extent(BodyMarkWork* w, const Body* body, int a, double b);
