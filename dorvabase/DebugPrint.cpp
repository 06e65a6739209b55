// Diagnostics of the base library, shown according to the "debug" command-line parameter.
#include "DebugPrint.h"

#include <iostream>

#include "CommandLine.h"

namespace Dorva {

std::string strDebugIndentLevel;

static bool s_blnPrintLevelKnown = false;
static int s_intPrintLevel = 0;

void ForgetDebugPrintLevel() {
    s_blnPrintLevelKnown = false;
}

void PrintErrorDebugHelper(int level, const std::string& text) {
    if (!s_blnPrintLevelKnown && CommandLine::Initialized()) {
        s_intPrintLevel = 0;
        // The lookup of "debug" reports nothing itself, so this can't recurse.
        CommandLine::GetArgument("debug", s_intPrintLevel);
        s_blnPrintLevelKnown = true;
    }
    if (level > s_intPrintLevel) return;
    if (level > 3) std::cerr << strDebugIndentLevel;
    std::cerr << text << std::endl;
}

}  // namespace Dorva
