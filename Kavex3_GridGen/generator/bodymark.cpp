// Body-cell marking: the walk over the bodies, and cuboid bodies.
#include "generator/bodymark.h"

#include "generator/bodycells.h"
#include "generator/cutbody.h"

void mark_cuboid_body_cells(const Body* body, BodyMarkWork* w) {
    const double b = bdy_block_fraction(body, gd_options.cuboidBlockFraction);
    set_bdy_extent(w, body);
    for (int a = 0; a < 3; ++a) {
        if (!trim_bdy_extent(w, body, a, b)) return;
    }
    const int* first = w->bdystrt;
    const int* last = w->bdyend;
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
        if (is_cut_planes_type(body->type)) {
            mark_cut_planes_body_cells(body, &w);
        } else if (body->type == BDY_CUBOID) {
            mark_cuboid_body_cells(body, &w);
        }
    }
}
