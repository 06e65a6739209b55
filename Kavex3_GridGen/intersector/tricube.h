// The triangle-cube test: does a triangle touch the cube of edge 1 centred on the origin.
#pragma once

// Three vertices, already mapped to cube coordinates.
struct _Triangle3 {
    double v1[3];
    double v2[3];
    double v3[3];
};

// Outcodes; 0 means inside. Bits: faces 0-5, edge planes 8-19, corner planes 24-31.
long face_plane(const double* p);
long bevel_2d(const double* p);
long bevel_3d(const double* p);
// face_plane of (p1 - p2) * alpha + p2, masked.
long check_point(const double* p1, const double* p2, double alpha, long mask);
// True if segment p1 p2 enters the cube through one of the faces flagged in outcode_diff.
long check_line(const double* p1, const double* p2, long outcode_diff);
long point_triangle_intersection(const double* p, _Triangle3 t);
long t_c_intersection(_Triangle3 t);
