// Which cells of a rectilinear set of boxes a triangle can touch: its bounding box, widened by a
// margin that the rounding of PartialBoundingBoxTest can never cross, against ascending corners.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "intersector/Triangle.h"

// Corner values of one axis, ascending; cell c lies between corners c and c + 1.
struct CellBounds {
    std::vector<float> m_vecCorner;
};

struct IndexRange {
    int m_intFirst;
    int m_intLast;
};

// The largest magnitude among the corners.
inline double BoundsScale(const CellBounds bounds[3]) {
    double s = 0.0;
    for (int a = 0; a < 3; ++a)
        for (float v : bounds[a].m_vecCorner) s = std::max(s, std::fabs(double(v)));
    return s;
}

// Cells c on each axis whose [corner c, corner c + 1] meets the triangle's box widened by
// 1e-9 * (largest magnitude of the triangle and the corners). PartialBoundingBoxTest rejects a
// triangle lying wholly beyond a face plane whenever the gap exceeds a few units of rounding of
// those magnitudes, so every cell that accepts the triangle is in the ranges. A triangle with a
// coordinate that is not finite gets every cell. False when a range is empty.
inline bool TriangleRanges(const Triangle& t, double scale, const CellBounds bounds[3],
                           IndexRange range[3]) {
    const double* v = t.m_adblVertices;
    double lo[3], hi[3], size = 0.0;
    bool wild = false;
    for (int a = 0; a < 3; ++a) {
        lo[a] = std::min(v[a], std::min(v[3 + a], v[6 + a]));
        hi[a] = std::max(v[a], std::max(v[3 + a], v[6 + a]));
        for (int n = 0; n < 3; ++n) wild |= !std::isfinite(v[3 * n + a]);
        size = std::max(size, std::max(std::fabs(lo[a]), std::fabs(hi[a])));
    }
    double margin = 1e-9 * (size + scale);
    for (int a = 0; a < 3; ++a) {
        const std::vector<float>& c = bounds[a].m_vecCorner;
        int cells = int(c.size()) - 1;
        if (wild) {
            range[a] = {0, cells - 1};
        } else {
            double from = lo[a] - margin, to = hi[a] + margin;
            int first = int(std::lower_bound(c.begin() + 1, c.end(), from,
                                             [](float x, double y) { return double(x) < y; }) -
                            (c.begin() + 1));
            int last = int(std::upper_bound(c.begin(), c.end() - 1, to,
                                            [](double y, float x) { return y < double(x); }) -
                           c.begin()) -
                       1;
            range[a] = {first, std::min(last, cells - 1)};
        }
        if (range[a].m_intFirst > range[a].m_intLast) return false;
    }
    return true;
}
