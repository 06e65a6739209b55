// The driver's pass over a .Grid project: its bodies, its solver file and the rewritten copy.
#pragma once

#include <array>
#include <fstream>
#include <string>
#include <vector>

#include "BodyStruct.h"

// Copies gridFile line by line to tempGrid (each line flushed, since the generator reads that file
// while it is open), rewriting every body's type line to X cut planes and its points line to the
// body's cut file g_strTempDir + "//N-x.cut". Fills solverInputFile, the components of
// conversionFactor that its line gives, g_blnDebug and bodies; appends the cut files to
// g_vecstrTempFiles. Returns true on failure, which no path does: an unreadable project gives
// no bodies, a body cut short ends the reading silently.
bool ReadGridFile(std::string gridFile, std::string& solverInputFile, std::ofstream& tempGrid,
                  std::array<float, 3>& conversionFactor, std::vector<_BodyStruct>& bodies);
