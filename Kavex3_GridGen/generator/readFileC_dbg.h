// Debug dump of the three grid lines as read from the specification text.
#pragma once

#include <cstdio>

#include "generator/gdrecords.h"

void dbgpr_gridLines_info2(FILE* stream, const char* title);
void dbgpr_gridline(FILE* stream, const GridLine* line);
