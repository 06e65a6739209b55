// Layers: runs of cells added before and after each generated line, read from the layer file.
#pragma once

#include <cstdio>

#include "gdrecords.h"

void rd_gen_layer_gds(FILE* stream);
void wr_Bef_Aft_layer_gds(FILE* stream);
