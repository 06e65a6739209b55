// Tests of polygon clipping against axis-aligned lines and of the polygon area.
#include "generator/clip.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Pts = std::vector<std::pair<double, double>>;

struct Poly {
    ClipPolygon rec{0, 0, nullptr, nullptr};
    explicit Poly(const Pts& pts = {}) {
        for (const auto& p : pts) append_clip_point(&rec, p.first, p.second);
    }
    ~Poly() {
        std::free(rec.x);
        std::free(rec.y);
    }
    Pts points() const {
        Pts v;
        for (int i = 0; i < rec.count; ++i) v.emplace_back(rec.x[i], rec.y[i]);
        return v;
    }
};

TEST(ClipPolygon, EdgesWalkedInOrderWithExactCrossingsAndPointsOnTheLineOutside) {
    // (0,2)---(2,2)   keep x < 1: (0,2)-(1,2)       (0,1)   the corner (1,0) lies on x = 1: it is
    //   |       |                   |     |          | \    outside, so both edges at it cross,
    // (0,0)---(2,0)               (0,0)-(1,0)     (0,0)-(1,0) and it comes back twice.
    // Edge (0,0)-(4,2) crosses x = 1 at y = 1 * 2 / 4 = 0.5, edge (4,2)-(0,3) at y = 2 + 3/4: a
    // trapezoid of width 1 with parallel sides 3 and 2.25.
    const Pts square = {{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}},
              tri = {{0, 0}, {1, 0}, {0, 1}, {0, 0}};
    const Pts wide = {{0, 0}, {4, 2}, {0, 3}, {0, 0}}, onLine = {{1, 0}, {1, 3}, {1, 5}, {1, 0}};
    // Rows: polygon, axis of the line, its position, below kept, the clipped polygon, its area.
    const std::tuple<const Pts&, int, double, int, Pts, double> rows[] = {
        {square, 0, 1.0, 1, {{1, 0}, {1, 2}, {0, 2}, {0, 0}, {1, 0}}, 2.0},
        // Keeping y > 1 starts at the crossing of the second edge.
        {square, 1, 1.0, 0, {{2, 1}, {2, 2}, {0, 2}, {0, 1}, {2, 1}}, 2.0},
        {tri, 0, 1.0, 1, {{1, 0}, {1, 0}, {0, 1}, {0, 0}, {1, 0}}, 0.5},
        // Keeping above x = 0 drops the two points on x = 0 and keeps the rest.
        {tri, 0, 0.0, 0, {{0, 0}, {1, 0}, {0, 1}, {0, 0}}, 0.5},
        {wide, 0, 1.0, 1, {{1, 0.5}, {1, 2.75}, {0, 3}, {0, 0}, {1, 0.5}}, 2.625},
        // A polygon wholly on the line, or beyond it, leaves nothing.
        {onLine, 0, 1.0, 1, {}, 0.0},
        {onLine, 0, 1.0, 0, {}, 0.0},
    };
    for (const auto& [pts, axis, at, below, clipped, area] : rows) {
        Poly in(pts), out({{9, 9}});
        clip_polygon_with_axis_aligned_line(&in.rec, axis, at, below, &out.rec);
        EXPECT_EQ(out.points(), clipped) << pts.size() << " " << axis << " " << at;
        EXPECT_EQ(clip_polygon_area(&out.rec), area);
    }
}

}  // namespace
