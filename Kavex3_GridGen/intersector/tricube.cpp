// The triangle-cube test: outcodes against the cube's 26 planes, triangle edges against the
// cube, then the cube's diagonals against the triangle by signed volumes.
#include "intersector/tricube.h"

#include "intersector/predicates.h"

long face_plane(const double* p) {
    long outcode = 0;
    if (p[0] > 0.5) outcode |= 0x01;
    if (p[0] < -0.5) outcode |= 0x02;
    if (p[1] > 0.5) outcode |= 0x04;
    if (p[1] < -0.5) outcode |= 0x08;
    if (p[2] > 0.5) outcode |= 0x10;
    if (p[2] < -0.5) outcode |= 0x20;
    return outcode;
}

long bevel_2d(const double* p) {
    long outcode = 0;
    if (p[0] + p[1] > 1.0) outcode |= 0x001;
    if (p[0] - p[1] > 1.0) outcode |= 0x002;
    if (-p[0] + p[1] > 1.0) outcode |= 0x004;
    if (-p[0] - p[1] > 1.0) outcode |= 0x008;
    if (p[0] + p[2] > 1.0) outcode |= 0x010;
    if (p[0] - p[2] > 1.0) outcode |= 0x020;
    if (-p[0] + p[2] > 1.0) outcode |= 0x040;
    if (-p[0] - p[2] > 1.0) outcode |= 0x080;
    if (p[1] + p[2] > 1.0) outcode |= 0x100;
    if (p[1] - p[2] > 1.0) outcode |= 0x200;
    if (-p[1] + p[2] > 1.0) outcode |= 0x400;
    if (-p[1] - p[2] > 1.0) outcode |= 0x800;
    return outcode;
}

long bevel_3d(const double* p) {
    long outcode = 0;
    if (p[0] + p[1] + p[2] > 1.5) outcode |= 0x01;
    if (p[0] + p[1] - p[2] > 1.5) outcode |= 0x02;
    if (p[0] - p[1] + p[2] > 1.5) outcode |= 0x04;
    if (p[0] - p[1] - p[2] > 1.5) outcode |= 0x08;
    if (-p[0] + p[1] + p[2] > 1.5) outcode |= 0x10;
    if (-p[0] + p[1] - p[2] > 1.5) outcode |= 0x20;
    if (-p[0] - p[1] + p[2] > 1.5) outcode |= 0x40;
    if (-p[0] - p[1] - p[2] > 1.5) outcode |= 0x80;
    return outcode;
}

long check_point(const double* p1, const double* p2, double alpha, long mask) {
    double q[3];
    for (int n = 0; n < 3; ++n) q[n] = (p1[n] - p2[n]) * alpha + p2[n];
    return face_plane(q) & mask;
}

long check_line(const double* p1, const double* p2, long outcode_diff) {
    struct Plane {
        long bit;
        int axis;
        double value;
        long mask;
    };
    static const Plane kPlanes[6] = {{0x01, 0, 0.5, 0x3e}, {0x02, 0, -0.5, 0x3d},
                                     {0x04, 1, 0.5, 0x3b}, {0x08, 1, -0.5, 0x37},
                                     {0x10, 2, 0.5, 0x2f}, {0x20, 2, -0.5, 0x1f}};
    for (const Plane& f : kPlanes) {
        if (!(outcode_diff & f.bit)) continue;
        double alpha = (f.value - p2[f.axis]) / (p1[f.axis] - p2[f.axis]);
        if (check_point(p1, p2, alpha, f.mask) == 0) return 1;
    }
    return 0;
}

long point_triangle_intersection(const double* p, _Triangle3 t) {
    const double* v[3] = {t.v1, t.v2, t.v3};
    for (int a = 0; a < 3; ++a) {
        double hi = v[0][a];
        if (v[1][a] > hi) hi = v[1][a];
        if (v[2][a] > hi) hi = v[2][a];
        if (p[a] > hi) return 0;
    }
    for (int a = 0; a < 3; ++a) {
        double lo = v[0][a];
        if (v[1][a] < lo) lo = v[1][a];
        if (v[2][a] < lo) lo = v[2][a];
        if (p[a] < lo) return 0;
    }
    int sign[3];
    for (int e = 0; e < 3; ++e) {
        const double* r = v[e];
        const double* s = v[(e + 1) % 3];
        double u[3] = {r[0] - s[0], r[1] - s[1], r[2] - s[2]};
        double w[3] = {r[0] - p[0], r[1] - p[1], r[2] - p[2]};
        double cx = u[1] * w[2] - u[2] * w[1];
        double cy = u[2] * w[0] - u[0] * w[2];
        double cz = u[0] * w[1] - u[1] * w[0];
        sign[e] = cx < 0.0 ? 4 : cy < 0.0 ? 2 : cz < 0.0 ? 1 : 0;
    }
    return sign[0] == sign[1] && sign[1] == sign[2];
}

long t_c_intersection(_Triangle3 t) {
    long v1 = face_plane(t.v1);
    if (v1 == 0) return 1;
    long v2 = face_plane(t.v2);
    if (v2 == 0) return 1;
    long v3 = face_plane(t.v3);
    if (v3 == 0) return 1;
    if (v1 & v2 & v3) return 0;

    v1 |= bevel_2d(t.v1) << 8;
    v2 |= bevel_2d(t.v2) << 8;
    v3 |= bevel_2d(t.v3) << 8;
    if (v1 & v2 & v3) return 0;

    v1 |= bevel_3d(t.v1) << 24;
    v2 |= bevel_3d(t.v2) << 24;
    v3 |= bevel_3d(t.v3) << 24;
    if (v1 & v2 & v3) return 0;

    if ((v1 & v2) == 0 && check_line(t.v1, t.v2, v1 | v2)) return 1;
    if ((v1 & v3) == 0 && check_line(t.v1, t.v3, v1 | v3)) return 1;
    if ((v2 & v3) == 0 && check_line(t.v2, t.v3, v2 | v3)) return 1;

    static const double kDiagonals[4][2][3] = {
        {{0.5, 0.5, 0.5}, {-0.5, -0.5, -0.5}},
        {{-0.5, 0.5, 0.5}, {0.5, -0.5, -0.5}},
        {{0.5, -0.5, 0.5}, {-0.5, 0.5, -0.5}},
        {{0.5, 0.5, -0.5}, {-0.5, -0.5, 0.5}},
    };
    for (const auto& d : kDiagonals) {
        double a = Volume6(t.v1, t.v2, t.v3, d[0]);
        double b = Volume6(t.v1, t.v2, t.v3, d[1]);
        if ((a > 0.0 && b > 0.0) || (a < 0.0 && b < 0.0)) continue;
        if (DoesIntersect(t.v1, t.v2, t.v3, d[0], d[1])) return 1;
    }
    return 0;
}
