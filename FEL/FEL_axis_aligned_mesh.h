// Meshes whose nodes lie on three independent axes: regular, irregular and null axes, and the
// regular meshes built from them.
#pragma once

#include "FEL_structured_mesh.h"

// A one-dimensional coordinate with a count of nodes. locate gives the cell holding x.
class FEL_axis {
  public:
    explicit FEL_axis(int count) : count(count) {}
    virtual ~FEL_axis() = default;
    virtual int locate(float x, int* i) const = 0;
    // The hint is not used: forwards to the plain form.
    virtual int locate(float x, int, int* i) const { return locate(x, i); }
    virtual int coordinates_at_index(int i, float* x) const = 0;
    // 1 when value lies on the axis; a regular axis writes the coordinate either way.
    virtual int coordinates_at_structured(float value, float* x) const = 0;
    virtual int compute_bounding_interval(float* low, float* high) const = 0;
    int get_count() const { return count; }

  protected:
    int count;
};

// Node i at i * spacing + origin.
class FEL_regular_axis : public FEL_axis {
  public:
    using FEL_axis::locate;
    FEL_regular_axis(int count, float origin, float spacing)
        : FEL_axis(count),
          origin(origin),
          spacing(spacing),
          upper(float(count - 1) * spacing + origin) {}
    // trunc((x - origin) / spacing); the upper end answers the cell below it, and only exactly.
    int locate(float x, int* i) const override;
    int coordinates_at_index(int i, float* x) const override;
    int coordinates_at_structured(float value, float* x) const override;
    int compute_bounding_interval(float* low, float* high) const override;

  private:
    float origin, spacing, upper;
};

// Node i at values[i], ascending; the array comes from new[] and becomes the axis's.
class FEL_irregular_axis : public FEL_axis {
  public:
    using FEL_axis::locate;
    FEL_irregular_axis(int count, float* values) : FEL_axis(count), values(values) {}
    ~FEL_irregular_axis() override { delete[] values; }
    // Bisection; a point on an interior node answers the cell above it.
    int locate(float x, int* i) const override;
    int coordinates_at_index(int i, float* x) const override;
    int coordinates_at_structured(float value, float* x) const override;
    int compute_bounding_interval(float* low, float* high) const override;

  private:
    float* values;
};

// One node at 0: every query answers 0.0 and 1.
class FEL_null_axis : public FEL_axis {
  public:
    using FEL_axis::locate;
    FEL_null_axis() : FEL_axis(1) {}
    int locate(float, int* i) const override;
    int coordinates_at_index(int, float* x) const override;
    int coordinates_at_structured(float, float* x) const override;
    int compute_bounding_interval(float* low, float* high) const override;
};

// Owns its three axes.
class FEL_axis_aligned_mesh : public FEL_structured_mesh {
  public:
    FEL_axis_aligned_mesh(FEL_axis* x, FEL_axis* y, FEL_axis* z, const std::string& name);
    ~FEL_axis_aligned_mesh() override;
    FEL_axis_aligned_mesh(const FEL_axis_aligned_mesh&) = delete;
    FEL_axis_aligned_mesh& operator=(const FEL_axis_aligned_mesh&) = delete;

    int coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const override;
    int coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                   FEL_vector3<float>* out) const override;
    int coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                      FEL_vector3<float>* out) const override;
    int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                             const FEL_time& time) override;
    // The hexahedron, or in a decomposed mesh its tetrahedron; the first failing axis's code.
    int locate(const FEL_phys_pos& pos, FEL_cell* out) const override;
    int locate(const FEL_phys_pos& pos, FEL_cell&, FEL_cell* out) const override {
        return locate(pos, out);
    }

  protected:
    FEL_axis* axes[3];
};

class FEL_regular_mesh : public FEL_axis_aligned_mesh {
  public:
    FEL_regular_mesh(int ni, int nj, int nk, float dx, float dy, float dz,
                     const std::string& name = "regular_mesh");
};

// Regular in x and y, one node at z = 0.
class FEL_regular_mesh2 : public FEL_axis_aligned_mesh {
  public:
    FEL_regular_mesh2(int ni, int nj, float dx, float dy,
                      const std::string& name = "regular_mesh2");
    using FEL_axis_aligned_mesh::locate;
    // The quadrilateral, or in a decomposed mesh its triangle, of the single k plane.
    int locate(const FEL_phys_pos& pos, FEL_cell* out) const override;
};

class FEL_regular_xy_irregular_z_mesh : public FEL_axis_aligned_mesh {
  public:
    // z: nk ascending values from new[], which become the mesh's.
    FEL_regular_xy_irregular_z_mesh(int ni, int nj, int nk, float dx, float dy, float* z,
                                    const std::string& name = "regular_xy_irregular_z_mesh");
};
