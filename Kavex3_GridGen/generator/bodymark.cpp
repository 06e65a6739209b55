// Body-cell marking: the walk over the bodies, the extents in cells, and cuboid bodies.
#include "generator/bodymark.h"

#include "generator/bodycells.h"

double* GDpts[3];
int Ngdpts[3];
int bdystrt[3];
int bdyend[3];
int CtA, Q1A, Q2A;
double CtMin, CtMax, Q1Min, Q1Max, Q2Min, Q2Max;

namespace {

// Cell c of g (n points) with g[c] + off <= v <= g[c+1] + off, searched over cells 1 .. n-3; the
// caller has settled the cases below cell 1 and above cell n-3. When v sits exactly on a bound,
// the higher cell is taken, as the checks for the first cell do.
int find_cell(const double* g, int n, double v, double off) {
    int lo = 1, hi = n - 3;  // answer in [lo, hi]: the last c with g[c] + off <= v
    while (lo < hi) {
        const int mid = lo + (hi - lo + 1) / 2;
        if (g[mid] + off <= v) {
            lo = mid;
        } else {
            hi = mid - 1;
        }
    }
    return lo;
}

}  // namespace

void set_bdy_strt_end_indices(const double box[6]) {
    const double tol = gd_options.cellTol;
    for (int a = 0; a < 3; ++a) {
        const double* g = GDpts[a];
        const int n = Ngdpts[a];
        const double vMin = box[a], vMax = box[3 + a];
        if (g[1] - tol > vMin) {
            bdystrt[a] = 0;
        } else if (vMin > g[n - 2] - tol) {
            bdystrt[a] = n - 2;
        } else {
            bdystrt[a] = find_cell(g, n, vMin, -tol);
        }
        if (g[1] + tol > vMax) {
            bdyend[a] = 0;
        } else if (vMax > g[n - 2] + tol) {
            bdyend[a] = n - 2;
        } else {
            bdyend[a] = find_cell(g, n, vMax, tol);
        }
    }
}

void mark_cuboid_body_cells(const Body* body) {
    const double b =
        body->blockFraction == UNSET_DBL ? gd_options.cuboidBlockFraction : body->blockFraction;
    double box[6];
    for (int a = 0; a < 3; ++a) {
        box[a] = body->bdyMin[a];
        box[3 + a] = body->bdyMax[a];
    }
    set_bdy_strt_end_indices(box);
    int first[3], last[3];
    for (int a = 0; a < 3; ++a) {
        const double* g = GDpts[a];
        const int s = bdystrt[a], e = bdyend[a];
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
    for (int a = 0; a < 3; ++a) {
        GDpts[a] = lines[a]->gdpts;
        Ngdpts[a] = lines[a]->nGdpts;
        // A line without a cell leaves nothing to block.
        if (Ngdpts[a] < 2) return;
    }
    for (int n = 0; n < numBdys; ++n) {
        const Body* body = &allBdys[n];
        if (body->usedInSolver == 0) continue;
        if (gd_options.debugLevel > 9) {
            std::fprintf(gd_options.debugStream, "\nMarking Body Cells for: %s\n", body->name);
        }
        if (body->type >= 0 && body->type <= 2) {
            mark_cut_planes_body_cells(body);
        } else if (body->type == 3) {
            mark_cuboid_body_cells(body);
        }
    }
}
