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
