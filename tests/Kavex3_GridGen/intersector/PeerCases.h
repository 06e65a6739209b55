// The shapes and graded grids of the peers' benchmark cases (../shared/peers/make_cases.py),
// rebuilt in memory: UV spheres, the tilted torus, the bladed rotor, and grids of N^3 cells.
#pragma once

#include <cmath>
#include <functional>
#include <vector>

#include "intersector/Triangle.h"

namespace peers {
using P = FEL_vector3<double>;
using Sink = std::function<void(P, P, P)>;
const P kOffset(0.0123, -0.0071, 0.0049);

inline void Sphere(int nlon, int nbands, const Sink& out) {
    auto p = [&](int l, int m) {
        double th = M_PI * l / nbands, ph = 2.0 * M_PI * (m % nlon) / nlon, s = std::sin(th);
        return P(kOffset.x + s * std::cos(ph), kOffset.y + s * std::sin(ph),
                 kOffset.z + std::cos(th));
    };
    P north(kOffset.x, kOffset.y, kOffset.z + 1), south(kOffset.x, kOffset.y, kOffset.z - 1);
    for (int m = 0; m < nlon; ++m) {
        out(north, p(1, m), p(1, m + 1));
        for (int l = 1; l < nbands - 1; ++l) {
            out(p(l, m), p(l + 1, m), p(l + 1, m + 1));
            out(p(l, m), p(l + 1, m + 1), p(l, m + 1));
        }
        out(south, p(nbands - 1, m + 1), p(nbands - 1, m));
    }
}

inline void Torus(const Sink& out) {
    const int nu = 256, nv = 128;
    const double ct = std::cos(25.0 * M_PI / 180), st = std::sin(25.0 * M_PI / 180);
    auto p = [&](int i, int j) {
        double u = 2.0 * M_PI * (i % nu) / nu, v = 2.0 * M_PI * (j % nv) / nv;
        double r = 1 + 0.35 * std::cos(v), x = r * std::cos(u), y = r * std::sin(u);
        double z = 0.35 * std::sin(v);
        return P(kOffset.x + x, kOffset.y + ct * y - st * z, kOffset.z + st * y + ct * z);
    };
    for (int i = 0; i < nu; ++i)
        for (int j = 0; j < nv; ++j) {
            out(p(i, j), p(i + 1, j), p(i + 1, j + 1));
            out(p(i, j), p(i + 1, j + 1), p(i, j + 1));
        }
}

inline void Rotor(const Sink& out) {
    const double w = 0.15, beta = std::asin(w), x0 = std::sqrt(1 - w * w), t = 0.12;
    std::vector<P> ring;
    for (int q = 0; q < 4; ++q) {
        double a = (90.0 * q + 20.0) * M_PI / 180, ca = std::cos(a), sa = std::sin(a);
        const double blade[4][2] = {{x0, -w}, {2, -w}, {2, w}, {x0, w}};
        for (const auto& b : blade)
            ring.emplace_back(ca * b[0] - sa * b[1], sa * b[0] + ca * b[1], 0);
        double a0 = a + beta, a1 = a + M_PI / 2 - beta;
        for (int s = 1; s < 256; ++s)
            ring.emplace_back(std::cos(a0 + (a1 - a0) * s / 256),
                              std::sin(a0 + (a1 - a0) * s / 256), 0);
    }
    const double zt = kOffset.z + 0.5 * t, zb = kOffset.z - 0.5 * t;
    auto at = [&](std::size_t i, double z) {
        return P(kOffset.x + ring[i % ring.size()].x, kOffset.y + ring[i % ring.size()].y, z);
    };
    P ctop(kOffset.x, kOffset.y, zt), cbot(kOffset.x, kOffset.y, zb);
    for (std::size_t i = 0; i < ring.size(); ++i) {
        out(ctop, at(i, zt), at(i + 1, zt));
        out(cbot, at(i + 1, zb), at(i, zb));
        out(at(i, zb), at(i + 1, zb), at(i + 1, zt));
        out(at(i, zb), at(i + 1, zt), at(i, zt));
    }
}

// Corners of one axis: a uniform core over lo..hi, cells growing by 1.05 outwards, n in all.
inline std::vector<float> GradedAxis(double lo, double hi, double h, int n) {
    int core = std::min(n, std::max(4, int(std::lround((hi - lo) / h))));
    double step = (hi - lo) / core;
    int padLo = (n - core) / 2, padHi = n - core - padLo;
    std::vector<double> out;
    double x = lo, w = step;
    for (int c = 0; c < padLo; ++c) out.insert(out.begin(), x -= (w *= 1.05));
    for (int c = 0; c < core; ++c) out.push_back(lo + step * c);
    out.push_back(hi);
    x = hi, w = step;
    for (int c = 0; c < padHi; ++c) out.push_back(x += (w *= 1.05));
    return std::vector<float>(out.begin(), out.end());
}

// The grid of n^3 cells around a body's box, with margins of 3.1 % and 4.7 % of its extent.
inline void Grid(const double* lo, const double* hi, int n, std::vector<float> axes[3]) {
    double e = std::max(hi[0] - lo[0], std::max(hi[1] - lo[1], hi[2] - lo[2])), longest = 0;
    double clo[3], chi[3];
    for (int a = 0; a < 3; ++a) {
        clo[a] = lo[a] - 0.031 * e;
        chi[a] = hi[a] + 0.047 * e;
        longest = std::max(longest, chi[a] - clo[a]);
    }
    double h = longest / std::lround(0.75 * n);
    for (int a = 0; a < 3; ++a) axes[a] = GradedAxis(clo[a], chi[a], h, n);
}
}  // namespace peers
