// The intersector's literal procedure: linear first-witness search in walk order, search grids
// filled cell by cell, and a flood of each touched cell's 4 x 4 x 4 sub-grid. Slow; kept as the
// reference that the fast procedure is checked against.
#pragma once

#include "intersector/IntersectContext.h"

// Set as IntersectOptions::m_pReference to run the literal procedure on one thread.
extern const ReferenceProcedure kPlainProcedure;
