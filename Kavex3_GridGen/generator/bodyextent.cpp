// A body's extent in the cells of the generated lines.
#include "generator/bodyextent.h"

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

void set_bdy_strt_end_indices(BodyMarkWork* w, const double box[6]) {
    const double tol = gd_options.cellTol;
    for (int a = 0; a < 3; ++a) {
        const double* g = w->GDpts[a];
        const int n = w->Ngdpts[a];
        const double vMin = box[a], vMax = box[3 + a];
        if (g[1] - tol > vMin) {
            w->bdystrt[a] = 0;
        } else if (vMin > g[n - 2] - tol) {
            w->bdystrt[a] = n - 2;
        } else {
            w->bdystrt[a] = find_cell(g, n, vMin, -tol);
        }
        if (g[1] + tol > vMax) {
            w->bdyend[a] = 0;
        } else if (vMax > g[n - 2] + tol) {
            w->bdyend[a] = n - 2;
        } else {
            w->bdyend[a] = find_cell(g, n, vMax, tol);
        }
    }
}

double bdy_block_fraction(const Body* body, double dflt) {
    return body->blockFraction == UNSET_DBL ? dflt : body->blockFraction;
}

void set_bdy_extent(BodyMarkWork* w, const Body* body) {
    double box[6];
    for (int a = 0; a < 3; ++a) {
        box[a] = body->bdyMin[a];
        box[3 + a] = body->bdyMax[a];
    }
    set_bdy_strt_end_indices(w, box);
}

bool trim_bdy_extent(BodyMarkWork* w, const Body* body, int a, double b) {
    const double* g = w->GDpts[a];
    const int s = w->bdystrt[a], e = w->bdyend[a];
    if (s == e) return true;
    // Cells of the generated lines have non-zero width, so each coverage is a number.
    if (!((g[s + 1] - body->bdyMin[a]) / (g[s + 1] - g[s]) > b)) w->bdystrt[a] = s + 1;
    if (!((body->bdyMax[a] - g[e]) / (g[e + 1] - g[e]) > b)) w->bdyend[a] = e - 1;
    return w->bdyend[a] >= w->bdystrt[a];
}
