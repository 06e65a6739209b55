// Polygon working records and the clipping of polygons against axis-aligned lines.
#pragma once

// A polygon of x[i], y[i] points; the arrays hold capacity points and grow by 10. The records are
// kept and reused, so that clipping allocates only while a record is still growing.
struct ClipPolygon {
    int capacity;
    int count;
    double* x;
    double* y;
};

// Makes room for at least n points in poly, in steps of 10.
void reserve_clip_polygon(ClipPolygon* poly, int n);
// Appends one point, growing the record by 10 when full.
void append_clip_point(ClipPolygon* poly, double x, double y);

// One Sutherland-Hodgman stage: clips the closed polygon in (last point = first point) against the
// half plane of coordinate coord (0 for x, 1 for y) below value (keepBelow non-zero) or above it.
// A point exactly on the line is outside. out is emptied first, and a non-empty result is closed.
void clip_polygon_with_axis_aligned_line(const ClipPolygon* in, int coord, double value,
                                         int keepBelow, ClipPolygon* out);

// Absolute shoelace area of a closed polygon; 0 with fewer than two points.
double clip_polygon_area(const ClipPolygon* poly);
