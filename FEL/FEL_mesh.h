// The abstract mesh: keywords and result codes, cell iterators, and the operations every mesh
// answers, with the algorithms the base class implements itself.
#pragma once

#include <cstdarg>
#include <string>

#include "FEL_cell.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"

// Result codes of mesh operations.
enum {
    FEL_FAILURE = 0,
    FEL_SUCCESS = 1,
    FEL_NOT_IMPLEMENTED = 24,
    FEL_ZONE_OUT_OF_RANGE = 25,
};

// Properties for set and get; the numbers are part of the interface.
enum FEL_set_keyword_enum {
    FEL_SIMPLICIAL_DECOMPOSITION = 0,  // 0 none, 1 even, 2 odd
    FEL_INTERPOLATION = 1,             // 1, 16, 32 or 64
    FEL_CURVILINEAR_OPTION_2 = 2,
    FEL_CURVILINEAR_OPTION_3 = 3,
    FEL_CURVILINEAR_OPTION_8 = 8,
    FEL_CURVILINEAR_OPTION_9 = 9,
    FEL_CURVILINEAR_OPTION_10 = 10,
    FEL_STRUCTURED_DIMENSIONS = 16,
    FEL_N_ZONES = 18,
    FEL_VARIES_WITH_TIME = 19,
    FEL_N_TRIANGLE_SETS = 20,
    FEL_N_TRIANGLE_SETS_2 = 21,
    FEL_TRIANGLE_SET_IDS = 22,
};

// Keys of the begin key lists: (key, value) pairs of ints ended by a key of 0.
enum {
    FEL_ITER_I_MIN = -1,
    FEL_ITER_I_MAX = -2,
    FEL_ITER_J_MIN = -3,
    FEL_ITER_J_MAX = -4,
    FEL_ITER_K_MIN = -5,
    FEL_ITER_K_MAX = -6,
    FEL_ITER_I_STEP = -7,
    FEL_ITER_J_STEP = -8,
    FEL_ITER_K_STEP = -9,
    FEL_ITER_FIX_I = -10,
    FEL_ITER_FIX_J = -11,
    FEL_ITER_FIX_K = -12,
    FEL_ITER_ZONE = -15,
};

// Most cells that down_cells, decomposition_cells or adjacent_cells can write for one cell.
const int FEL_MAX_RELATED_CELLS = 64;

// Merges the blanking of two nodes.
int FEL_iblank_combine(int a, int b);

class FEL_mesh;

// A walk over cells: i runs fastest, then j, then k, between inclusive bounds. The cell is the
// iterator's value; done tells that the walk is over.
template <class Cell, class Self>
class FEL_cell_iter_base {
  public:
    // If set, told through done_callback when the walk ends.
    FEL_pointer<FEL_mesh> done_mesh;
    // If set, its advance_callback replaces the plain index step.
    FEL_pointer<FEL_mesh> advance_mesh;
    Cell cell;
    std::int32_t i_min = 0, j_min = 0, k_min = 0;
    std::int32_t i_max = 0, j_max = 0, k_max = 0;
    std::int32_t i_step = 1, j_step = 1, k_step = 1;
    std::int32_t position = 0;
    std::int32_t surface = -1;
    bool done = true;

    // The plain step: i, then j, then k; sets done when k passes its bound.
    void step_index() {
        cell.i += i_step;
        if (cell.i > i_max) {
            cell.i = i_min;
            cell.j += j_step;
            if (cell.j > j_max) {
                cell.j = j_min;
                cell.k += k_step;
                if (cell.k > k_max) {
                    cell.k = k_min;
                    done = true;
                }
            }
        }
    }
    inline void advance();
    Self& operator++() {
        advance();
        return static_cast<Self&>(*this);
    }
    const Cell& operator*() const { return cell; }
    const Cell* operator->() const { return &cell; }
};

class FEL_cell_iter : public FEL_cell_iter_base<FEL_cell, FEL_cell_iter> {};
class FEL_vertex_cell_iter : public FEL_cell_iter_base<FEL_vertex_cell, FEL_vertex_cell_iter> {};

// Iterator bounds as a key list leaves them.
struct FEL_walk_bounds {
    int min[3];
    int max[3];
    int step[3];
    bool fixed[3];
    int zone;
};

class FEL_mesh : public FEL_mutex_reference_counted_object {
  public:
    explicit FEL_mesh(const std::string& name);

    bool is_mesh() const override { return true; }

    // Stores keyword 0 (0 to 2) or 1 (1, 16, 32, 64); answers 0 for anything else.
    virtual int set(FEL_set_keyword_enum keyword, int value);
    // Writes the property's values, and their number if count is not null; 0 for an unknown
    // keyword. zone -1 is the whole mesh.
    virtual int get(FEL_set_keyword_enum keyword, int* count, int* values, int zone = -1) const;
    virtual int get_interpolation() const;
    virtual int get_simplicial_decomposition() const;
    // Three node counts; 0 from a mesh without them.
    virtual int get_structured_dimensions(int* dims) const;
    virtual int get_n_zones() const;
    virtual bool varies_with_time() const;
    // Null for a zone outside the mesh.
    virtual FEL_pointer<FEL_mesh> get_zone(int zone) const = 0;
    // Number of cells of dimension dim.
    virtual int card(int dim) const = 0;

    // Cached on first demand for the requested time.
    virtual int get_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                 const FEL_time& time = FEL_time());
    // A point on the box counts as inside.
    virtual bool inside_bounding_box(const FEL_phys_pos& pos);

    virtual bool on_mesh(const FEL_vertex_cell& vertex) const = 0;
    virtual int get_node_index(const FEL_vertex_cell& vertex) const;
    // One linear node number per node of the cell.
    virtual int get_node_indices(const FEL_cell& cell, int* out) const = 0;
    // The nearest node by an exhaustive walk; the first of equal distances wins.
    virtual int locate_close_vertex_cell(const FEL_phys_pos& pos, FEL_vertex_cell* out) const;
    virtual int adjacent_cells(const FEL_cell& cell, int* n, FEL_cell* out) const = 0;
    virtual int decomposition_cells(const FEL_cell& cell, int* n, FEL_cell* out) const = 0;
    // Cells of dimension dim containing cell; out holds at most max_n; flags are reserved.
    virtual int up_cells(const FEL_cell& cell, int dim, int max_n, int* n, FEL_cell* out,
                         int flags) const = 0;
    // Cells of dimension dim contained in cell, at most FEL_MAX_RELATED_CELLS.
    virtual int down_cells(const FEL_cell& cell, int dim, int* n, FEL_cell* out) const = 0;
    virtual int int_to_cell(int dim, int index, FEL_cell* cell, int zone = -1) const = 0;
    virtual int cell_to_int(const FEL_cell& cell, int* out) const = 0;
    virtual int central_difference_neighbors(const FEL_cell& cell, int axis, FEL_cell* out) const;
    virtual int central_difference_neighbors(const FEL_vertex_cell& vertex, int axis) const;
    virtual int locate(const FEL_phys_pos& pos, FEL_cell* out) const = 0;
    virtual int locate(const FEL_phys_pos& pos, FEL_cell& previous, FEL_cell* out) const = 0;

    // One vector per node of the cell, in the cell's node order.
    virtual int coordinates_at_cell(const FEL_cell& cell, FEL_vector3<float>* out) const = 0;
    virtual int coordinates_at_vertex_cell(const FEL_vertex_cell& vertex,
                                           FEL_vector3<float>* out) const;
    // Trilinear blend in the hexahedron whose lower corner is the truncated position.
    virtual int coordinates_at_structured_pos(const FEL_structured_pos& pos,
                                              FEL_vector3<float>* out) const;
    virtual int iblank_at_cell(const FEL_cell& cell, int* out) const;
    virtual int iblank_at_vertex_cell(const FEL_vertex_cell& vertex, int* out) const;
    // Bits over the cell's nodes: 1 normal, 2 for value 2, 4 blanked (0 or 101), 8 negative.
    virtual int combined_iblank_at_cell(const FEL_cell& cell, int* out) const;
    virtual int coordinates_and_iblank_at_cell(const FEL_cell& cell,
                                               FEL_vector3f_and_int* out) const;
    virtual int coordinates_and_iblank_at_vertex_cell(const FEL_vertex_cell& vertex,
                                                      FEL_vector3f_and_int* out) const;
    virtual bool cell_has_collapsed_edge(const FEL_cell& cell) const;
    // Tetrahedra and hexahedra only; 0 for other cells.
    virtual int volume_of_cell(const FEL_cell& cell, double* out) const;
    virtual int centroid_of_cell(const FEL_cell& cell, FEL_vector3<float>* out) const;
    virtual int longest_edge_length_of_cell(const FEL_cell& cell, float* out) const;
    virtual int shortest_edge_length_of_cell(const FEL_cell& cell, float* out) const;
    virtual int closest_vertex_of_cell(const FEL_phys_pos& pos, const FEL_cell& cell,
                                       FEL_vertex_cell* out) const;
    // Writes an undefined time.
    virtual int convert_time(const FEL_time& time, FEL_time_representation_enum representation,
                             FEL_time* out) const;

    virtual bool is_structured_mesh() const { return false; }
    virtual bool is_unstructured_mesh() const { return false; }
    virtual bool is_multi_mesh() const { return false; }
    virtual bool is_curvilinear_surface_mesh() const { return false; }
    virtual bool is_mesh_iblanked() const { return false; }

    // All nodes, and all cells of top dimension.
    int begin(FEL_vertex_cell_iter* iter) const;
    int begin(FEL_cell_iter* iter) const;
    // A key list: (key, value) pairs of int ended by a key of 0.
    int begin(FEL_cell_iter* iter, int key, ...) const;
    int begin(FEL_vertex_cell_iter* iter, int key, ...) const;
    // The key list prepared: args points at ints holding the value of key, then further pairs,
    // then 0. Returns 1, or 0 with the iterator done for bad keys or bounds.
    virtual int begin(FEL_vertex_cell_iter* iter, int key, char* args) const = 0;
    virtual int begin(FEL_cell_iter* iter, int key, char* args) const = 0;
    virtual void end(FEL_cell_iter* iter) const;
    virtual void done_callback(FEL_cell_iter* iter) const;
    virtual void done_callback(FEL_vertex_cell_iter* iter) const;
    virtual void advance_callback(FEL_cell_iter* iter) const;
    virtual void advance_callback(FEL_vertex_cell_iter* iter) const;
    // The box of all nodes by a walk.
    virtual int compute_bounding_box(FEL_vector3<float>* min, FEL_vector3<float>* max,
                                     const FEL_time& time);

  protected:
    // Applies a key list to bounds that hold the defaults. -1 to -6 must stay within the
    // defaults, -10 to -12 within 0 and the node count less 1, steps must be positive; an
    // unknown key is reported. Returns 1, or 0 on the first fault.
    static int apply_begin_keys(int key, const char* args, const int* n_nodes,
                                FEL_walk_bounds* bounds);
    // Sets an iterator's bounds, places it on the lower bounds and clears done.
    template <class Iter>
    static void start_walk(Iter* iter, const FEL_walk_bounds& bounds);
    // Marks an iterator done and drops its mesh pointers.
    template <class Iter>
    static void clear_walk(Iter* iter);
    // Starts a walk over indices 0 to n_nodes - 1 on each axis, narrowed by a key list, with
    // the iterator's cell reset. Returns 1, or 0 with the iterator done.
    template <class Iter>
    static int begin_index_walk(Iter* iter, int key, const char* args, const int* n_nodes);

    std::int32_t simplicial_decomposition;
    std::int32_t interpolation;
    bool bounding_box_cached;
    FEL_vector3<float> bounding_box_min;
    FEL_vector3<float> bounding_box_max;
    FEL_time bounding_box_time;

  private:
    // Packs the variadic key list of the begin forms and starts the walk; a list longer than
    // the packing holds is reported and leaves the iterator done.
    template <class Iter>
    int begin_key_list(Iter* iter, int key, va_list args) const;
};

// A mesh of one zone.
class FEL_single_mesh : public FEL_mesh {
  public:
    explicit FEL_single_mesh(const std::string& name) : FEL_mesh(name) {}
    int get(FEL_set_keyword_enum keyword, int* count, int* values, int zone = -1) const override;
    int get_n_zones() const override { return 1; }
    // The mesh itself for zone 0.
    FEL_pointer<FEL_mesh> get_zone(int zone) const override;
};

template <class Cell, class Self>
inline void FEL_cell_iter_base<Cell, Self>::advance() {
    Self* self = static_cast<Self*>(this);
    if (!advance_mesh.null())
        advance_mesh->advance_callback(self);
    else
        step_index();
    if (done && !done_mesh.null()) done_mesh->done_callback(self);
}

template <class Iter>
void FEL_mesh::start_walk(Iter* iter, const FEL_walk_bounds& bounds) {
    iter->i_min = bounds.min[0];
    iter->j_min = bounds.min[1];
    iter->k_min = bounds.min[2];
    iter->i_max = bounds.max[0];
    iter->j_max = bounds.max[1];
    iter->k_max = bounds.max[2];
    iter->i_step = bounds.step[0];
    iter->j_step = bounds.step[1];
    iter->k_step = bounds.step[2];
    iter->cell.i = bounds.min[0];
    iter->cell.j = bounds.min[1];
    iter->cell.k = bounds.min[2];
    iter->cell.zone = bounds.zone;
    iter->position = 0;
    iter->done = false;
}

template <class Iter>
void FEL_mesh::clear_walk(Iter* iter) {
    iter->done = true;
    iter->done_mesh = nullptr;
    iter->advance_mesh = nullptr;
}

template <class Iter>
int FEL_mesh::begin_index_walk(Iter* iter, int key, const char* args, const int* n_nodes) {
    clear_walk(iter);
    FEL_walk_bounds bounds = {{0, 0, 0},
                              {n_nodes[0] - 1, n_nodes[1] - 1, n_nodes[2] - 1},
                              {1, 1, 1},
                              {false, false, false},
                              -1};
    if (apply_begin_keys(key, args, n_nodes, &bounds) != 1) return 0;
    iter->cell = decltype(iter->cell)();
    start_walk(iter, bounds);
    return 1;
}
