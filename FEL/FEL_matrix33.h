// Three by three matrix in row order, acting on FEL_vector3 values.
#pragma once

#include <type_traits>

#include "FEL_vector3.h"

// The scalar in which a matrix product with a vector of U is computed: U itself, or the component
// type when U is a vector (a matrix times a vector of vectors).
template <class U>
struct FEL_matrix33_scalar {
    using type = U;
};
template <class U>
struct FEL_matrix33_scalar<FEL_vector3<U>> {
    using type = U;
};

template <class T>
class FEL_matrix33 {
  public:
    // The identity.
    FEL_matrix33() : m{1, 0, 0, 0, 1, 0, 0, 0, 1} {}
    // The three vectors become the rows, in the order given.
    FEL_matrix33(const FEL_vector3<T>& row0, const FEL_vector3<T>& row1, const FEL_vector3<T>& row2)
        : m{row0.x, row0.y, row0.z, row1.x, row1.y, row1.z, row2.x, row2.y, row2.z} {}

    T& operator()(int row, int column) { return m[row * 3 + column]; }
    const T& operator()(int row, int column) const { return m[row * 3 + column]; }

    // Row r dotted with v, summed column 0, 1, 2 in v's component type.
    template <class U>
    FEL_vector3<U> operator*(const FEL_vector3<U>& v) const {
        using S = typename FEL_matrix33_scalar<U>::type;
        FEL_vector3<U> result;
        for (int r = 0; r < 3; ++r) {
            U sum = v.x * S(m[r * 3]);
            sum = sum + v.y * S(m[r * 3 + 1]);
            sum = sum + v.z * S(m[r * 3 + 2]);
            result[r] = sum;
        }
        return result;
    }

    template <class U>
    FEL_matrix33 operator*(const FEL_matrix33<U>& b) const {
        FEL_matrix33 result;
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c)
                result(r, c) =
                    m[r * 3] * T(b(0, c)) + m[r * 3 + 1] * T(b(1, c)) + m[r * 3 + 2] * T(b(2, c));
        return result;
    }

    FEL_matrix33 transpose() const {
        FEL_matrix33 result;
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 3; ++c) result(r, c) = (*this)(c, r);
        return result;
    }

    T determinant() const {
        return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
               m[2] * (m[3] * m[7] - m[4] * m[6]);
    }

  private:
    T m[9];
};
