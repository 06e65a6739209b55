// Lattice topology: tables, counts, numbering of cells and the walk.
#include "FEL_structured_mesh.h"

#include <algorithm>

#include "FEL_exception.h"

const int FEL_structured_mesh::quadrilateral_vertex[3][4] = {
    {0, 2, 6, 4}, {0, 4, 5, 1}, {0, 1, 3, 2}};

const int FEL_structured_mesh::subtriangle_vertex[20][3] = {
    {0, 2, 6}, {0, 6, 4}, {0, 2, 4}, {2, 6, 4}, {0, 5, 1}, {0, 4, 5}, {0, 4, 1},
    {1, 4, 5}, {0, 1, 3}, {0, 3, 2}, {0, 1, 2}, {1, 3, 2}, {0, 5, 3}, {0, 3, 6},
    {0, 6, 5}, {3, 5, 6}, {1, 2, 4}, {1, 4, 7}, {1, 7, 2}, {2, 7, 4}};

const int FEL_structured_mesh::subtetra_vertex[10][4] = {
    {3, 6, 5, 7}, {0, 3, 5, 1}, {0, 6, 3, 2}, {0, 5, 6, 4}, {0, 5, 3, 6},
    {1, 4, 2, 0}, {1, 2, 7, 3}, {1, 7, 4, 5}, {2, 4, 7, 6}, {1, 2, 4, 7}};

const int FEL_structured_mesh::edge_vertex[21][2] = {
    {0, 0}, {0, 1}, {0, 2}, {0, 3}, {0, 4}, {0, 5}, {0, 6}, {0, 7}, {1, 0}, {1, 1}, {1, 2},
    {1, 3}, {1, 4}, {1, 5}, {1, 6}, {1, 7}, {2, 0}, {2, 1}, {2, 2}, {2, 3}, {2, 4}};

const int FEL_structured_mesh::hexa_face[12][4] = {
    {0, 2, 6, 4}, {3, 1, 5, 7}, {0, 4, 5, 1}, {3, 7, 6, 2}, {0, 1, 3, 2}, {5, 4, 6, 7},
    {2, 6, 4, 0}, {1, 5, 7, 3}, {1, 0, 4, 5}, {2, 3, 7, 6}, {1, 3, 2, 0}, {4, 6, 7, 5}};

const int FEL_structured_mesh::subtetra_face[10][4][3] = {
    {{3, 6, 5}, {6, 5, 7}, {5, 7, 3}, {7, 3, 6}}, {{0, 3, 5}, {3, 5, 1}, {5, 1, 0}, {1, 0, 3}},
    {{0, 6, 3}, {6, 3, 2}, {3, 2, 0}, {2, 0, 6}}, {{0, 5, 6}, {5, 6, 4}, {6, 4, 0}, {4, 0, 5}},
    {{0, 5, 3}, {5, 3, 6}, {3, 6, 0}, {6, 0, 5}}, {{1, 4, 2}, {4, 2, 0}, {2, 0, 1}, {0, 1, 4}},
    {{1, 2, 7}, {2, 7, 3}, {7, 3, 1}, {3, 1, 2}}, {{1, 7, 4}, {7, 4, 5}, {4, 5, 1}, {5, 1, 7}},
    {{2, 4, 7}, {4, 7, 6}, {7, 6, 2}, {6, 2, 4}}, {{1, 2, 4}, {2, 4, 7}, {4, 7, 1}, {7, 1, 2}}};

const double FEL_structured_mesh::subtetra_centroid[10][3] = {
    {0.75, 0.75, 0.75}, {0.75, 0.25, 0.25}, {0.25, 0.75, 0.25}, {0.25, 0.25, 0.75},
    {0.5, 0.5, 0.5},    {0.25, 0.25, 0.25}, {0.75, 0.75, 0.25}, {0.75, 0.25, 0.75},
    {0.25, 0.75, 0.75}, {0.5, 0.5, 0.5}};

namespace {

// One run of the linear numbering of a dimension: the cells whose lower corner ranges over the
// nodes less (di, dj, dk), with per sub-cells each, starting at sub_even or sub_odd.
struct cell_run {
    int di, dj, dk;
    int sub_even, sub_odd;
    int per;
    int type;
};

const cell_run vertex_runs[] = {{0, 0, 0, -1, -1, 1, FEL_CELL_VERTEX}};
const cell_run edge_runs[] = {
    {1, 0, 0, 1, 1, 1, FEL_CELL_EDGE},  {0, 1, 0, 2, 2, 1, FEL_CELL_EDGE},
    {0, 0, 1, 4, 4, 1, FEL_CELL_EDGE},  {1, 1, 0, 3, 10, 1, FEL_CELL_EDGE},
    {1, 0, 1, 5, 12, 1, FEL_CELL_EDGE}, {0, 1, 1, 6, 20, 1, FEL_CELL_EDGE}};
const cell_run quadrilateral_runs[] = {{0, 1, 1, 0, 0, 1, FEL_CELL_QUADRILATERAL},
                                       {1, 0, 1, 1, 1, 1, FEL_CELL_QUADRILATERAL},
                                       {1, 1, 0, 2, 2, 1, FEL_CELL_QUADRILATERAL}};
const cell_run triangle_runs[] = {{0, 1, 1, 0, 2, 2, FEL_CELL_TRIANGLE},
                                  {1, 0, 1, 4, 6, 2, FEL_CELL_TRIANGLE},
                                  {1, 1, 0, 8, 10, 2, FEL_CELL_TRIANGLE},
                                  {1, 1, 1, 12, 16, 4, FEL_CELL_TRIANGLE}};
const cell_run hexahedron_runs[] = {{1, 1, 1, -1, -1, 1, FEL_CELL_HEXAHEDRON}};
const cell_run tetrahedron_runs[] = {{1, 1, 1, 0, 5, 5, FEL_CELL_TETRAHEDRON}};

// The runs of a cell type; edges of an undecomposed mesh stop after the three axis runs.
const cell_run* runs_of_type(int type, bool decomposed, int* n) {
    switch (type) {
        case FEL_CELL_VERTEX:
            *n = 1;
            return vertex_runs;
        case FEL_CELL_EDGE:
            *n = decomposed ? 6 : 3;
            return edge_runs;
        case FEL_CELL_QUADRILATERAL:
            *n = 3;
            return quadrilateral_runs;
        case FEL_CELL_TRIANGLE:
            *n = 4;
            return triangle_runs;
        case FEL_CELL_HEXAHEDRON:
            *n = 1;
            return hexahedron_runs;
        case FEL_CELL_TETRAHEDRON:
            *n = 1;
            return tetrahedron_runs;
        default:
            *n = 0;
            return nullptr;
    }
}

int type_of_dim(int dim, bool decomposed) {
    static const int undecomposed[4] = {FEL_CELL_VERTEX, FEL_CELL_EDGE, FEL_CELL_QUADRILATERAL,
                                        FEL_CELL_HEXAHEDRON};
    static const int simplicial[4] = {FEL_CELL_VERTEX, FEL_CELL_EDGE, FEL_CELL_TRIANGLE,
                                      FEL_CELL_TETRAHEDRON};
    if (dim < 0 || dim > 3) return FEL_CELL_UNINITIALIZED;
    return decomposed ? simplicial[dim] : undecomposed[dim];
}

}  // namespace

FEL_structured_mesh::FEL_structured_mesh(int ni, int nj, int nk, const std::string& name)
    : FEL_single_mesh(name), ni(ni), nj(nj), nk(nk), plane(ni * nj) {
    for (int c = 0; c < 8; ++c)
        corner_offset[c] = (c & 1) + ((c >> 1) & 1) * ni + ((c >> 2) & 1) * plane;
}

int FEL_structured_mesh::get(FEL_set_keyword_enum keyword, int* count, int* values,
                             int zone) const {
    if (keyword == FEL_STRUCTURED_DIMENSIONS) {
        values[0] = ni;
        values[1] = nj;
        values[2] = nk;
        if (count != nullptr) *count = 3;
        return 1;
    }
    return FEL_single_mesh::get(keyword, count, values, zone);
}

int FEL_structured_mesh::card(int dim) const {
    const int nq = ni + nj + nk + 3 * ni * nj * nk - 2 * ((nk + nj) * ni + nk * nj);
    const int hexahedra = (ni - 1) * (nj - 1) * (nk - 1);
    const bool decomposed = simplicial_decomposition != 0;
    switch (dim) {
        case 0:
            return ni * nj * nk;
        case 1: {
            const int axis_edges = 3 * nk * ni * nj - ni * nj - nk * ni - nk * nj;
            return decomposed ? axis_edges + nq : axis_edges;
        }
        case 2:
            return decomposed ? 4 * hexahedra + 2 * nq : nq;
        case 3:
            return decomposed ? 5 * hexahedra : hexahedra;
        default:
            return 0;
    }
}

bool FEL_structured_mesh::on_mesh(const FEL_vertex_cell& v) const {
    return v.i >= 0 && v.i < ni && v.j >= 0 && v.j < nj && v.k >= 0 && v.k < nk;
}

int FEL_structured_mesh::int_to_cell(int dim, int index, FEL_cell* cell, int zone) const {
    const bool decomposed = simplicial_decomposition != 0;
    int n_runs = 0;
    const cell_run* runs = runs_of_type(type_of_dim(dim, decomposed), decomposed, &n_runs);
    if (index < 0) return 0;
    for (int r = 0; r < n_runs; ++r) {
        const cell_run& run = runs[r];
        const int ei = ni - run.di, ej = nj - run.dj, ek = nk - run.dk;
        const int count = (ei > 0 && ej > 0 && ek > 0) ? ei * ej * ek * run.per : 0;
        if (index >= count) {
            index -= count;
            continue;
        }
        const int element = index / run.per;
        const int i = element % ei, j = (element / ei) % ej, k = element / (ei * ej);
        const bool odd = run.sub_even != run.sub_odd && simplicial_decomposition_odd(i, j, k);
        *cell =
            FEL_cell(run.type, i, j, k, (odd ? run.sub_odd : run.sub_even) + index % run.per, zone);
        return 1;
    }
    return 0;
}

int FEL_structured_mesh::cell_to_int(const FEL_cell& cell, int* out) const {
    int n_runs = 0;
    const cell_run* runs = runs_of_type(cell.type, true, &n_runs);
    int offset = 0;
    for (int r = 0; r < n_runs; ++r) {
        const cell_run& run = runs[r];
        const int ei = ni - run.di, ej = nj - run.dj, ek = nk - run.dk;
        const int count = (ei > 0 && ej > 0 && ek > 0) ? ei * ej * ek * run.per : 0;
        const bool odd =
            run.sub_even != run.sub_odd && simplicial_decomposition_odd(cell.i, cell.j, cell.k);
        const int part = cell.sub - (odd ? run.sub_odd : run.sub_even);
        if (part < 0 || part >= run.per) {
            offset += count;
            continue;
        }
        if (cell.i < 0 || cell.i >= ei || cell.j < 0 || cell.j >= ej || cell.k < 0 || cell.k >= ek)
            return 0;
        *out = offset + (cell.i + ei * (cell.j + ej * cell.k)) * run.per + part;
        return 1;
    }
    return 0;
}

int FEL_structured_mesh::locate(const FEL_phys_pos&, FEL_cell*) const {
    throw FEL_exception(__FILE__, __LINE__);
}

int FEL_structured_mesh::locate(const FEL_phys_pos&, FEL_cell&, FEL_cell*) const {
    throw FEL_exception(__FILE__, __LINE__);
}

int FEL_structured_mesh::coordinates_at_cell(const FEL_cell&, FEL_vector3<float>*) const {
    throw FEL_exception(__FILE__, __LINE__);
}

int FEL_structured_mesh::begin(FEL_vertex_cell_iter* iter, int key, char* args) const {
    const int n_nodes[3] = {ni, nj, nk};
    return begin_index_walk(iter, key, args, n_nodes);
}

int FEL_structured_mesh::begin(FEL_cell_iter* iter, int key, char* args) const {
    clear_walk(iter);
    const int n_nodes[3] = {ni, nj, nk};
    FEL_walk_bounds bounds = {{0, 0, 0},
                              {std::max(ni - 2, 0), std::max(nj - 2, 0), std::max(nk - 2, 0)},
                              {1, 1, 1},
                              {false, false, false},
                              -1};
    if (apply_begin_keys(key, args, n_nodes, &bounds) != 1) return 0;
    int n_free = 0, fixed_axis = 0, free_axis = 0;
    for (int a = 0; a < 3; ++a) {
        if (bounds.fixed[a] || n_nodes[a] == 1) {
            fixed_axis = a;
        } else {
            ++n_free;
            free_axis = a;
        }
    }
    iter->cell = FEL_cell();
    start_walk(iter, bounds);
    const bool decomposed = simplicial_decomposition != 0;
    const bool odd = simplicial_decomposition_odd(bounds.min[0], bounds.min[1], bounds.min[2]);
    FEL_cell& cell = iter->cell;
    switch (n_free) {
        case 3:
            cell.type = decomposed ? FEL_CELL_TETRAHEDRON : FEL_CELL_HEXAHEDRON;
            cell.sub = decomposed ? (odd ? 5 : 0) : -1;
            break;
        case 2:
            cell.type = decomposed ? FEL_CELL_TRIANGLE : FEL_CELL_QUADRILATERAL;
            cell.sub = decomposed ? 4 * fixed_axis + (odd ? 2 : 0) : fixed_axis;
            break;
        case 1:
            cell.type = FEL_CELL_EDGE;
            cell.sub = 1 << free_axis;
            break;
        default:
            cell.type = FEL_CELL_VERTEX;
            clear_walk(iter);
            throw FEL_exception(__FILE__, __LINE__);
    }
    if (decomposed && n_free >= 2) iter->advance_mesh = const_cast<FEL_structured_mesh*>(this);
    return 1;
}

void FEL_structured_mesh::advance_callback(FEL_cell_iter* iter) const {
    FEL_cell& cell = iter->cell;
    if (cell.type == FEL_CELL_TRIANGLE) {
        if (cell.sub % 2 == 0) {
            ++cell.sub;
            return;
        }
        const int group = cell.sub / 4;
        if (group > 2) throw FEL_exception(__FILE__, __LINE__);
        iter->step_index();
        cell.sub = std::int16_t(4 * group +
                                (simplicial_decomposition_odd(cell.i, cell.j, cell.k) ? 2 : 0));
        return;
    }
    if (cell.type == FEL_CELL_TETRAHEDRON) {
        ++cell.sub;
        if (cell.sub % 5 == 0) {
            iter->step_index();
            cell.sub = simplicial_decomposition_odd(cell.i, cell.j, cell.k) ? 5 : 0;
        }
        return;
    }
    throw FEL_exception(__FILE__, __LINE__);
}

int FEL_structured_mesh::locate_subsimplex(const FEL_cell& hex, float u, float v, float w,
                                           FEL_cell* out) const {
    const bool odd = simplicial_decomposition_odd(hex.i, hex.j, hex.k);
    const int first = odd ? 5 : 0;
    const float position[3] = {u, v, w};
    int row = first + 4;
    // The corner tetrahedra are the first four rows of a pattern, each cutting off the corner
    // that ends its row: a point within unit distance (summed over axes) of that corner.
    for (int r = first; r < first + 4; ++r) {
        const int apex = subtetra_vertex[r][3];
        float distance = 0.0f;
        for (int a = 0; a < 3; ++a) {
            const float d = position[a] - float((apex >> a) & 1);
            distance += d < 0 ? -d : d;
        }
        if (distance <= 1.0f) {
            row = r;
            break;
        }
    }
    *out = FEL_cell(FEL_CELL_TETRAHEDRON, hex.i, hex.j, hex.k, row, hex.zone);
    return 1;
}
