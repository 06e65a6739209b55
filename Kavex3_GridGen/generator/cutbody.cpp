// Body-cell marking of cut-plane bodies: cross-sections between cuts clipped against each cell.
#include "generator/cutbody.h"

#include <cmath>

#include "generator/bodycells.h"

ClipPolygon intrpltd_cut = {0, 0, nullptr, nullptr};
ClipPolygon clip_scratch[2] = {{0, 0, nullptr, nullptr}, {0, 0, nullptr, nullptr}};

namespace {

// Fills intrpltd_cut with the closed cross-section at mid between the cuts low and high.
void make_cross_section(const BodyCut& low, const BodyCut& high, double mid) {
    const double tol = gd_options.cellTol;
    const int n = low.nPts;
    ClipPolygon* cs = &intrpltd_cut;
    reserve_clip_polygon(cs, n + 1);
    if (std::fabs(low.posn - mid) < tol || std::fabs(high.posn - mid) < tol) {
        const BodyCut& cut = std::fabs(low.posn - mid) < tol ? low : high;
        for (int p = 0; p < n; ++p) {
            cs->x[p] = cut.pts[p][0];
            cs->y[p] = cut.pts[p][1];
        }
    } else {
        const double t = (mid - low.posn) / (high.posn - low.posn);
        for (int p = 0; p < n; ++p) {
            cs->x[p] = (high.pts[p][0] - low.pts[p][0]) * t + low.pts[p][0];
            cs->y[p] = (high.pts[p][1] - low.pts[p][1]) * t + low.pts[p][1];
        }
    }
    cs->count = n;
    if (n == 0) return;
    if (std::fabs(cs->x[0] - cs->x[n - 1]) >= tol || std::fabs(cs->y[0] - cs->y[n - 1]) >= tol) {
        cs->x[n] = cs->x[0];
        cs->y[n] = cs->y[0];
        cs->count = n + 1;
    } else {
        cs->x[n - 1] = cs->x[0];
        cs->y[n - 1] = cs->y[0];
    }
}

// Marks the cells of slab c whose area the cross-section fills by more than b; CtA is the cut axis,
// Q1A and Q2A the axes of the cross-section's two coordinates.
void mark_slab_cells(const BodyMarkWork& w, int CtA, int Q1A, int Q2A, int c, double b) {
    const double* gx = w.GDpts[Q1A];
    const double* gy = w.GDpts[Q2A];
    ClipPolygon* s0 = &clip_scratch[0];
    ClipPolygon* s1 = &clip_scratch[1];
    for (int i = w.bdystrt[Q1A]; i <= w.bdyend[Q1A]; ++i) {
        const double x0 = gx[i], x1 = gx[i + 1];
        for (int j = w.bdystrt[Q2A]; j <= w.bdyend[Q2A]; ++j) {
            const double y0 = gy[j], y1 = gy[j + 1];
            clip_polygon_with_axis_aligned_line(&intrpltd_cut, 1, y1, 1, s0);
            clip_polygon_with_axis_aligned_line(s0, 0, x1, 1, s1);
            clip_polygon_with_axis_aligned_line(s1, 1, y0, 0, s0);
            clip_polygon_with_axis_aligned_line(s0, 0, x0, 0, s1);
            const double area = clip_polygon_area(s1);
            if (area / ((x1 - x0) * (y1 - y0)) > b) mark_body_cell(CtA, c, Q1A, i, Q2A, j);
        }
    }
}

}  // namespace

void mark_cut_planes_body_cells(const Body* body, BodyMarkWork* w) {
    // A body without cuts (no points file) has no cross-section to block with.
    if (body->nCuts < 1 || !body->cuts) return;
    const double b = bdy_block_fraction(body, gd_options.cutBlockFraction);
    const int CtA = body->type;
    int Q1A, Q2A;
    cut_pair_axes(CtA, &Q1A, &Q2A);
    const double CtMin = body->bdyMin[CtA];
    const double CtMax = body->bdyMax[CtA];

    const BodyCut* cuts = body->cuts;
    const int last = body->nCuts - 1;
    const bool ascending = !(cuts[0].posn > cuts[last].posn);
    const int step = ascending ? 1 : -1;
    const int kFirst = ascending ? 0 : last, kLast = ascending ? last : 0;
    int k = kFirst;

    set_bdy_extent(w, body);
    // Only the cut axis is trimmed: on the other two every cell of the box is tried.
    if (!trim_bdy_extent(w, body, CtA, b)) return;
    const int* bdystrt = w->bdystrt;
    const int* bdyend = w->bdyend;
    const double* g = w->GDpts[CtA];

    for (int c = bdystrt[CtA]; c <= bdyend[CtA]; ++c) {
        const double lo = c == bdystrt[CtA] ? CtMin : g[c];
        const double hi = c == bdyend[CtA] ? CtMax : g[c + 1];
        const double mid = (lo + hi) * 0.5;
        while (k != kLast && cuts[k].posn < mid) k += step;
        const BodyCut& high = cuts[k];
        const BodyCut& low = k == kFirst ? high : cuts[k - step];
        make_cross_section(low, high, mid);
        mark_slab_cells(*w, CtA, Q1A, Q2A, c, b);
    }
}
