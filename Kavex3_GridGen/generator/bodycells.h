// Body-cell marking: the cells of the generated lines that bodies block.
#pragma once

#include <cstdint>
#include <cstdio>

void mark_body_cell(int axis0, int index0, int axis1, int index1, int axis2, int index2);
void translate_body_cells(const int16_t shift[3]);
void mark_body_blocking_zero_width_cells(int NI, int NJ, int NK);
void wr_bodyblocks_input_for_solver(FILE* stream);
void dbgpr_body_cells(FILE* stream, int di, int dj, int dk, const char* title);
