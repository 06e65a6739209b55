// Range checks of the numbers the line generator reads and the sizes it derives from them.
// A value outside the range in which the grid arithmetic is defined ends the run through
// printfErrNexit, with one line naming the file, the field and the value.
#pragma once

#include <cstdio>

#include "generator/gdrecords.h"

// The solver addresses cells with 16-bit indices: an axis holds at most this many cells.
constexpr long long kMaxAxisCells = 32767;
// The mesh library numbers the points of the grid it reads back in 32 bits.
constexpr long long kMaxGridPoints = 2147483647;
// Coordinates, lengths and scale factors: far beyond any grid of the solver, and small enough
// that no sum, difference or product of the grid arithmetic leaves the range of a double.
constexpr double kMaxCoord = 1e15;

// The field is a printf format and its arguments, such as "cut %d position", 3.
// v must be finite with a magnitude of at most kMaxCoord.
void ck_coord(double v, const char* file, const char* field, ...)
    __attribute__((format(printf, 3, 4)));
// v and its reciprocal must be finite (so v is not 0): the arithmetic inverts ratios.
void ck_ratio(double v, const char* file, const char* field, ...)
    __attribute__((format(printf, 3, 4)));
// A count of cells: finite and at most kMaxAxisCells.
void ck_cells(double v, const char* file, const char* field, ...)
    __attribute__((format(printf, 3, 4)));
// v must lie in [lo, hi].
void ck_range(long long v, long long lo, long long hi, const char* file, const char* field, ...)
    __attribute__((format(printf, 5, 6)));

// Reads an integer as " %d" does, saturating at the limits of long long instead of overflowing.
// Returns 1, or 0 when no number stands there.
int rd_int(FILE* stream, long long* v);
// Before allocating for count items of `each` numbers read from a file: the rest of the stream
// must be able to hold them, at least a character and a separator per number.
void ck_fits_in_file(FILE* stream, long long count, long long each, const char* file,
                     const char* field, ...) __attribute__((format(printf, 5, 6)));
// The sum of n graded weights of ratio r must be finite: otherwise the widths are not numbers.
void ck_graded_sum(double sum, double r, long long n, const char* file, const char* field, ...)
    __attribute__((format(printf, 5, 6)));

// Every spec that keeps grids has both ends set.
void ck_gdspcs(const GridLine* line);
// The pieces of a line, before its points are allocated: each piece's count of cells is a number,
// and the line holds at most kMaxAxisCells cells.
void ck_line_cells(const GridLine* line, const BdyGdspc* pieces, int nPieces);
// The final corner points, before anything is written: cells per axis, points of the grid.
void ck_axis_cells(int axis, long long cells);
// The generated lines, before body cells are marked over them; the layers only add points.
void ck_lines_size();
void ck_grid_points(const int n[3]);
