// The run's final output: the scan of the classified cells, the blanked grid and the rewrite of
// the solver input file with the blocked cells.
#pragma once

#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "driver/DriverContext.h"
#include "intersector/BodyStruct.h"

// The grid file's offsets, as the line generator returned them.
struct GridOffsets {
    double dblX = 0.0, dblY = 0.0, dblZ = 0.0;
};

// Decides every cell of run's cells that has triangles or is marked intersected, and returns
// the body cells, one-based, in the scan's order: i falling, then j, then k.
std::vector<FEL_vector3<int>> ScanBodyCells(IntersectContext& run);

// The cells listed behind "# Num. of Body Cells:" of a solver input file, one-based, in the scan's
// order (i falling, then j, then k), without duplicates. None when the file or the list is missing.
std::vector<FEL_vector3<int>> ReadSolverBodyCells(const std::string& solverInputFile);

// Union of two lists in the scan's order, without duplicates.
std::vector<FEL_vector3<int>> MergeBodyCells(const std::vector<FEL_vector3<int>>& a,
                                             const std::vector<FEL_vector3<int>>& b);

// Stages 10 and 11: copies the solver input file up to its "# Num. of Body Cells:" line into
// run.m_strTempDir + "/temp.ClWdths", writes the count of the body cells (those of the scan, with
// extraCells added), rewrites gridFile through OutputIBlankedGrid, writes the cells i rising, then
// j, then k, drops the old list up to the line "# Number of Rotors:", copies the rest and moves
// the work file over the solver input file. Progress goes to standard output.
void WriteFinalOutput(DriverContext& run, const std::string& solverInputFile,
                      const std::string& gridFile, FEL_pointer<FEL_mesh> grid,
                      const GridOffsets& offsets, const std::vector<FEL_vector3<int>>& extraCells);

// For a project that mixes cut bodies with surface bodies: rewrites the "used in solver:" line of
// every surface body in the generator's copy of the project (tempGrid, at path tempGridPath) to
// "False", so that the generator marks cells for the cut bodies only; the surface bodies' cells
// come from the intersection. The line generator sees the surface bodies as their boxes.
void HideSurfaceBodiesFromMarking(const std::string& tempGridPath,
                                  const std::vector<_BodyStruct>& bodies);
