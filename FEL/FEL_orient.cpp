// Orientation predicates and the closed box test behind the location walks of structured meshes.
#include "FEL_orient.h"

#include <algorithm>
#include <cmath>

#include "FEL_exception.h"

namespace {

// The line that an impossible fold case reports.
constexpr unsigned impossible_fold_line = 225;

template <class T>
int sign(T v) {
    return v > 0 ? 1 : (v < 0 ? -1 : 0);
}

FEL_vector3<double> wide(const FEL_vector3<float>& v) {
    return FEL_vector3<double>(v);
}

double length(const FEL_vector3<double>& v) {
    return std::sqrt(FEL_dot(v, v));
}

// A triangle is sound for the query when its shortest side is not 0 and not a million times
// shorter than the distance to the query.
bool sound(double shortest, double distance) {
    return shortest > 0 && distance / shortest < 1000000.0;
}

}  // namespace

int FEL_orient(float ax, float ay, float bx, float by, float cx, float cy) {
    const float det = (by - cy) * ax - (ay - cy) * bx + (ay - by) * cx;
    return sign(det);
}

int FEL_orient(const FEL_vector3<float>& a, const FEL_vector3<float>& b,
               const FEL_vector3<float>& c, const FEL_vector3<float>& d) {
    const FEL_vector3<double> u = wide(b - a), v = wide(c - a), w = wide(d - a);
    return sign(FEL_dot(w, FEL_cross(u, v)));
}

int FEL_orient(const FEL_vector3<float>& a, const FEL_vector3<float>& b,
               const FEL_vector3<float>& c, const FEL_vector3<float>& d,
               const FEL_vector3<float>& q) {
    const FEL_vector3<double> u = wide(b - a), v = wide(c - a), w = wide(d - a), r = wide(q - a);
    const FEL_vector3<double> m1 = FEL_cross(u, v), m2 = FEL_cross(v, w);
    const int o1 = sign(FEL_dot(r, m1)), o2 = sign(FEL_dot(r, m2));
    if (o1 == o2) return o1;

    const double e1 = std::min({length(u), length(v), length(wide(b - c))});
    const double e2 = std::min({length(v), length(w), length(wide(c - d))});
    const double distance = length(r);
    const bool sound1 = sound(e1, distance), sound2 = sound(e2, distance);
    if (!sound1) return sound2 ? o2 : 0;
    if (!sound2) return o1;

    // Which way the quadrilateral folds decides between the two triangles' answers.
    switch (sign(FEL_dot(w, m1))) {
        case 1:
            return std::min(o1, o2);
        case -1:
            return std::max(o1, o2);
        case 0:
            return length(m2) < length(m1) ? o1 : o2;
        default:
            throw FEL_exception(__FILE__, impossible_fold_line);
    }
}

bool FEL_bounding_box(const FEL_vector3<float>& min, const FEL_vector3<float>& max,
                      const FEL_vector3<float>& p) {
    return min.x <= p.x && p.x <= max.x && min.y <= p.y && p.y <= max.y && min.z <= p.z &&
           p.z <= max.z;
}
