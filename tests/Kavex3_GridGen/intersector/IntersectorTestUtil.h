// Test helpers: unit grids, surface zones and a closed box surface.
#pragma once

#include <vector>

#include "intersector/Intersector.h"
#include "reference/Reference.h"

// The run's cells: unit cells from the origin, all unknown.
inline void UnitGrid(IntersectContext& run, int ni, int nj, int nk) {
    const int n[3] = {ni, nj, nk};
    std::vector<float> axes[3];
    for (int a = 0; a < 3; ++a)
        for (int c = 0; c <= n[a]; ++c) axes[a].push_back(float(c));
    run.m_gridCells.Reset(axes);
}

// The fast procedure, or the literal one that it is checked against.
inline void UseProcedure(IntersectContext& run, bool plain) {
    run.m_options.m_pReference = plain ? &kPlainProcedure : nullptr;
}

// The zone's box from its triangles' single-precision coordinates, as a mesh would give it.
inline SurfaceZone Zone(std::vector<Triangle*> tris) {
    SurfaceZone z;
    z.m_vecTriangles = tris;
    z.m_v3fMin = {1e30f, 1e30f, 1e30f};
    z.m_v3fMax = {-1e30f, -1e30f, -1e30f};
    for (Triangle* t : tris)
        for (int n = 0; n < 9; ++n) {
            z.m_v3fMin[n % 3] = std::min(z.m_v3fMin[n % 3], float(t->m_adblVertices[n]));
            z.m_v3fMax[n % 3] = std::max(z.m_v3fMax[n % 3], float(t->m_adblVertices[n]));
        }
    return z;
}

// The 12 triangles of the surface of box lo..hi.
inline std::vector<Triangle*> BoxSurface(const double* lo, const double* hi) {
    std::vector<Triangle*> out;
    for (int a = 0; a < 3; ++a)
        for (double side : {lo[a], hi[a]}) {
            int u = (a + 1) % 3, v = (a + 2) % 3;
            double p[4][3];
            for (int n = 0; n < 4; ++n) {
                p[n][a] = side;
                p[n][u] = (n == 1 || n == 2) ? hi[u] : lo[u];
                p[n][v] = (n >= 2) ? hi[v] : lo[v];
            }
            out.push_back(new Triangle(p[0], p[1], p[2]));
            out.push_back(new Triangle(p[0], p[2], p[3]));
        }
    return out;
}
