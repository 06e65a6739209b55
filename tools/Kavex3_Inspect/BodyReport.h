// The body report: per body, the triangles, open and non-manifold edges, whether it is closed,
// the cells its box covers, and for an open body where its first open edges lie.
#pragma once

#include <ostream>

#include "InspectRun.h"

struct BodyLeak;

// Edge counts of a surface, over its merged vertices: an open edge has one triangle, a
// non-manifold edge more than two; parts are sets of triangles joined through shared edges.
struct SurfaceTopology {
    long intOpenEdges = 0;
    long intNonManifoldEdges = 0;
    long intParts = 0;
    std::vector<std::array<int, 2>> vecOpenEdges;  // vertex pairs, in the order first met
};
SurfaceTopology TopologyOfSurface(const InspectSurface& surface);

// The full report (to the report file) and a line per body (to the terminal), with each body's
// leak check.
void WriteBodyReport(const InspectRun& run, const std::vector<BodyLeak>& vecLeaks,
                     std::ostream& osReport, std::ostream& osSummary);
