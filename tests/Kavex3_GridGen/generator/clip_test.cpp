// Tests of polygon clipping against axis-aligned lines and of the polygon area.
#include "generator/clip.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

namespace {

struct Poly {
    ClipPolygon rec{0, 0, nullptr, nullptr};
    Poly() = default;
    Poly(std::initializer_list<std::pair<double, double>> pts) {
        for (const auto& p : pts) append_clip_point(&rec, p.first, p.second);
    }
    ~Poly() {
        std::free(rec.x);
        std::free(rec.y);
    }
    std::vector<std::pair<double, double>> points() const {
        std::vector<std::pair<double, double>> v;
        for (int i = 0; i < rec.count; ++i) v.emplace_back(rec.x[i], rec.y[i]);
        return v;
    }
};

using Pts = std::vector<std::pair<double, double>>;

TEST(ClipPolygon, HalvesASquareWalkingTheEdgesInOrder) {
    // (0,2)---(2,2)      keep x < 1:   (0,2)-(1,2)
    //   |       |                        |     |
    // (0,0)---(2,0)                    (0,0)-(1,0)
    Poly square{{0, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 0}};
    Poly out;
    clip_polygon_with_axis_aligned_line(&square.rec, 0, 1.0, 1, &out.rec);
    EXPECT_EQ(out.points(), (Pts{{1, 0}, {1, 2}, {0, 2}, {0, 0}, {1, 0}}));
    EXPECT_DOUBLE_EQ(clip_polygon_area(&out.rec), 2.0);

    // Keeping y > 1 instead starts at the crossing of the second edge.
    clip_polygon_with_axis_aligned_line(&square.rec, 1, 1.0, 0, &out.rec);
    EXPECT_EQ(out.points(), (Pts{{2, 1}, {2, 2}, {0, 2}, {0, 1}, {2, 1}}));
}

TEST(ClipPolygon, PointsOnTheLineCountAsOutside) {
    // (0,1)
    //   | \        the corner (1,0) lies on the line x = 1: it is outside, so both edges at it
    //   |  \       cross, and it comes back twice as a crossing point.
    // (0,0)-(1,0)
    Poly tri{{0, 0}, {1, 0}, {0, 1}, {0, 0}};
    Poly out;
    clip_polygon_with_axis_aligned_line(&tri.rec, 0, 1.0, 1, &out.rec);
    EXPECT_EQ(out.points(), (Pts{{1, 0}, {1, 0}, {0, 1}, {0, 0}, {1, 0}}));

    // A polygon lying wholly on the line, or beyond it, leaves nothing; keeping above x = 0
    // drops the two points on x = 0 and keeps the rest.
    Poly onLine{{1, 0}, {1, 3}, {1, 5}, {1, 0}};
    clip_polygon_with_axis_aligned_line(&onLine.rec, 0, 1.0, 1, &out.rec);
    EXPECT_EQ(out.rec.count, 0);
    clip_polygon_with_axis_aligned_line(&onLine.rec, 0, 1.0, 0, &out.rec);
    EXPECT_EQ(out.rec.count, 0);
    clip_polygon_with_axis_aligned_line(&tri.rec, 0, 0.0, 0, &out.rec);
    EXPECT_EQ(out.points(), (Pts{{0, 0}, {1, 0}, {0, 1}, {0, 0}}));
    EXPECT_DOUBLE_EQ(clip_polygon_area(&out.rec), 0.5);
}

TEST(ClipPolygon, CrossingPointsAreExact) {
    // Edge (0,0)-(4,2) crosses x = 1 at y = 1 * 2 / 4 = 0.5, edge (4,2)-(0,3) at y = 2 + 3/4.
    Poly tri{{0, 0}, {4, 2}, {0, 3}, {0, 0}};
    Poly out;
    clip_polygon_with_axis_aligned_line(&tri.rec, 0, 1.0, 1, &out.rec);
    EXPECT_EQ(out.points(), (Pts{{1, 0.5}, {1, 2.75}, {0, 3}, {0, 0}, {1, 0.5}}));
    // Trapezoid of width 1 with parallel sides 3 and 2.25.
    EXPECT_EQ(clip_polygon_area(&out.rec), 2.625);
}

TEST(ClipPolygon, ShortInputsGiveNothingAndOutputGrowsByTen) {
    Poly one{{0.5, 0.5}};
    Poly out{{9, 9}, {8, 8}, {9, 9}};
    clip_polygon_with_axis_aligned_line(&one.rec, 0, 1.0, 1, &out.rec);
    EXPECT_EQ(out.rec.count, 0);
    EXPECT_EQ(clip_polygon_area(&one.rec), 0.0);

    // Eleven distinct points inside, closed: twelve in the output, in records of 10 and 20.
    Poly many;
    for (int i = 0; i < 11; ++i) append_clip_point(&many.rec, i * 0.1, (i % 2) * 0.1);
    append_clip_point(&many.rec, 0.0, 0.0);
    EXPECT_EQ(many.rec.capacity, 20);
    Poly grown;
    clip_polygon_with_axis_aligned_line(&many.rec, 1, 5.0, 1, &grown.rec);
    EXPECT_EQ(grown.rec.count, 12);
    EXPECT_EQ(grown.rec.capacity, 20);
    EXPECT_EQ(grown.rec.x[0], 0.1);  // the walk starts with the end of the first edge
}

}  // namespace
