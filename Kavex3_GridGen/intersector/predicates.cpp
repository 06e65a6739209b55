// Point predicates of the intersector, all in double precision.
#include "intersector/predicates.h"

#include <cmath>

namespace {
// Applies to mantissas, not to absolute differences.
const double kTolerance = 0.0001;

// c in [0, 0.0002) only: Close shifts a zero by 1.0, so a small negative c drops below 1.0.
bool NearZero(double c) {
    return Close(c, 0.0);
}

bool SamePoint(const double* a, const double* b) {
    return Close(a[0], b[0]) && Close(a[1], b[1]) && Close(a[2], b[2]);
}
}  // namespace

bool Close(double a, double b) {
    if (a == 0.0 || b == 0.0) {
        a += 1.0;
        b += 1.0;
    }
    int ea, eb;
    double ma = std::frexp(a, &ea);
    double mb = std::frexp(b, &eb);
    return ea == eb && std::fabs(ma - mb) < kTolerance;
}

double Volume6(const double* a, const double* b, const double* c, const double* d) {
    double ax = a[0] - d[0], ay = a[1] - d[1], az = a[2] - d[2];
    double bx = b[0] - d[0], by = b[1] - d[1], bz = b[2] - d[2];
    double cx = c[0] - d[0], cy = c[1] - d[1], cz = c[2] - d[2];
    return ax * (by * cz - bz * cy) - ay * (cz * bx - bz * cx) + az * (bx * cy - cx * by);
}

bool OppositeSides(const double* a, const double* b, const double* c, const double* p,
                   const double* q) {
    double v1 = Volume6(a, b, c, p);
    double v2 = Volume6(a, b, c, q);
    return !((v1 > 0.0 && v2 > 0.0) || (v1 < 0.0 && v2 < 0.0));
}

bool DoesIntersect(const double* a, const double* b, const double* c, const double* p,
                   const double* q) {
    double v1 = Volume6(p, a, b, q);
    double v2 = Volume6(p, b, c, q);
    double v3 = Volume6(p, c, a, q);
    bool noPositive = !(v1 > 0.0) && !(v2 > 0.0) && !(v3 > 0.0);
    bool noNegative = !(v1 < 0.0) && !(v2 < 0.0) && !(v3 < 0.0);
    return noPositive || noNegative;
}

double orient2d(const double* a, const double* b, const double* c) {
    return (a[0] - c[0]) * (b[1] - c[1]) - (a[1] - c[1]) * (b[0] - c[0]);
}

bool PointOn3DLine(const double* a, const double* b, const double* p) {
    if (SamePoint(p, a) || SamePoint(p, b)) return true;
    double e[3] = {a[0] - p[0], a[1] - p[1], a[2] - p[2]};
    double f[3] = {b[0] - p[0], b[1] - p[1], b[2] - p[2]};
    return NearZero(e[0] * f[1] - f[0] * e[1]) && NearZero(f[1] * e[2] - e[1] * f[2]) &&
           NearZero(f[0] * e[2] - e[0] * f[2]);
}

bool LineIntersect(const double* a, const double* b, const double* c, const double* d) {
    int A, B;
    if (a[0] != b[0]) {
        A = 0;
        B = a[1] == b[1] ? 2 : 1;
    } else {
        A = 1;
        B = 2;
    }
    double p = b[A] - a[A], q = b[B] - a[B], r = d[A] - c[A], s = d[B] - c[B];
    double det = p * s - q * r;
    if (det == 0.0) return false;
    double g = a[A] - c[A], h = a[B] - c[B];
    double t = (r * h - s * g) / det;
    double u = (h * p - g * q) / det;
    return 0.0 < t && t < 1.0 && 0.0 < u && u < 1.0;
}
