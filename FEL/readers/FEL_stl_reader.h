// STL surfaces: ASCII and binary reading, merging of equal vertices, and zones by shared edges.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"

// One facet as read: x, y, z of its three vertices.
struct _FEL_triangle {
    FEL_vector3<float> vertex[3];
};

// An undirected edge: two vertex numbers, the smaller first.
class FEL_stl_edge {
  public:
    FEL_stl_edge(int a, int b) { Set(a, b); }
    FEL_stl_edge(const FEL_stl_edge& other) = default;
    FEL_stl_edge& operator=(const FEL_stl_edge& other) = default;
    void Set(int a, int b) {
        first = a < b ? a : b;
        second = a < b ? b : a;
    }
    int First() const { return first; }
    int Second() const { return second; }

    bool operator<(const FEL_stl_edge& o) const {
        return first < o.first || (first == o.first && second < o.second);
    }
    bool operator==(const FEL_stl_edge& o) const { return first == o.first && second == o.second; }
    bool operator!=(const FEL_stl_edge& o) const { return !(*this == o); }
    bool operator>(const FEL_stl_edge& o) const { return o < *this; }
    bool operator<=(const FEL_stl_edge& o) const { return !(o < *this); }
    bool operator>=(const FEL_stl_edge& o) const { return !(*this < o); }

  private:
    int first, second;
};

// binary 1 reads the binary form, anything else ASCII. Vertices merge only when bit for bit equal
// (0.0 and -0.0 included); they are numbered in coordinate order, and each triangle's zone is its
// edge-connected part. A binary file whose size does not fit its facet count ends the process
// with status 5.
FEL_pointer<FEL_mesh> FEL_stl_read_mesh(std::string path, unsigned binary);

// The bounding box of the mesh that FEL_read_mesh makes of path, from its facets alone, without
// the merge: true only for a file that FEL_read_mesh reads as a binary STL (no number opens it for
// the text tries, its size is that of its count), with facets, no coordinate that is not a number
// and no side of the box at 0.0 or -0.0 (which of the two the merge keeps, the box shows).
bool FEL_stl_binary_bounds(const std::string& path, FEL_vector3<float>* low,
                           FEL_vector3<float>* high);

void FEL_stl_read_mesh_ascii(std::string path, std::vector<_FEL_triangle>& triangles);
void FEL_stl_read_mesh_binary(std::string path, std::vector<_FEL_triangle>& triangles);
// Whether the ASCII reading finds at least one complete facet; stops after the first.
bool FEL_stl_ascii_has_facet(const std::string& path);

// Moves the stream just behind the next occurrence of token; throws FEL_unexpected_eof_error when
// the stream ends first.
void EatString(std::ifstream& in, std::string token);
