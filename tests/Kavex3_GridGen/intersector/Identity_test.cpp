// The fast reading against the literal one: same witnesses, same states after each stage, same
// body cells, for any thread count. On the peers' shapes and grids and on random bodies.
#include <gtest/gtest.h>

#include <random>
#include <unordered_map>

#include "FEL_axis_aligned_mesh.h"
#include "IntersectorTestUtil.h"
#include "PeerCases.h"
#include "intersector/Classify.h"

namespace {
using Zones = std::vector<std::vector<Triangle>>;
using Outcome = std::vector<long long>;

void AddStates(Outcome& o) {
    for (std::size_t c = 0; c < g_gridCells.Size(); ++c)
        o.push_back(g_gridCells.Data()[c].m_eState);
}

// Everything the stages leave: witnesses named by their place in the zones, the states after
// each stage, the counts of the scan.
Outcome Run(const std::vector<float> axes[3], const Zones& zones, bool plain, int threads) {
    g_intersectOptions.m_blnPlain = plain;
    g_intersectOptions.m_intThreads = threads;
    g_gridCells.Reset(axes);
    std::vector<SurfaceZone> z;
    std::unordered_map<const Triangle*, int> name;
    for (const auto& tris : zones) {
        std::vector<Triangle*> own;
        for (const Triangle& t : tris) name[own.emplace_back(new Triangle(t))] = int(name.size());
        z.push_back(Zone(own));
    }
    IntersectZones(z, ".");
    Outcome o;
    for (std::size_t c = 0; c < g_gridCells.Size(); ++c) {
        for (Triangle* t : g_gridCells.Triangles(g_gridCells.Data()[c])) o.push_back(name[t]);
        o.push_back(-1);
    }
    AddStates(o);
    const FEL_vector3<int> n = g_v3iGridDimensions;
    ClassifyCells(
        FEL_pointer<FEL_mesh>(new FEL_regular_mesh(n.x + 1, n.y + 1, n.z + 1, 1, 1, 1, "g")));
    AddStates(o);
    long long intersected = 0, body = DecideCells(g_gridCells, intersected);
    AddStates(o);
    o.push_back(intersected);
    o.push_back(body);
    g_intersectOptions = IntersectOptions();
    g_gridCells.Release();
    return o;
}

void ExpectSame(const std::vector<float> axes[3], const Zones& zones, const std::string& what) {
    Outcome plain = Run(axes, zones, true, 1);
    EXPECT_GT(plain.back(), 0) << what << ": no body cells";
    for (int threads : {1, 3})
        EXPECT_TRUE(Run(axes, zones, false, threads) == plain) << what << " " << threads;
}

// A peers' shape at n^3 cells, its vertices in single precision as its STL file holds them.
void PeerCase(const char* shape, int n) {
    Zones zones(1);
    peers::Sink add = [&](peers::P a, peers::P b, peers::P c) {
        zones[0].emplace_back(peers::P(FEL_vector3<float>(a)), peers::P(FEL_vector3<float>(b)),
                              peers::P(FEL_vector3<float>(c)));
    };
    std::string s = shape;
    if (s == "sphere20k") peers::Sphere(100, 101, add);
    if (s == "torus") peers::Torus(add);
    if (s == "rotor") peers::Rotor(add);
    double lo[3] = {1e30, 1e30, 1e30}, hi[3] = {-1e30, -1e30, -1e30};
    for (const Triangle& t : zones[0])
        for (int k = 0; k < 9; ++k) {
            lo[k % 3] = std::min(lo[k % 3], t.m_adblVertices[k]);
            hi[k % 3] = std::max(hi[k % 3], t.m_adblVertices[k]);
        }
    std::vector<float> axes[3];
    peers::Grid(lo, hi, n, axes);
    ExpectSame(axes, zones, s + "_" + std::to_string(n));
}

TEST(Identity, PeerCasesAt64) {
    PeerCase("rotor", 64);
    PeerCase("sphere20k", 64);
}

// Slow in the literal reading (minutes under the sanitizers): run with
// --gtest_also_run_disabled_tests.
TEST(Identity, DISABLED_PeerCasesLarger) {
    PeerCase("torus", 64);
    for (const char* shape : {"rotor", "sphere20k", "torus"}) PeerCase(shape, 128);
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
