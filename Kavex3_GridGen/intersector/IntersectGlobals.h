// Process-wide state of the intersector shared by its stages: grid dimensions, the debug switch
// and the run options.
#pragma once

#include "FEL_vector3.h"

// Cells along i, j, k: the grid's point counts less 1.
extern FEL_vector3<int> g_v3iGridDimensions;
// Debug lines on standard output and the dumps "completeTris.dat" and "trisglobal.dat".
extern bool g_blnDebug;

// How the intersector runs; no setting changes a result.
struct IntersectOptions {
    // Worker threads for the witness search and the cell decisions; 0 takes the machine's cores.
    int m_intThreads = 0;
    // The literal procedure: linear first-witness search in walk order, sub-grid floods. Slow;
    // kept as the reference the fast path is checked against.
    bool m_blnPlain = false;
};
extern IntersectOptions g_intersectOptions;

// The thread count that the options ask for.
int IntersectThreads();
