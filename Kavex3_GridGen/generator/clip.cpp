// Sutherland-Hodgman clipping of polygons against axis-aligned lines, and their area.
#include "generator/clip.h"

#include <cmath>
#include <cstdlib>

#include "generator/gdutil.h"

namespace {
constexpr int kClipGrowth = 10;
}

void reserve_clip_polygon(ClipPolygon* poly, int n) {
    if (n <= poly->capacity) return;
    int capacity = poly->capacity;
    while (capacity < n) capacity += kClipGrowth;
    double* x = static_cast<double*>(std::realloc(poly->x, sizeof(double) * capacity));
    if (!x) perrorNexit("realloc");
    poly->x = x;
    double* y = static_cast<double*>(std::realloc(poly->y, sizeof(double) * capacity));
    if (!y) perrorNexit("realloc");
    poly->y = y;
    poly->capacity = capacity;
}

void append_clip_point(ClipPolygon* poly, double x, double y) {
    if (poly->count == poly->capacity) reserve_clip_polygon(poly, poly->count + 1);
    poly->x[poly->count] = x;
    poly->y[poly->count] = y;
    ++poly->count;
}

void clip_polygon_with_axis_aligned_line(const ClipPolygon* in, int coord, double value,
                                         int keepBelow, ClipPolygon* out) {
    out->count = 0;
    if (in->count < 2) return;
    const double* c = coord == 0 ? in->x : in->y;  // the clipped coordinate
    const double* o = coord == 0 ? in->y : in->x;  // the other one
    auto inside = [&](int i) { return keepBelow ? c[i] < value : c[i] > value; };

    bool prevIn = inside(0);
    for (int i = 1; i < in->count; ++i) {
        const bool curIn = inside(i);
        if (curIn != prevIn) {
            const double a = c[i - 1], b = c[i], a2 = o[i - 1], b2 = o[i];
            const double cross = (value - a) * (b2 - a2) / (b - a) + a2;
            if (coord == 0) {
                append_clip_point(out, value, cross);
            } else {
                append_clip_point(out, cross, value);
            }
        }
        if (curIn) append_clip_point(out, in->x[i], in->y[i]);
        prevIn = curIn;
    }
    if (out->count > 0) append_clip_point(out, out->x[0], out->y[0]);
}

double clip_polygon_area(const ClipPolygon* poly) {
    if (poly->count < 2) return 0.0;
    const double* x = poly->x;
    const double* y = poly->y;
    double sum = 0.0;
    for (int m = 0; m + 1 < poly->count; ++m) sum += x[m] * y[m + 1] - x[m + 1] * y[m];
    return std::fabs(sum * 0.5);
}
