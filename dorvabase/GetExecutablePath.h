// Finding a program on disk the way a shell would.
#pragma once

#include <string>

#include "FilePath.h"

namespace Dorva {

// A name holding "/" is taken as a path; any other name is looked up in the directories of PATH,
// in order (an empty entry is the working directory). The first regular, executable file wins.
// Returns an uninitialised FilePath when nothing is found.
FilePath GetExecutablePath(const std::string& name);

}  // namespace Dorva
