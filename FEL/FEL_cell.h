// Value handles of the mesh interface: times, positions and cells.
#pragma once

#include <cstdint>
#include <ostream>

enum FEL_time_representation_enum {
    FEL_TIME_UNDEFINED = 0,
    FEL_TIME_PHYSICAL = 1,  // converted by the mesh to FEL_TIME_FLOAT before use
    FEL_TIME_FLOAT = 2,
    FEL_TIME_STEP = 3,  // an integer time step index
};

struct FEL_time {
    FEL_time_representation_enum representation = FEL_TIME_UNDEFINED;
    union {
        float f;
        std::int32_t i;
    } value = {0.0f};

    FEL_time() = default;
    static FEL_time from_float(float f, FEL_time_representation_enum r = FEL_TIME_FLOAT);
    static FEL_time from_step(std::int32_t step);
    bool is_defined() const { return representation != FEL_TIME_UNDEFINED; }
};

// "<undefined>", the float, or the step index.
std::ostream& operator<<(std::ostream& out, const FEL_time& time);

struct FEL_phys_pos {
    float x = 0, y = 0, z = 0;
    FEL_time time;

    FEL_phys_pos() = default;
    FEL_phys_pos(float x, float y, float z, const FEL_time& time = FEL_time())
        : x(x), y(y), z(z), time(time) {}
};

// "(x, y, z)" or "(x, y, z, time)".
std::ostream& operator<<(std::ostream& out, const FEL_phys_pos& pos);

// A real-valued index position in a zone (-1: none).
struct FEL_structured_pos {
    float i = 0, j = 0, k = 0;
    FEL_time time;
    std::int32_t zone = -1;

    FEL_structured_pos() = default;
    FEL_structured_pos(float i, float j, float k, std::int32_t zone = -1)
        : i(i), j(j), k(k), zone(zone) {}
};

// As FEL_phys_pos, with " (zone z)" before the closing parenthesis when there is a zone.
std::ostream& operator<<(std::ostream& out, const FEL_structured_pos& pos);

enum FEL_cell_type_enum {
    FEL_CELL_UNINITIALIZED = 0,
    FEL_CELL_VERTEX = 1,
    FEL_CELL_EDGE = 2,
    FEL_CELL_TRIANGLE = 3,
    FEL_CELL_QUADRILATERAL = 4,
    FEL_CELL_TETRAHEDRON = 5,
    FEL_CELL_PYRAMID = 6,
    FEL_CELL_PRISM = 7,
    FEL_CELL_HEXAHEDRON = 8,
};

// Names one cell of a mesh. Structured meshes give the lower corner of the base hexahedron in
// i, j, k and the part of it in sub; unstructured meshes give the element number in i.
struct FEL_cell {
    static const int dim_of_type[9];
    static const int n_nodes_of_type[9];

    std::int16_t type = FEL_CELL_UNINITIALIZED;
    std::int16_t sub = -1;
    std::int32_t i = 0, j = 0, k = 0;
    std::int32_t zone = -1;
    FEL_time time;

    FEL_cell() = default;
    FEL_cell(int type, int i, int j, int k, int sub = -1, int zone = -1)
        : type(std::int16_t(type)), sub(std::int16_t(sub)), i(i), j(j), k(k), zone(zone) {}

    int get_type() const { return type; }
    int get_dim() const { return dim_of_type[type]; }
    int get_n_nodes() const { return n_nodes_of_type[type]; }
    bool operator==(const FEL_cell& c) const {
        return type == c.type && sub == c.sub && i == c.i && j == c.j && k == c.k && zone == c.zone;
    }
    bool operator!=(const FEL_cell& c) const { return !(*this == c); }
};

struct FEL_vertex_cell : FEL_cell {
    FEL_vertex_cell() { type = FEL_CELL_VERTEX; }
    FEL_vertex_cell(int i, int j, int k, int zone = -1)
        : FEL_cell(FEL_CELL_VERTEX, i, j, k, -1, zone) {}
    explicit FEL_vertex_cell(const FEL_cell& c) : FEL_cell(c) {}
};

// Letter, "(i, j, k)", ".sub" when sub >= 0, ":zone" when zone != -1; "<uninitialized cell>" for
// type 0. A type above 8 throws FEL_exception.
std::ostream& operator<<(std::ostream& out, const FEL_cell& cell);
