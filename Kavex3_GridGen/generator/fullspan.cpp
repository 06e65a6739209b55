// Full-span mirroring of the generated lines and of the bodies about a plane.
#include "generator/fullspan.h"

#include <cstdlib>
#include <cstring>
#include <functional>

#include "generator/bodies.h"
#include "generator/gdutil.h"
#include "generator/symmetry.h"

namespace {

template <typename T>
T* copy_array(const T* src, int count) {
    if (!src || count <= 0) return nullptr;
    T* dst = static_cast<T*>(std::malloc(sizeof(T) * count));
    if (!dst) perrorNexit("malloc");
    std::memcpy(dst, src, sizeof(T) * count);
    return dst;
}

void mirror_cut_coord(Body* body, double plane, int q) {
    for (int c = 0; c < body->nCuts; ++c) {
        BodyCut& cut = body->cuts[c];
        int& lo = q == 0 ? cut.minQ1 : cut.minQ2;
        int& hi = q == 0 ? cut.maxQ1 : cut.maxQ2;
        const int t = lo;
        lo = hi;
        hi = t;
        for (int p = 0; p < cut.nPts; ++p) cut.pts[p][q] = 2 * plane - cut.pts[p][q];
    }
}

}  // namespace

void mirror_plane_at_pts(Body* body, double plane) {
    for (int c = 0; c < body->nCuts; ++c) body->cuts[c].posn = 2 * plane - body->cuts[c].posn;
}

void mirror_coord1(Body* body, double plane) {
    mirror_cut_coord(body, plane, 0);
}

void mirror_coord2(Body* body, double plane) {
    mirror_cut_coord(body, plane, 1);
}

Body* mk_mirrored_body(const Body* body, double plane, int axis) {
    const std::less<const Body*> before;
    const bool inTable = !before(body, allBdys) && before(body, allBdys + numBdys);
    const long index = inTable ? body - allBdys : -1;
    Body* copy = new_body_struct();
    const Body* src = inTable ? allBdys + index : body;

    *copy = *src;
    copy->cuts = copy_array(src->cuts, src->nCuts);
    for (int c = 0; c < copy->nCuts; ++c) {
        copy->cuts[c].pts = copy_array(src->cuts[c].pts, src->cuts[c].nPts);
    }
    copy->cuboid = copy_array(src->cuboid, 6);
    copy->rotor = copy_array(src->rotor, 1);

    const int type = copy->type;
    if (is_cut_planes_type(type)) {
        int q1, q2;
        cut_pair_axes(type, &q1, &q2);
        if (axis == type) {
            mirror_plane_at_pts(copy, plane);
        } else if (axis == q1) {
            mirror_coord1(copy, plane);
        } else {
            mirror_coord2(copy, plane);
        }
    } else if (type == BDY_CUBOID && copy->cuboid) {
        copy->cuboid[axis] = 2 * plane - copy->cuboid[axis];
        copy->cuboid[3 + axis] = 2 * plane - copy->cuboid[3 + axis];
    } else if (is_rotor_type(type) && copy->rotor) {
        copy->rotor->center[axis] = 2 * plane - copy->rotor->center[axis];
    }
    const double oldMin = copy->bdyMin[axis];
    copy->bdyMin[axis] = 2 * plane - copy->bdyMax[axis];
    copy->bdyMax[axis] = 2 * plane - oldMin;
    return copy;
}

void full_span_mirror_grid(GridLine* line) {
    const double p = line->fullSpanAbout;
    const double tol = gd_options.gridTol;
    if (p < line->allBdysMin + tol) {
        discard_grids_below(line);
        const int n = line->nGdpts;
        if (n == 0) return;  // nothing left to mirror
        const int m = line->gdpts[0] - tol > p ? 2 * n : 2 * n - 1;
        double* pts = static_cast<double*>(std::realloc(line->gdpts, sizeof(double) * m));
        if (!pts) perrorNexit("realloc");
        std::memmove(pts + (m - n), pts, sizeof(double) * n);
        for (int i = 0; i < m - n; ++i) pts[i] = 2 * p - pts[m - 1 - i];
        line->gdpts = pts;
        line->nGdpts = m;
    } else if (p > line->allBdysMax - tol) {
        discard_grids_after(line, p);
    } else {
        std::fputs("\nERROR: can not do fullspan about a pt. inside bodies range\n", stderr);
        std::exit(1);
    }
}

void full_span_grids_and_bodies() {
    GridLine* lines[3] = {&Xgdln, &Ygdln, &Zgdln};
    for (GridLine* line : lines) {
        if (line->fullSpanAbout == UNSET_DBL) continue;
        full_span_mirror_grid(line);
        const int present = numBdys;
        for (int b = 0; b < present; ++b) {
            Body* copy = mk_mirrored_body(&allBdys[b], line->fullSpanAbout, line->type);
            copy->mirrorAxis = line->type;
            copy->usedInSolver = copy->fullSpanUsedInSolver;
        }
    }
}
