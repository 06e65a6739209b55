// Diagnostics of the base library, shown according to the "debug" command-line parameter.
#include "DebugPrint.h"

#include <iostream>

namespace Dorva {

std::string strDebugIndentLevel;

static int s_intPrintLevel = 0;

void SetDebugPrintLevel(int level) {
    s_intPrintLevel = level;
}

void PrintErrorDebugHelper(int level, const std::string& text) {
    if (level > s_intPrintLevel) return;
    if (level > 3) std::cerr << strDebugIndentLevel;
    std::cerr << text << std::endl;
}

}  // namespace Dorva
