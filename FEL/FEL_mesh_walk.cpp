// How every mesh starts a walk over its cells and vertices: the begin forms with their key lists.
#include "FEL_mesh.h"

#include <cstdarg>
#include <iostream>

namespace {

// Longest key list that the variadic begin forms pack, in (key, value) pairs.
const int max_key_pairs = 32;

// Reads the variadic key list after key into packed; false if it is longer than the limit.
bool pack_key_list(int key, va_list args, int* packed) {
    if (key == 0) {
        packed[0] = 0;
        return true;
    }
    int n = 0;
    packed[n++] = va_arg(args, int);
    for (int pair = 1; pair < max_key_pairs; ++pair) {
        const int next = va_arg(args, int);
        packed[n++] = next;
        if (next == 0) return true;
        packed[n++] = va_arg(args, int);
    }
    return false;
}

void report_bad_args() {
    std::cerr << "FEL_structured_mesh::begin(FEL_vertex_cell_iter*,...) bad args" << std::endl;
}

}  // namespace

int FEL_mesh::begin(FEL_vertex_cell_iter* iter) const {
    int none = 0;
    return begin(iter, 0, reinterpret_cast<char*>(&none));
}

int FEL_mesh::begin(FEL_cell_iter* iter) const {
    int none = 0;
    return begin(iter, 0, reinterpret_cast<char*>(&none));
}

template <class Iter>
int FEL_mesh::begin_key_list(Iter* iter, int key, va_list args) const {
    int packed[2 * max_key_pairs];
    if (!pack_key_list(key, args, packed)) {
        report_bad_args();
        clear_walk(iter);
        return 0;
    }
    return begin(iter, key, reinterpret_cast<char*>(packed));
}

int FEL_mesh::begin(FEL_cell_iter* iter, int key, ...) const {
    va_list args;
    va_start(args, key);
    const int res = begin_key_list(iter, key, args);
    va_end(args);
    return res;
}

int FEL_mesh::begin(FEL_vertex_cell_iter* iter, int key, ...) const {
    va_list args;
    va_start(args, key);
    const int res = begin_key_list(iter, key, args);
    va_end(args);
    return res;
}

void FEL_mesh::end(FEL_cell_iter* iter) const {
    iter->done = true;
}

void FEL_mesh::done_callback(FEL_cell_iter*) const {}

void FEL_mesh::done_callback(FEL_vertex_cell_iter*) const {}

void FEL_mesh::advance_callback(FEL_cell_iter*) const {}

void FEL_mesh::advance_callback(FEL_vertex_cell_iter*) const {}

int FEL_mesh::apply_begin_keys(int key, const char* args, const int* n_nodes,
                               FEL_walk_bounds* bounds) {
    const FEL_walk_bounds defaults = *bounds;
    const int* next = reinterpret_cast<const int*>(args);
    while (key != 0) {
        const int value = *next++;
        switch (key) {
            case FEL_ITER_I_MIN:
            case FEL_ITER_I_MAX:
            case FEL_ITER_J_MIN:
            case FEL_ITER_J_MAX:
            case FEL_ITER_K_MIN:
            case FEL_ITER_K_MAX: {
                const int axis = (-key - 1) / 2;
                if (value < defaults.min[axis] || value > defaults.max[axis]) return 0;
                if ((-key - 1) % 2 == 0)
                    bounds->min[axis] = value;
                else
                    bounds->max[axis] = value;
                break;
            }
            case FEL_ITER_I_STEP:
            case FEL_ITER_J_STEP:
            case FEL_ITER_K_STEP:
                // A step below 1 would never end the walk.
                if (value < 1) return 0;
                bounds->step[-key - 7] = value;
                break;
            case FEL_ITER_FIX_I:
            case FEL_ITER_FIX_J:
            case FEL_ITER_FIX_K: {
                const int axis = -key - 10;
                if (value < 0 || value >= n_nodes[axis]) return 0;
                bounds->min[axis] = bounds->max[axis] = value;
                bounds->fixed[axis] = true;
                break;
            }
            case FEL_ITER_ZONE:
                bounds->zone = value;
                break;
            default:
                report_bad_args();
                return 0;
        }
        key = *next++;
    }
    for (int axis = 0; axis < 3; ++axis)
        if (bounds->min[axis] > bounds->max[axis]) return 0;
    return 1;
}
