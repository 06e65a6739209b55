// Small value types: three- and four-component vectors, a node with its iblank, and the tolerant
// float comparison that decides when two coordinates are the same.
#pragma once

#include <cstdint>
#include <ostream>

// Process-wide switch of FEL_Close: true by default; the STL reader clears it while it merges.
extern bool g_blnUseClose;

// Sets g_blnUseClose for its lifetime and gives it back its former value on leaving, by return or
// by exception.
class FEL_use_close_scope {
  public:
    explicit FEL_use_close_scope(bool use) : m_saved(g_blnUseClose) { g_blnUseClose = use; }
    ~FEL_use_close_scope() { g_blnUseClose = m_saved; }
    FEL_use_close_scope(const FEL_use_close_scope&) = delete;
    FEL_use_close_scope& operator=(const FEL_use_close_scope&) = delete;

  private:
    bool m_saved;
};

// The library's notion of equal coordinates: a mantissa test at equal exponents, then a test
// relative to |a| alone (so not symmetric at its edge), then an absolute one near zero.
bool FEL_Close(float a, float b);

template <class T>
struct FEL_vector3 {
    T x, y, z;

    FEL_vector3() : x(), y(), z() {}
    FEL_vector3(T x, T y, T z) : x(x), y(y), z(z) {}
    template <class U>
    explicit FEL_vector3(const FEL_vector3<U>& v) : x(T(v.x)), y(T(v.y)), z(T(v.z)) {}

    T& operator[](int n) { return n == 0 ? x : (n == 1 ? y : z); }
    const T& operator[](int n) const { return n == 0 ? x : (n == 1 ? y : z); }

    FEL_vector3 operator+(const FEL_vector3& v) const { return {x + v.x, y + v.y, z + v.z}; }
    FEL_vector3 operator-(const FEL_vector3& v) const { return {x - v.x, y - v.y, z - v.z}; }
    template <class S>
    FEL_vector3 operator*(S s) const {
        return {x * s, y * s, z * s};
    }
    FEL_vector3& operator+=(const FEL_vector3& v) {
        x += v.x;
        y += v.y;
        z += v.z;
        return *this;
    }
    FEL_vector3& operator-=(const FEL_vector3& v) {
        x -= v.x;
        y -= v.y;
        z -= v.z;
        return *this;
    }
    bool operator==(const FEL_vector3& v) const { return x == v.x && y == v.y && z == v.z; }
    bool operator!=(const FEL_vector3& v) const { return !(*this == v); }
};

template <class T>
T FEL_dot(const FEL_vector3<T>& a, const FEL_vector3<T>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <class T>
FEL_vector3<T> FEL_cross(const FEL_vector3<T>& a, const FEL_vector3<T>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// "(x, y, z)"
template <class T>
std::ostream& operator<<(std::ostream& out, const FEL_vector3<T>& v) {
    return out << "(" << v.x << ", " << v.y << ", " << v.z << ")";
}

// The key order of every vertex map: by x, then y, then z, components that are FEL_Close counting
// as equal, so that coincident vertices share one entry.
bool operator<(const FEL_vector3<float>& a, const FEL_vector3<float>& b);

template <class T>
struct FEL_vector4 {
    T x, y, z, w;

    FEL_vector4() : x(), y(), z(), w() {}
    FEL_vector4(T x, T y, T z, T w) : x(x), y(y), z(z), w(w) {}
    T& operator[](int n) { return n == 0 ? x : (n == 1 ? y : (n == 2 ? z : w)); }
    const T& operator[](int n) const { return n == 0 ? x : (n == 1 ? y : (n == 2 ? z : w)); }
    bool operator==(const FEL_vector4& v) const {
        return x == v.x && y == v.y && z == v.z && w == v.w;
    }
};

// A node's coordinates followed by its iblank value.
struct FEL_vector3f_and_int {
    FEL_vector3<float> v;
    std::int32_t i;
};
