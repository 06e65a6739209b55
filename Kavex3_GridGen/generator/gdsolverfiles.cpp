// Text files and tables of the generator run: grid points, solver input, corner-point table.
#include "generator/gdsolverfiles.h"

#include <algorithm>

#include "generator/bodycells.h"
#include "generator/gdoutfile.h"
#include "generator/gdrecords.h"
#include "generator/gdutil.h"

namespace {

void wr_cell_widths(FILE* stream, char axis, const char* count, int a) {
    const int n = Nfinalgdpts[a] - 1;
    std::fprintf(stream, "#\n# %s = Num. of %c-Cell-Widths:\n%d\n# %c-Cell-Widths\n", count, axis,
                 n, axis);
    const double* p = finalgdpts[a];
    for (int i = 1; i <= n; ++i) std::fprintf(stream, "%3d %27.18G\n", i, p[i] - p[i - 1]);
}

bool is_rotor(const Body& body) {
    return is_rotor_type(body.type);
}

}  // namespace

void wr_grid_pts_file(const char* path) {
    FILE* stream = gd_open_output(path);
    const GridLine* lines[3] = {&Xgdln, &Ygdln, &Zgdln};
    for (int a = 0; a < 3; ++a) {
        std::fprintf(stream, "# %c-Grid Points\n%d\n", "XYZ"[a], lines[a] -> nGdpts);
        for (int i = 0; i < lines[a]->nGdpts; ++i)
            std::fprintf(stream, "%27.18G\n", lines[a]->gdpts[i]);
    }
    gd_close_output(stream);
}

void wr_solver_input_file(const char* path) {
    FILE* stream = gd_open_output(path);
    std::fprintf(stream, "# Num. of X, Y & Z Cell-Widths: IE = %d; JE = %d; KE = %d\n",
                 Nfinalgdpts[0] - 1, Nfinalgdpts[1] - 1, Nfinalgdpts[2] - 1);
    wr_cell_widths(stream, 'X', "IE", 0);
    wr_cell_widths(stream, 'Y', "JE", 1);
    wr_cell_widths(stream, 'Z', "KE", 2);
    wr_bodyblocks_input_for_solver(stream);
    int nRotors = 0;
    for (int b = 0; b < numBdys; ++b) nRotors += is_rotor(allBdys[b]);
    std::fprintf(stream, "#\n# Number of Rotors:\n%d\n", nRotors);
    if (nRotors > 0) {
        std::fprintf(stream, "#\n# Rotor Centers (X, Y, Z):\n");
        for (int b = 0; b < numBdys; ++b) {
            if (!is_rotor(allBdys[b])) continue;
            const Rotor* r = allBdys[b].rotor;
            // A rotor body always carries its Rotor; guard the table against one that doesn't.
            const double c[3] = {r ? r->center[0] : UNSET_DBL, r ? r->center[1] : UNSET_DBL,
                                 r ? r->center[2] : UNSET_DBL};
            std::fprintf(stream, "%18.9G, %18.9G, %18.9G\n", c[0], c[1], c[2]);
        }
    }
    gd_close_output(stream);
}

void prPtWidRat(FILE* stream, const double* x, int i, int n) {
    if (i >= n) {
        std::fprintf(stream, " %18s %18s %18s", " ", " ", " ");
    } else if (i == n - 1) {
        std::fprintf(stream, " %18.12G %18.12G %18s", x[i], 0.0, "N/A");
    } else if (i == 0) {
        std::fprintf(stream, " %18.12G %18.12G %18s", x[0], x[1] - x[0], "N/A");
    } else {
        const double w = x[i + 1] - x[i];
        if (w != 0)
            std::fprintf(stream, " %18.12G %18.12G %18.12G", x[i], w, (x[i] - x[i - 1]) / w);
        else
            std::fprintf(stream, " %18.12G %18.12G %18s", x[i], w, "infinity");
    }
}

void wr_corner_pts_table(FILE* stream) {
    std::fprintf(stream, "\nNum. Of I, J, K Corner Points: IE = %d; JE = %d; KE = %d\n",
                 Nfinalgdpts[0], Nfinalgdpts[1], Nfinalgdpts[2]);
    std::fprintf(stream, "\nSeq");
    std::fprintf(stream, " %18s %18s %18s", "X Corner-Pts", "X Widths", "XW[(n-1)/n]");
    std::fprintf(stream, " %18s %18s %18s", "Y Corner-Pts", "Y Widths", "YW[(n-1)/n]");
    std::fprintf(stream, " %18s %18s %18s", "Z Corner-Pts", "Z Widths", "ZW[(n-1)/n]");
    std::fprintf(stream, "\n");
    const int rows = std::max({Nfinalgdpts[0], Nfinalgdpts[1], Nfinalgdpts[2]});
    for (int n = 0; n < rows; ++n) {
        std::fprintf(stream, "%3d", n + 1);
        for (int a = 0; a < 3; ++a) prPtWidRat(stream, finalgdpts[a], n, Nfinalgdpts[a]);
        std::fprintf(stream, "\n");
    }
}
