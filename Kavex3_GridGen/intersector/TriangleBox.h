// Which cells of a rectilinear set of boxes a triangle can touch: its bounding box, widened by a
// margin that the rounding of PartialBoundingBoxTest can never cross, against ascending corners.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "intersector/Triangle.h"

struct IndexRange {
    int m_intFirst;
    int m_intLast;
};

// Finds cell ranges on three axes of ascending corner values (cell c between corners c and
// c + 1). Successive triangles of a surface lie close together, so each search starts where the
// last one ended. One locator per thread; the corners stay the caller's.
class CellLocator {
  public:
    CellLocator(const double* x, int nx, const double* y, int ny, const double* z, int nz) {
        const double* c[3] = {x, y, z};
        const int n[3] = {nx, ny, nz};
        m_dblScale = 0.0;
        for (int a = 0; a < 3; ++a) {
            m_apCorner[a] = c[a];
            m_aintCells[a] = n[a] - 1;
            m_aintHintFirst[a] = m_aintHintLast[a] = 0;
            for (int v = 0; v < n[a]; ++v) m_dblScale = std::max(m_dblScale, std::fabs(c[a][v]));
        }
    }

    // The relative widening of a triangle's box: some four million units of double rounding, far
    // beyond the few that PartialBoundingBoxTest's arithmetic can lose.
    static constexpr double kRelativeMargin = 1e-9;

    // Cells c on each axis whose [corner c, corner c + 1] meets the triangle's box widened by
    // kRelativeMargin * (largest magnitude of the triangle and the corners). PartialBoundingBoxTest
    // rejects a triangle lying wholly beyond a face plane whenever the gap exceeds a few units of
    // rounding of those magnitudes, so every cell that accepts the triangle is in the ranges. A
    // triangle with a coordinate that is not finite gets every cell. False when a range is empty.
    bool Ranges(const Triangle& t, IndexRange range[3]) {
        const double* v = t.m_adblVertices;
        double lo[3], hi[3], size = 0.0;
        bool wild = false;
        for (int a = 0; a < 3; ++a) {
            lo[a] = std::min(v[a], std::min(v[3 + a], v[6 + a]));
            hi[a] = std::max(v[a], std::max(v[3 + a], v[6 + a]));
            wild |= !std::isfinite(v[a]) || !std::isfinite(v[3 + a]) || !std::isfinite(v[6 + a]);
            size = std::max(size, std::max(std::fabs(lo[a]), std::fabs(hi[a])));
        }
        double margin = kRelativeMargin * (size + m_dblScale);
        for (int a = 0; a < 3; ++a) {
            if (wild)
                range[a] = {0, m_aintCells[a] - 1};
            else
                range[a] = {First(a, lo[a] - margin), Last(a, hi[a] + margin)};
            if (range[a].m_intFirst > range[a].m_intLast) return false;
        }
        return true;
    }

    // Cells whose [corner c, corner c + 1] meets from..to, by a plain search.
    IndexRange Span(int a, double from, double to) const {
        const double* c = m_apCorner[a];
        int n = m_aintCells[a];
        int first = int(std::lower_bound(c + 1, c + n + 1, from) - (c + 1));
        int last = int(std::upper_bound(c, c + n, to) - c) - 1;
        return {first, last};
    }

  private:
    // The first cell whose high corner is at least x (m_aintCells when none).
    int First(int a, double x) {
        const double* c = m_apCorner[a] + 1;
        int n = m_aintCells[a], h = m_aintHintFirst[a];
        int r;
        if (h < n && c[h] >= x && (h == 0 || c[h - 1] < x))
            r = h;
        else if (h + 1 < n && c[h + 1] >= x && c[h] < x)
            r = h + 1;
        else
            r = int(std::lower_bound(c, c + n, x) - c);
        m_aintHintFirst[a] = std::min(r, std::max(n - 1, 0));
        return r;
    }
    // The last cell whose low corner is at most x (-1 when none).
    int Last(int a, double x) {
        const double* c = m_apCorner[a];
        int n = m_aintCells[a], h = m_aintHintLast[a];
        int r;
        if (h < n && c[h] <= x && (h + 1 == n || c[h + 1] > x))
            r = h;
        else if (h + 1 < n && c[h + 1] <= x && (h + 2 == n || c[h + 2] > x))
            r = h + 1;
        else
            r = int(std::upper_bound(c, c + n, x) - c) - 1;
        m_aintHintLast[a] = std::max(r, 0);
        return r;
    }

    const double* m_apCorner[3];
    int m_aintCells[3];
    int m_aintHintFirst[3], m_aintHintLast[3];
    double m_dblScale;
};
