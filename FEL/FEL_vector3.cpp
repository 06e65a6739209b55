// Tolerant float comparison and the ordering of float vectors built on it.
#include "FEL_vector3.h"

#include <cmath>

bool g_blnUseClose = true;

bool FEL_Close(float a, float b) {
    const double tolerance = 0.0001;
    if (!g_blnUseClose) return a == b;
    int exponent_a = 0;
    int exponent_b = 0;
    const double mantissa_a = std::frexp(double(a), &exponent_a);
    const double mantissa_b = std::frexp(double(b), &exponent_b);
    if (exponent_a == exponent_b) {
        const float difference = std::fabs(float(mantissa_a) - float(mantissa_b));
        if (tolerance > difference) return true;
    }
    const float abs_a = std::fabs(a);
    const float abs_difference = std::fabs(a - b);
    if (double(abs_a) * tolerance >= double(abs_difference)) return true;
    return std::fabs(a) <= tolerance && std::fabs(b) <= tolerance;
}

bool operator<(const FEL_vector3<float>& a, const FEL_vector3<float>& b) {
    if (!FEL_Close(a.x, b.x)) return a.x < b.x;
    if (!FEL_Close(a.y, b.y)) return a.y < b.y;
    if (!FEL_Close(a.z, b.z)) return a.z < b.z;
    return false;
}
