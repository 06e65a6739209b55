// Diagnostics of the base library, shown according to the "debug" command-line parameter.
#pragma once

#include <string>

namespace Dorva {

// Written before the messages of levels above 3, so that deep diagnostics stand indented.
extern std::string strDebugIndentLevel;

// Writes text and a line end to stderr unless level is above the print level. The print level is
// the integer value of the parameter "debug", 0 without it; it is read on the first call after
// CommandLine::SetParameters and kept.
void PrintErrorDebugHelper(int level, const std::string& text);

// Makes the next PrintErrorDebugHelper call read the print level again (SetParameters calls it).
void ForgetDebugPrintLevel();

}  // namespace Dorva
