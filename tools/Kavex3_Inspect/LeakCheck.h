// Leak check: whether the run's fill of the exterior got inside each body, and by which way.
#pragma once

#include <array>
#include <vector>

#include "InspectRun.h"

// Edge counts of a surface, over its merged vertices: an open edge has one triangle, a
// non-manifold edge more than two; parts are sets of triangles joined through shared edges.
struct SurfaceTopology {
    long intOpenEdges = 0;
    long intNonManifoldEdges = 0;
    long intParts = 0;
    std::vector<std::array<int, 2>> vecOpenEdges;  // vertex pairs, in the order first met
};
SurfaceTopology TopologyOfSurface(const InspectSurface& surface);

enum class BodyStatus { Closed, Sealed, Leaked, Vanished, Unused };

// One body as the run used it. Leaked cells lie inside the body by its winding number (at least
// 1/2) but were left unblocked; they are looked for only when the run's surface is open.
struct BodyLeak {
    BodyStatus eStatus = BodyStatus::Closed;
    long intDropped = 0;                        // triangles the run's triangulation dropped
    SurfaceTopology topoRun;                    // over the triangles the run kept
    std::vector<std::array<int, 3>> vecLeaked;  // 0-based cells, I fastest
    // A shortest chain of unblocked cells from the grid's boundary to a leaked cell, across faces,
    // and the open edges (vertex pairs) nearest to where its last step enters the body.
    std::vector<std::array<int, 3>> vecPath;
    std::vector<std::array<int, 2>> vecHoleEdges;
};

std::vector<BodyLeak> CheckLeaks(const InspectRun& run);

// The cells of the body's box (clipped to the grid) that lie inside the kept surface and are
// unblocked, as 0-based indices I fastest. Triangle-free blocks of cells whose corner cells all
// agree clearly are settled whole; blnEveryCell evaluates each cell instead (for comparison).
std::vector<std::array<int, 3>> LeakedCells(const InspectRun& run, const InspectSurface& surface,
                                            const std::vector<char>& vecBlocked,
                                            bool blnEveryCell = false);

// Flags per cell, I fastest, of the run's blocked cells.
std::vector<char> BlockedFlags(const InspectRun& run);

// "closed", "open, sealed", "open, leaked (N cells)", "vanished" or "not used in the solver".
std::string StatusText(const BodyLeak& leak);
