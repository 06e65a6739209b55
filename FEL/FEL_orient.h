// Orientation predicates and the closed box test behind the location walks of structured meshes.
#pragma once

#include "FEL_vector3.h"

// +1, -1 or 0: the sign of (by - cy) ax - (ay - cy) bx + (ay - by) cx, in single precision.
int FEL_orient(float ax, float ay, float bx, float by, float cx, float cy);
// The sign of (d - a) . ((b - a) x (c - a)): differences in single, products in double precision.
int FEL_orient(const FEL_vector3<float>& a, const FEL_vector3<float>& b,
               const FEL_vector3<float>& c, const FEL_vector3<float>& d);
// The side of q relative to the quadrilateral a, b, c, d taken as the triangles a b c and a c d.
int FEL_orient(const FEL_vector3<float>& a, const FEL_vector3<float>& b,
               const FEL_vector3<float>& c, const FEL_vector3<float>& d,
               const FEL_vector3<float>& q);
// min <= p <= max on all three axes, bounds included.
bool FEL_bounding_box(const FEL_vector3<float>& min, const FEL_vector3<float>& max,
                      const FEL_vector3<float>& p);
