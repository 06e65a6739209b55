// Layers: runs of cells added before and after each generated line, read from the layer file.
#pragma once

#include <cstdio>

#include "generator/gdrecords.h"

// Reads the six lists (X, Y, Z before the body, then after it) and turns each into cell widths.
// A read fault or a negative count ends the process with status 1.
void rd_gen_layer_gds(FILE* stream);
// Reads one list into record->nLayers; returns the layers, or null for none.
Layer* read_layer_spec(FILE* stream, LayerGrids* record);
// Fills record->widths: single layers on their own, chains as one continuous graded run.
void gen_connected_layers_cellwidths(LayerGrids* record);
void init_Bef_Aft_layer_gds();
void wr_Bef_Aft_layer_gds(FILE* stream);
void wr_layer_info(FILE* stream, const LayerGrids* record, const char* title);
