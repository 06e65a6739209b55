// Diagnostics of the base library, shown according to the "debug" command-line parameter.
#pragma once

#include <string>

namespace Dorva {

// Written before the messages of levels above 3, so that deep diagnostics stand indented.
extern std::string strDebugIndentLevel;

// Writes text and a line end to stderr unless level is above the print level, 0 at start.
void PrintErrorDebugHelper(int level, const std::string& text);

// CommandLine::SetParameters sets the print level from the parameter "debug" (0 without it).
void SetDebugPrintLevel(int level);

}  // namespace Dorva
