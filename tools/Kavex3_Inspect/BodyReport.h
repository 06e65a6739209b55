// The body report: per body, the triangles, open and non-manifold edges, whether the run's fill
// got inside it, the cells its box covers, and for a leaked body the way in and the hole.
#pragma once

#include <ostream>

#include "InspectRun.h"
#include "LeakCheck.h"

// The full report (to the report file) and a line per body (to the terminal), with each body's
// leak check.
void WriteBodyReport(const InspectRun& run, const std::vector<BodyLeak>& vecLeaks,
                     std::ostream& osReport, std::ostream& osSummary);
