// Surface triangles: copying, measures, the box test, splitting and the coplanar family.
#include "intersector/Triangle.h"

#include <cmath>
#include <deque>

#include "intersector/tricube.h"

namespace {
bool NearZero(double c) {
    return Close(c, 0.0);
}

bool SamePoint(const double* a, const double* b) {
    return Close(a[0], b[0]) && Close(a[1], b[1]) && Close(a[2], b[2]);
}

// Centroids are compared on a 0.0001 grid: each coordinate is shifted by half a step and
// truncated to whole steps, 10000 to a unit.
const double kCentroidSteps = 10000.0;
const double kCentroidHalfStep = 0.00005;
}  // namespace

Triangle::Triangle() : m_blnFlagA(true), m_blnFlagB(false), m_intIndexA(-1) {}

Triangle::Triangle(double* a, double* b, double* c)
    : m_blnFlagA(true), m_blnFlagB(false), m_intIndexA(-1), m_intIndexB(-1) {
    for (int n = 0; n < 3; ++n) {
        m_adblVertices[n] = a[n];
        m_adblVertices[3 + n] = b[n];
        m_adblVertices[6 + n] = c[n];
    }
}

Triangle::Triangle(FEL_vector3<double> a, FEL_vector3<double> b, FEL_vector3<double> c)
    : Triangle(&a.x, &b.x, &c.x) {}

Triangle::Triangle(const Triangle& other) {
    *this = other;
}

Triangle& Triangle::operator=(const Triangle& other) {
    if (this != &other) {
        for (int n = 0; n < 9; ++n) m_adblVertices[n] = other.m_adblVertices[n];
        m_blnFlagA = other.m_blnFlagA;
        m_blnFlagB = other.m_blnFlagB;
        m_intIndexA = other.m_intIndexA;
        m_intIndexB = other.m_intIndexB;
        m_ushtMark = other.m_ushtMark;
    }
    return *this;
}

bool Triangle::operator==(const Triangle& other) const {
    for (int n = 0; n < 9; ++n)
        if (!Close(m_adblVertices[n], other.m_adblVertices[n])) return false;
    return true;
}

std::ostream& operator<<(std::ostream& out, const Triangle& t) {
    const double* v = t.m_adblVertices;
    return out << "(" << v[0] << ", " << v[1] << ", " << v[2] << "),  (" << v[3] << ", " << v[4]
               << ", " << v[5] << "),  (" << v[6] << ", " << v[7] << ", " << v[8] << ")";
}

double Triangle::Average(short coord) const {
    return (m_adblVertices[coord] + m_adblVertices[3 + coord] + m_adblVertices[6 + coord]) / 3.0;
}

double Triangle::MinMaxOfTriangle(short wantMax, short coord) const {
    double r = m_adblVertices[coord];
    for (int v = 1; v < 3; ++v) {
        double x = m_adblVertices[3 * v + coord];
        if (wantMax == 0 ? x < r : x > r) r = x;
    }
    return r;
}

double Triangle::FindZeroZeroZCoord() const {
    const double* p = m_adblVertices;
    double u[3], w[3];
    for (int n = 0; n < 3; ++n) {
        u[n] = p[3 + n] - p[n];
        w[n] = p[6 + n] - p[n];
    }
    double nx = u[1] * w[2] - u[2] * w[1];
    double ny = u[2] * w[0] - u[0] * w[2];
    double nz = u[0] * w[1] - u[1] * w[0];
    return (nx * p[0] + ny * p[1] + nz * p[2]) / nz;
}

bool Triangle::SameAvgInTris(Triangle* tris, int first, int last) const {
    for (int t = first; t <= last; ++t)
        for (short c = 0; c < 3; ++c) {
            long mine = long((Average(c) + kCentroidHalfStep) * kCentroidSteps);
            long theirs = long((tris[t].Average(c) + kCentroidHalfStep) * kCentroidSteps);
            if (mine != theirs) return false;
        }
    return true;
}

bool Triangle::PartialBoundingBoxTest(const double* boxMin, const double* boxMax) const {
    _Triangle3 t;
    double* out[3] = {t.v1, t.v2, t.v3};
    for (int a = 0; a < 3; ++a) {
        double c = -(boxMin[a] + boxMax[a]) * 0.5;
        double s = 1.0 / (boxMax[a] - boxMin[a]);
        for (int v = 0; v < 3; ++v) out[v][a] = (m_adblVertices[3 * v + a] + c) * s;
    }
    return t_c_intersection(t) != 0;
}

void Triangle::BreakUpTriangle(Triangle**& pieces, unsigned short minPieces, int& count) const {
    std::deque<Triangle*> current, next;
    auto release = [&] {
        for (Triangle* t : current) delete t;
        for (Triangle* t : next) delete t;
    };
    try {
        current.push_back(new Triangle(*this));
        while (current.size() + next.size() < minPieces) {
            if (current.empty()) {
                current = next;
                next.clear();
            }
            Triangle* t = current.back();
            double* p[3] = {t->m_adblVertices, t->m_adblVertices + 3, t->m_adblVertices + 6};
            double d[3];
            for (int e = 0; e < 3; ++e) {
                const double* a = p[e];
                const double* b = p[(e + 1) % 3];
                d[e] = (a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) +
                       (a[2] - b[2]) * (a[2] - b[2]);
            }
            int e = (d[0] > d[1] && d[0] > d[2]) ? 0 : (d[1] > d[0] && d[1] > d[2]) ? 1 : 2;
            double* first = p[e];
            double* second = p[(e + 1) % 3];
            double m[3];
            for (int n = 0; n < 3; ++n) m[n] = (first[n] - second[n]) * 0.5 + second[n];
            // Pieces by split edge: (P2, P0, m) (P2, P1, m); (P0, P1, m) (P0, P2, m);
            // (P1, P2, m) (P1, P0, m).
            static const int kOrder[3][4] = {{2, 0, 2, 1}, {0, 1, 0, 2}, {1, 2, 1, 0}};
            const int* o = kOrder[e];
            Triangle* one = new Triangle(p[o[0]], p[o[1]], m);
            one->m_blnFlagB = m_blnFlagB;
            next.push_back(one);
            Triangle* two = new Triangle(p[o[2]], p[o[3]], m);
            two->m_blnFlagB = m_blnFlagB;
            next.push_back(two);
            current.pop_back();
            delete t;
        }
        count = int(current.size() + next.size());
        pieces = new Triangle*[count];
    } catch (...) {
        release();
        throw;
    }
    int n = 0;
    while (!next.empty()) {
        pieces[n++] = next.back();
        next.pop_back();
    }
    while (!current.empty()) {
        pieces[n++] = current.back();
        current.pop_back();
    }
}

int Triangle::CoPlanarPointIntersection(double* p) const {
    const double* v = m_adblVertices;
    int s = 0, t = 1;
    if (v[0] == v[3] && v[3] == v[6]) {
        s = 1;
        t = 2;
    } else if (v[1] == v[4] && v[4] == v[7]) {
        s = 0;
        t = 2;
    }
    double c[3];
    for (int e = 0; e < 3; ++e) {
        const double* a = v + 3 * e;
        const double* b = v + 3 * ((e + 1) % 3);
        double as = a[s] - p[s], at = a[t] - p[t], bs = b[s] - p[s], bt = b[t] - p[t];
        c[e] = as * bt - bs * at;
    }
    bool z0 = NearZero(c[0]), z1 = NearZero(c[1]), z2 = NearZero(c[2]);
    if (z0 && z1 && z2) return -1;
    bool b0 = c[0] > 0.0, b1 = c[1] > 0.0, b2 = c[2] > 0.0;
    if (b0 == b1 && z2) return -1;
    if (b1 == b2 && z0) return -1;
    if (b0 == b2 && z1) return -1;
    if (b0 == b1 && b1 == b2) return 1;
    for (int n = 0; n < 3; ++n)
        if (SamePoint(p, v + 3 * n)) return 1;
    return 0;
}

int Triangle::CoPlanarLineCrossing(double* p, double* q, int* edges) const {
    const double* v = m_adblVertices;
    edges[0] = edges[1] = edges[2] = -1;
    int used = 0;
    bool crossed = false;
    for (int e = 0; e < 3; ++e) {
        crossed = LineIntersect(p, q, v + 3 * e, v + 3 * ((e + 1) % 3));
        if (crossed) edges[used++] = e;
    }
    return crossed ? 1 : 0;
}

int Triangle::CoPlanarLineOnEdge(double* p, double* q) const {
    const double* v = m_adblVertices;
    for (int e = 0; e < 3; ++e) {
        const double* a = v + 3 * e;
        const double* b = v + 3 * ((e + 1) % 3);
        if ((PointOn3DLine(a, b, p) && PointOn3DLine(a, b, q)) ||
            (PointOn3DLine(p, q, a) && PointOn3DLine(p, q, b)))
            return e;
    }
    return -1;
}

int Triangle::CoPlanarPointOnEdge(double* p) const {
    const double* v = m_adblVertices;
    for (int e = 0; e < 3; ++e)
        if (PointOn3DLine(v + 3 * e, v + 3 * ((e + 1) % 3), p)) return e;
    return -1;
}
