// The fast reading against the literal one: same witnesses, same states after each stage, same
// body cells, for any thread count. On smooth and thin shapes and on random bodies.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <unordered_map>

#include "IntersectorTestUtil.h"
#include "intersector/Classify.h"

namespace {
using Zones = std::vector<std::vector<Triangle>>;
using Outcome = std::vector<long long>;

void AddStates(Outcome& o, const GridCellArray& cells) {
    for (std::size_t c = 0; c < cells.Size(); ++c) o.push_back(cells.Data()[c].m_eState);
}

// Everything the stages leave: witnesses named by their place in the zones, the states after
// each stage, the counts of the scan.
Outcome Run(const std::vector<float> axes[3], const Zones& zones, bool plain, int threads) {
    IntersectContext run;
    GridCellArray& cells = run.m_gridCells;
    UseProcedure(run, plain);
    run.m_options.m_intThreads = threads;
    cells.Reset(axes);
    std::vector<SurfaceZone> z;
    std::unordered_map<const Triangle*, int> name;
    for (const auto& tris : zones) {
        std::vector<Triangle*> own;
        for (const Triangle& t : tris) name[own.emplace_back(new Triangle(t))] = int(name.size());
        z.push_back(Zone(own));
    }
    IntersectZones(run, z, ".");
    Outcome o;
    for (std::size_t c = 0; c < cells.Size(); ++c) {
        for (Triangle* t : cells.Triangles(cells.Data()[c])) o.push_back(name[t]);
        o.push_back(-1);
    }
    AddStates(o, cells);
    ClassifyCells(run);
    AddStates(o, cells);
    long long intersected = 0, body = DecideCells(run, intersected);
    AddStates(o, cells);
    o.push_back(intersected);
    o.push_back(body);
    return o;
}

void ExpectSame(const std::vector<float> axes[3], const Zones& zones, const std::string& what) {
    Outcome plain = Run(axes, zones, true, 1);
    EXPECT_GT(plain.back(), 0) << what << ": no body cells";
    for (int threads : {1, 3})
        EXPECT_TRUE(Run(axes, zones, false, threads) == plain) << what << " " << threads;
}

using P = FEL_vector3<double>;

// A closed surface of nu x nv quads, two triangles each, from a map of (u, v) in [0, 1]^2 that
// repeats in u; its vertices in single precision, as a surface file holds them.
Zones Surface(int nu, int nv, const std::function<P(double, double)>& f) {
    const P offset(0.0123, -0.0071, 0.0049);  // keeps the shape off the grid's symmetry
    auto p = [&](int i, int j) {
        return P(FEL_vector3<float>(offset + f(double(i % nu) / nu, double(j) / nv)));
    };
    Zones z(1);
    for (int i = 0; i < nu; ++i)
        for (int j = 0; j < nv; ++j) {
            z[0].emplace_back(p(i, j), p(i + 1, j), p(i + 1, j + 1));
            z[0].emplace_back(p(i, j), p(i + 1, j + 1), p(i, j + 1));
        }
    return z;
}

// Unit circle in x, y and half-height h in z: a sphere, or a disc thinner than a cell at its rim.
Zones Ellipsoid(double h) {
    return Surface(64, 65, [h](double u, double v) {
        double s = std::sin(M_PI * v);
        return P(s * std::cos(2 * M_PI * u), s * std::sin(2 * M_PI * u), h * std::cos(M_PI * v));
    });
}

// A ring of radius 1 whose section is 0.35 wide and 2 t thick, tilted by about 25 degrees about x.
Zones Ring(double t) {
    return Surface(192, 48, [t](double u, double v) {
        double a = 2 * M_PI * u, b = 2 * M_PI * std::fmod(v, 1.0), r = 1 + 0.35 * std::cos(b);
        double y = r * std::sin(a), z = t * std::sin(b), c = std::cos(0.436), s = std::sin(0.436);
        return P(r * std::cos(a), c * y - s * z, s * y + c * z);
    });
}

// A sphere, a disc thinner than a cell at its rim and a tilted ring, over n[a] cells on axis a
// across -1.4..1.45, finer in the middle; rows along k of more than one word.
TEST(Identity, Shapes) {
    const int n[3] = {40, 36, 72};
    std::vector<float> axes[3];
    for (int a = 0; a < 3; ++a)
        for (int c = 0; c <= n[a]; ++c) {
            double x = double(c) / n[a] - 0.5;
            axes[a].push_back(float(0.025 + 2.85 * (x - 0.05 * std::sin(2 * M_PI * x))));
        }
    const Zones shapes[3] = {Ellipsoid(1), Ellipsoid(0.03), Ring(0.06)};
    for (int s = 0; s < 3; ++s) ExpectSame(axes, shapes[s], "shape " + std::to_string(s));
}

// Random triangles in three zones over an uneven grid, many of them with vertices exactly on
// corner values, some degenerate, plus a closed box: the rounding edges of every test.
TEST(Identity, RandomBodies) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        std::mt19937 rng(seed);
        std::uniform_real_distribution<double> u(0.0, 1.0);
        std::vector<float> axes[3];
        for (int a = 0; a < 3; ++a) {
            float x = float(-3.0 * u(rng));
            for (int c = 0; c <= 10 + int(seed % 3) + a; ++c, x += float(0.2 + u(rng)))
                axes[a].push_back(x);
        }
        auto coord = [&](int a) {
            const std::vector<float>& ax = axes[a];
            double x = ax.front() + (ax.back() - ax.front()) * (1.4 * u(rng) - 0.2);
            return u(rng) < 0.4 ? double(ax[std::size_t(u(rng) * (ax.size() - 1))]) : x;
        };
        Zones zones(3);
        for (auto& zone : zones)
            for (int t = 0; t < 6; ++t) {
                double p[3][3], s = 0.05 + 0.5 * u(rng);  // shrunk toward the first vertex
                for (int v = 0; v < 9; ++v)
                    p[v / 3][v % 3] =
                        v < 3 ? coord(v) : p[0][v % 3] + s * (coord(v % 3) - p[0][v % 3]);
                if (t == 4) std::copy(p[0], p[0] + 3, p[2]);  // coincident vertices
                zone.emplace_back(p[0], p[1], p[2]);
            }
        double lo[3], hi[3];
        for (int a = 0; a < 3; ++a) {
            lo[a] = axes[a][2];
            hi[a] = axes[a][axes[a].size() - 3] + 0.5 * u(rng);
        }
        for (Triangle* t : BoxSurface(lo, hi)) {
            zones[1].push_back(*t);
            delete t;
        }
        ExpectSame(axes, zones, "seed " + std::to_string(seed));
    }
}
}  // namespace
