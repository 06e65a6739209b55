// The driver's pass over a .Grid project: its bodies, its solver file and the rewritten copy.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "FEL_vector3.h"
#include "intersector/BodyStruct.h"

// Copies gridFile line by line to tempGrid (each line flushed, since the generator reads that file
// while it is open), rewriting every body's type line to X cut planes and its points line to the
// body's cut file g_strTempDir + "//N-x.cut". Fills solverInputFile, the components of
// conversionFactor that its line gives, g_blnDebug and bodies; appends the cut files to
// g_vecstrTempFiles. Returns true on failure, which no path does: an unreadable project gives
// no bodies, a body cut short ends the reading silently.
bool ReadGridFile(std::string gridFile, std::string& solverInputFile, std::ostream& tempGrid,
                  FEL_vector3<float>& conversionFactor, std::vector<_BodyStruct>& bodies);

// Reads the mesh file of every surface body (STL or Plot3D) into its pMesh; cut bodies keep null
// meshes. A name holding ".p3d" or ".stl" is first tried as text unstructured Plot3D, then the
// reader detects the format. An unreadable file throws the mesh library's exception.
void ReadBodies(std::vector<_BodyStruct>& bodies);
