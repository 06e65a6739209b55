// Point predicates on double[3] points: closeness, signed volumes, sides of a plane, lines through
// triangles, projected orientation, points on lines and crossing segments.
#pragma once

// Equal exponents and mantissas within 0.0001; a zero shifts both by 1.0 first.
bool Close(double a, double b);
// Six times the signed volume of abcd.
double Volume6(const double* a, const double* b, const double* c, const double* d);
// p and q not strictly on one side of plane abc (a point in the plane counts as opposite).
bool OppositeSides(const double* a, const double* b, const double* c, const double* p,
                   const double* q);
// The line pq passes through triangle abc, edges, vertices and the plane itself included.
bool DoesIntersect(const double* a, const double* b, const double* c, const double* p,
                   const double* q);
double orient2d(const double* a, const double* b, const double* c);
// p on the infinite line ab.
bool PointOn3DLine(const double* a, const double* b, const double* p);
// Segments ab and cd cross strictly inside both, in a projection chosen from ab.
bool LineIntersect(const double* a, const double* b, const double* c, const double* d);
