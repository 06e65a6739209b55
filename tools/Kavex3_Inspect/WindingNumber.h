// Generalized winding number of a triangle surface, fast through a tree of triangle clusters.
#pragma once

#include <array>
#include <vector>

#include "FEL_vector3.h"

// The winding number of a point is the solid angle the surface subtends there over 4 pi, signed
// by the triangles' orientation: 1 inside a closed outward surface, 0 outside, and across a hole
// it passes smoothly from one to the other, so that "at least 1/2" is an inside test that
// tolerates holes. A cluster seen from farther than s_dblFarRatio times its radius counts as
// its summed area vector at its centre (a dipole); nearer ones open down to single triangles,
// which count exactly.
class WindingNumber {
  public:
    WindingNumber(const std::vector<FEL_vector3<float>>& vecPoints,
                  const std::vector<std::array<int, 3>>& vecTriangles);
    double At(const std::array<double, 3>& q) const;
    // Whether any triangle's box meets the box lo..hi.
    bool Touches(const std::array<double, 3>& lo, const std::array<double, 3>& hi) const;
    bool Empty() const { return m_vecTriangles.empty(); }

  private:
    struct Node {
        std::array<double, 3> lo, hi, centre, area;
        double dblRadius2;
        int intFirst, intCount, intLeft;  // intLeft + 1 is the right child; -1 for a leaf
    };
    void Build(int n, int intFirst, int intCount);
    double AtNode(int n, const std::array<double, 3>& q) const;
    bool TouchesNode(int n, const std::array<double, 3>& lo, const std::array<double, 3>& hi) const;

    std::vector<std::array<double, 9>> m_vecTriangles;
    std::vector<Node> m_vecNodes;
};
