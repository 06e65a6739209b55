// Body-cell marking: the walk over the bodies, and cuboid bodies.
#include "generator/bodymark.h"

#include "generator/bodycells.h"
#include "generator/cutbody.h"

void mark_cuboid_body_cells(const Body* body, BodyMarkWork* w) {
    const double b =
        body->blockFraction == UNSET_DBL ? gd_options.cuboidBlockFraction : body->blockFraction;
    double box[6];
    for (int a = 0; a < 3; ++a) {
        box[a] = body->bdyMin[a];
        box[3 + a] = body->bdyMax[a];
    }
    set_bdy_strt_end_indices(w, box);
    int first[3], last[3];
    for (int a = 0; a < 3; ++a) {
        const double* g = w->GDpts[a];
        const int s = w->bdystrt[a], e = w->bdyend[a];
        first[a] = s;
        last[a] = e;
        if (s == e) continue;  // a single cell stays, whatever its coverage
        if (!((g[s + 1] - body->bdyMin[a]) / (g[s + 1] - g[s]) > b)) first[a] = s + 1;
        if (!((body->bdyMax[a] - g[e]) / (g[e + 1] - g[e]) > b)) last[a] = e - 1;
    }
    for (int i = first[0]; i <= last[0]; ++i) {
        for (int j = first[1]; j <= last[1]; ++j) {
            for (int k = first[2]; k <= last[2]; ++k) mark_body_cell(0, i, 1, j, 2, k);
        }
    }
}

void mark_all_body_cells() {
    const GridLine* lines[3] = {&Xgdln, &Ygdln, &Zgdln};
    BodyMarkWork w;
    for (int a = 0; a < 3; ++a) {
        w.GDpts[a] = lines[a]->gdpts;
        w.Ngdpts[a] = lines[a]->nGdpts;
        // A line without a cell leaves nothing to block.
        if (w.Ngdpts[a] < 2) return;
    }
    for (int n = 0; n < numBdys; ++n) {
        const Body* body = &allBdys[n];
        if (body->usedInSolver == 0) continue;
        if (gd_options.debugLevel > 9) {
            std::fprintf(gd_options.debugStream, "\nMarking Body Cells for: %s\n", body->name);
        }
        if (body->type >= 0 && body->type <= 2) {
            mark_cut_planes_body_cells(body, &w);
        } else if (body->type == 3) {
            mark_cuboid_body_cells(body, &w);
        }
    }
}
