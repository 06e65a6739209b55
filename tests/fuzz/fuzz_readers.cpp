// libFuzzer targets of the readers, one per build: KAVEX_FUZZ_mesh (FEL_read_mesh),
// KAVEX_FUZZ_spec (the generator's specification, then its lines, body cells and final points),
// KAVEX_FUZZ_points (a cut-points file) and KAVEX_FUZZ_layers (a layer file).
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "FEL_exception.h"
#include "generator/bodies.h"
#include "generator/bodymark.h"
#include "generator/fullspan.h"
#include "generator/gdcheck.h"
#include "generator/gdrun.h"
#include "generator/gdutil.h"
#include "generator/layer.h"
#include "generator/readFileC.h"
#include "generator/symmetry.h"
#include "readers/FEL_reader.h"

namespace {

// The generator's failure path, turned into an exception so that one process runs many inputs.
struct GeneratorEnded {};

// The readers open paths: each input becomes this file.
const std::string& input_file(const uint8_t* data, size_t size) {
    static const std::string path = "/tmp/kavex_fuzz_" + std::to_string(getpid());
    std::unique_ptr<FILE, int (*)(FILE*)> f(std::fopen(path.c_str(), "wb"), std::fclose);
    if (!f || std::fwrite(data, 1, size, f.get()) != size) std::abort();
    return path;
}

// The module records as at process start; what earlier inputs allocated is left behind.
void reset_generator() {
    allBdys = nullptr;
    numBdys = maxBdys = numOrigBdys = 0;
    for (int16_t*& cells : bodyCells) cells = nullptr;
    nBodyCells = 0;
    reset_newBdyGdspc_parms2();
    init_options2();
    init_all_grid_lines2();
    init_Bef_Aft_layer_gds();
}

// Each line: n points from lo to hi.
[[maybe_unused]] void set_lines(int n, const double lo[3], const double hi[3]) {
    GridLine* lines[3] = {&Xgdln, &Ygdln, &Zgdln};
    for (int a = 0; a < 3; ++a) {
        lines[a]->nGdpts = n;
        lines[a]->gdpts = static_cast<double*>(std::malloc(n * sizeof(double)));
        for (int i = 0; i < n; ++i) lines[a]->gdpts[i] = lo[a] + (hi[a] - lo[a]) * i / (n - 1);
    }
}

[[maybe_unused]] void final_points() {
    double t[3];
    int16_t shift[3];
    set_final_gdpts(t, shift);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    gd_exit_hook = [](int) { throw GeneratorEnded{}; };
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string& path = input_file(data, size);
    reset_generator();
    std::unique_ptr<FILE, int (*)(FILE*)> f(std::fopen(path.c_str(), "r"), std::fclose);
    try {
#if defined(KAVEX_FUZZ_mesh)
        // The driver offers the Plot3D text flags for ".stl" and ".p3d" names: odd sizes try them.
        unsigned flags = size % 2 ? 292 : 0;
        FEL_read_mesh(path, flags, -1);
#elif defined(KAVEX_FUZZ_spec)
        manage_gridgen_input(path.c_str());
        genXYZgdsFromSpecs(&Xgdln, &Ygdln, &Zgdln);
        full_span_grids_and_bodies();
        ck_lines_size();
        // Marking is linear in the cells; a large valid grid would only slow the search down.
        if (1.0 * Xgdln.nGdpts * Ygdln.nGdpts * Zgdln.nGdpts < 1e6) mark_all_body_cells();
        final_points();
#elif defined(KAVEX_FUZZ_points)
        Body* body = new_body_struct();
        body->type = 0;
        body->pointsFile = strdup(path.c_str());
        read_body_cuts_pts(body, f.get());
        body->pointsFile[0] = '\0';  // read: the rest of the body's finish without reading again
        bodies_lex_input_done();
        if (body->bdyMin[0] == UNSET_DBL) return 0;
        set_lines(7, body->bdyMin, body->bdyMax);
        mark_all_body_cells();
#elif defined(KAVEX_FUZZ_layers)
        rd_gen_layer_gds(f.get());
        const double lo[3] = {0, 0, 0}, hi[3] = {1, 1, 1};
        set_lines(2, lo, hi);
        final_points();
#endif
    } catch (const GeneratorEnded&) {
    } catch (const FEL_exception&) {
    }
    return 0;
}
