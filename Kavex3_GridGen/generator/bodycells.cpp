// Storage of the blocked body cells: appending, index shifting, boundary blocking and listings.
#include "generator/bodycells.h"

#include <cstdlib>
#include <cstring>

#include "generator/gdrecords.h"

namespace {

constexpr int kBodyCellsGrowth = 1000;

// Formats v in decimal ("%d") at p; returns the end.
char* put_int(char* p, int v) {
    if (v < 0) {
        *p++ = '-';
        v = -v;
    }
    char digits[12];
    int n = 0;
    do {
        digits[n++] = static_cast<char>('0' + v % 10);
        v /= 10;
    } while (v);
    while (n) *p++ = digits[--n];
    return p;
}

// Writes every cell as prefix I sep J sep K suffix, each index plus its offset. The listings can
// hold millions of lines, so they are formatted by hand into a buffer instead of one printf each.
void write_cells(FILE* stream, const int offset[3], const char* prefix, const char* suffix) {
    char buf[8192];
    const size_t lenPre = std::strlen(prefix), lenSuf = std::strlen(suffix);
    char* p = buf;
    for (long long c = 0; c < nBodyCells; ++c) {
        if (p - buf > static_cast<long>(sizeof buf) - 64) {
            std::fwrite(buf, 1, p - buf, stream);
            p = buf;
        }
        std::memcpy(p, prefix, lenPre);
        p += lenPre;
        for (int a = 0; a < 3; ++a) {
            if (a) {
                *p++ = ',';
                *p++ = ' ';
            }
            p = put_int(p, bodyCells[a][c] + offset[a]);
        }
        std::memcpy(p, suffix, lenSuf);
        p += lenSuf;
    }
    std::fwrite(buf, 1, p - buf, stream);
}

}  // namespace

// The capacity is always the count rounded up to the next step, so the arrays grow exactly when
// the count reaches a multiple of the step, and no capacity is kept apart from the count.
void mark_body_cell(int axis0, int index0, int axis1, int index1, int axis2, int index2) {
    if (nBodyCells % kBodyCellsGrowth == 0) {
        const size_t bytes = sizeof(int16_t) * size_t(nBodyCells + kBodyCellsGrowth);
        for (int a = 0; a < 3; ++a) {
            void* grown = std::realloc(bodyCells[a], bytes);
            if (!grown) {
                std::perror("realloc");
                std::exit(1);
            }
            bodyCells[a] = static_cast<int16_t*>(grown);
        }
    }
    bodyCells[axis0][nBodyCells] = static_cast<int16_t>(index0);
    bodyCells[axis1][nBodyCells] = static_cast<int16_t>(index1);
    bodyCells[axis2][nBodyCells] = static_cast<int16_t>(index2);
    if (gd_options.debugLevel > 9) {
        std::fprintf(gd_options.debugStream, "[%d, %d, %d]\n", bodyCells[0][nBodyCells],
                     bodyCells[1][nBodyCells], bodyCells[2][nBodyCells]);
    }
    ++nBodyCells;
}

void translate_body_cells(const int16_t shift[3]) {
    for (int a = 0; a < 3; ++a) {
        int16_t* cells = bodyCells[a];
        for (long long c = 0; c < nBodyCells; ++c)
            cells[c] = static_cast<int16_t>(cells[c] + shift[a]);
    }
}

void mark_body_blocking_zero_width_cells(int NI, int NJ, int NK) {
    const int last[3] = {NI - 3, NJ - 3, NK - 3};
    for (int a = 0; a < 3; ++a) {
        const long long n = nBodyCells;  // cells added in this pass are not looked at again in it
        for (long long c = 0; c < n; ++c) {
            int idx[3] = {bodyCells[0][c], bodyCells[1][c], bodyCells[2][c]};
            const int at = idx[a];
            if (at == 1) {
                idx[a] = 0;
                mark_body_cell(0, idx[0], 1, idx[1], 2, idx[2]);
            }
            if (at == last[a]) {
                idx[a] = last[a] + 1;
                mark_body_cell(0, idx[0], 1, idx[1], 2, idx[2]);
            }
        }
    }
}

void wr_bodyblocks_input_for_solver(FILE* stream) {
    std::fprintf(stream,
                 "#\n# Num. of Body Cells:\n%lld\n# Body Cells ({I-index, J-index, K-index} of the "
                 "cells)\n",
                 nBodyCells);
    const int solverBase[3] = {1, 1, 1};
    write_cells(stream, solverBase, "", "\n");
}

void dbgpr_body_cells(FILE* stream, int di, int dj, int dk, const char* title) {
    std::fprintf(stream, "\n%s\nNum. of Body Cells: %lld\n", title, nBodyCells);
    const int offset[3] = {di, dj, dk};
    write_cells(stream, offset, "[", "]\n");
}
