// Stream forms of times, positions and cells, and the cell type tables.
#include "FEL_cell.h"

#include "FEL_exception.h"

const int FEL_cell::dim_of_type[9] = {0, 0, 1, 2, 2, 3, 3, 3, 3};
const int FEL_cell::n_nodes_of_type[9] = {0, 1, 2, 3, 4, 4, 5, 6, 8};

FEL_time FEL_time::from_float(float f, FEL_time_representation_enum r) {
    FEL_time t;
    t.representation = r;
    t.value.f = f;
    return t;
}

FEL_time FEL_time::from_step(std::int32_t step) {
    FEL_time t;
    t.representation = FEL_TIME_STEP;
    t.value.i = step;
    return t;
}

std::ostream& operator<<(std::ostream& out, const FEL_time& time) {
    switch (time.representation) {
        case FEL_TIME_UNDEFINED:
            return out << "<undefined>";
        case FEL_TIME_STEP:
            return out << time.value.i;
        default:
            return out << time.value.f;
    }
}

namespace {

void write_xyz_time(std::ostream& out, float x, float y, float z, const FEL_time& time) {
    out << "(" << x << ", " << y << ", " << z;
    if (time.is_defined()) out << ", " << time;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const FEL_phys_pos& pos) {
    write_xyz_time(out, pos.x, pos.y, pos.z, pos.time);
    return out << ")";
}

std::ostream& operator<<(std::ostream& out, const FEL_structured_pos& pos) {
    write_xyz_time(out, pos.i, pos.j, pos.k, pos.time);
    if (pos.zone != -1) out << " (zone " << pos.zone << ")";
    return out << ")";
}

std::ostream& operator<<(std::ostream& out, const FEL_cell& cell) {
    static const char* const letters[9] = {"", "V", "E", "F", "Q", "T", "P", "W", "H"};
    if (cell.type < 0 || cell.type > FEL_CELL_HEXAHEDRON) throw FEL_exception(__FILE__, __LINE__);
    if (cell.type == FEL_CELL_UNINITIALIZED) return out << "<uninitialized cell>";
    out << letters[cell.type] << "(" << cell.i << ", " << cell.j << ", " << cell.k << ")";
    if (cell.sub >= 0) out << "." << cell.sub;
    if (cell.zone != -1) out << ":" << cell.zone;
    return out;
}
