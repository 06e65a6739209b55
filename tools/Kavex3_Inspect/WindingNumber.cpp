// Generalized winding number: exact solid angles near the point, cluster dipoles far from it.
#include "WindingNumber.h"

#include <algorithm>
#include <cmath>

namespace {

const int s_intLeafSize = 8;
// A cluster farther than this many radii counts as one dipole: its error is then below a few
// thousandths of the cluster's own share, far from moving a value across 1/2.
const double s_dblFarRatio = 2.5;
const double s_dblFourPi = 4.0 * 3.14159265358979323846;

using V3 = std::array<double, 3>;

V3 Sub(const double* a, const V3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
double Dot(const V3& a, const V3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
V3 Cross(const V3& a, const V3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double Length(const V3& a) {
    return std::sqrt(Dot(a, a));
}

// The signed solid angle of a triangle seen from q, over 4 pi.
double TriangleWinding(const std::array<double, 9>& t, const V3& q) {
    const V3 a = Sub(&t[0], q), b = Sub(&t[3], q), c = Sub(&t[6], q);
    const double la = Length(a), lb = Length(b), lc = Length(c);
    const double dblDet = Dot(a, Cross(b, c));
    const double dblDiv = la * lb * lc + Dot(a, b) * lc + Dot(b, c) * la + Dot(c, a) * lb;
    return 2.0 * std::atan2(dblDet, dblDiv) / s_dblFourPi;
}

}  // namespace

WindingNumber::WindingNumber(const std::vector<FEL_vector3<float>>& vecPoints,
                             const std::vector<std::array<int, 3>>& vecTriangles) {
    m_vecTriangles.reserve(vecTriangles.size());
    for (const auto& tri : vecTriangles) {
        std::array<double, 9> t;
        for (int n = 0; n < 9; ++n) t[n] = vecPoints[tri[n / 3]][n % 3];
        m_vecTriangles.push_back(t);
    }
    m_vecNodes.reserve(2 * m_vecTriangles.size() / s_intLeafSize + 2);
    if (!m_vecTriangles.empty()) {
        m_vecNodes.emplace_back();
        Build(0, 0, static_cast<int>(m_vecTriangles.size()));
    }
}

// Fills node n, which covers intCount triangles from intFirst, and its subtree.
void WindingNumber::Build(int n, int intFirst, int intCount) {
    Node node;
    node.lo = {HUGE_VAL, HUGE_VAL, HUGE_VAL};
    node.hi = {-HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    node.area = node.centre = {0, 0, 0};
    double dblWeight = 0;
    for (int t = intFirst; t < intFirst + intCount; ++t) {
        const std::array<double, 9>& tri = m_vecTriangles[t];
        const V3 o = {tri[0], tri[1], tri[2]};
        const V3 area = Cross(Sub(&tri[3], o), Sub(&tri[6], o));
        const double dblArea = 0.5 * Length(area);
        for (int a = 0; a < 3; ++a) {
            node.area[a] += 0.5 * area[a];
            node.centre[a] += dblArea * (tri[a] + tri[3 + a] + tri[6 + a]) / 3.0;
            for (int v = 0; v < 3; ++v) {
                node.lo[a] = std::min(node.lo[a], tri[3 * v + a]);
                node.hi[a] = std::max(node.hi[a], tri[3 * v + a]);
            }
        }
        dblWeight += dblArea;
    }
    node.dblRadius2 = 0;
    for (int a = 0; a < 3; ++a) {
        node.centre[a] =
            dblWeight > 0 ? node.centre[a] / dblWeight : 0.5 * (node.lo[a] + node.hi[a]);
        const double d = std::max(node.hi[a] - node.centre[a], node.centre[a] - node.lo[a]);
        node.dblRadius2 += d * d;
    }
    node.intFirst = intFirst;
    node.intCount = intCount;
    node.intLeft = -1;
    if (intCount > s_intLeafSize) {
        int intAxis = 0;
        for (int a = 1; a < 3; ++a)
            if (node.hi[a] - node.lo[a] > node.hi[intAxis] - node.lo[intAxis]) intAxis = a;
        const auto first = m_vecTriangles.begin() + intFirst;
        std::nth_element(first, first + intCount / 2, first + intCount,
                         [intAxis](const std::array<double, 9>& p, const std::array<double, 9>& q) {
                             return p[intAxis] + p[3 + intAxis] + p[6 + intAxis] <
                                    q[intAxis] + q[3 + intAxis] + q[6 + intAxis];
                         });
        node.intLeft = static_cast<int>(m_vecNodes.size());
        m_vecNodes.emplace_back();
        m_vecNodes.emplace_back();
        Build(node.intLeft, intFirst, intCount / 2);
        Build(node.intLeft + 1, intFirst + intCount / 2, intCount - intCount / 2);
    }
    m_vecNodes[n] = node;
}

double WindingNumber::At(const std::array<double, 3>& q) const {
    return m_vecNodes.empty() ? 0.0 : AtNode(0, q);
}

double WindingNumber::AtNode(int n, const V3& q) const {
    const Node& node = m_vecNodes[n];
    const V3 d = Sub(node.centre.data(), q);
    const double dblDist2 = Dot(d, d);
    if (dblDist2 > s_dblFarRatio * s_dblFarRatio * node.dblRadius2)
        return Dot(node.area, d) / (s_dblFourPi * dblDist2 * std::sqrt(dblDist2));
    if (node.intLeft >= 0) return AtNode(node.intLeft, q) + AtNode(node.intLeft + 1, q);
    double dbl = 0;
    for (int t = node.intFirst; t < node.intFirst + node.intCount; ++t)
        dbl += TriangleWinding(m_vecTriangles[t], q);
    return dbl;
}

bool WindingNumber::Touches(const V3& lo, const V3& hi) const {
    return !m_vecNodes.empty() && TouchesNode(0, lo, hi);
}

bool WindingNumber::TouchesNode(int n, const V3& lo, const V3& hi) const {
    const Node& node = m_vecNodes[n];
    for (int a = 0; a < 3; ++a)
        if (node.lo[a] > hi[a] || node.hi[a] < lo[a]) return false;
    if (node.intLeft >= 0)
        return TouchesNode(node.intLeft, lo, hi) || TouchesNode(node.intLeft + 1, lo, hi);
    for (int t = node.intFirst; t < node.intFirst + node.intCount; ++t) {
        const std::array<double, 9>& tri = m_vecTriangles[t];
        bool blnMeets = true;
        for (int a = 0; a < 3 && blnMeets; ++a)
            blnMeets = std::min({tri[a], tri[3 + a], tri[6 + a]}) <= hi[a] &&
                       std::max({tri[a], tri[3 + a], tri[6 + a]}) >= lo[a];
        if (blnMeets) return true;
    }
    return false;
}
