// ParaView files of an inspected run: the grid with its "blocked" cell field, the blocked cells
// as solids, each body's surface, and one multiblock file that opens them all.
#pragma once

#include <string>
#include <vector>

#include "InspectRun.h"
#include "LeakCheck.h"

// Writes into strOutDir, in VTK XML with the data appended raw, zlib-compressed:
//   grid.vtr          rectilinear grid of the corner points, cell field "blocked" (1 or 0)
//   blocked.vtu       the blocked cells as hexahedra, with cell fields "blocked", "I", "J", "K"
//                     (the solver's 1-based indices)
//   body<N>_<stem>.vtu  body N's surface triangles in the grid's frame, cell field "kept" (1 for
//                     a triangle the run's triangulation keeps)
//   body<N>_leaked.vtu, body<N>_leak_path.vtu  for a body the fill got into: its leaked cells, and
//                     the leak path's cells with their "step" from the boundary (1 first)
//   <name>.vtm        multiblock of all of the above
// Returns the names written, the .vtm last; throws InspectError when a file can't be written.
std::vector<std::string> WriteInspectVtk(const InspectRun& run,
                                         const std::vector<BodyLeak>& vecLeaks,
                                         const std::string& strOutDir, const std::string& strName);
