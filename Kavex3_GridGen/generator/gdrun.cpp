// The line generator's run: stage order, final corner points and the translation file.
#include "generator/gdrun.h"

#include <sys/statvfs.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "generator/bodies.h"
#include "generator/bodycells.h"
#include "generator/bodymark.h"
#include "generator/fullspan.h"
#include "generator/gdcheck.h"
#include "generator/gdgen.h"
#include "generator/gdoutfile.h"
#include "generator/gdrecords.h"
#include "generator/gdsolverfiles.h"
#include "generator/gdutil.h"
#include "generator/gridwriter.h"
#include "generator/layer.h"
#include "generator/readFileC.h"
#include "generator/symmetry.h"

FILE* get_main_lex_data_file_stream(int argc, char** argv) {
    if (argc > 3) printfErrNexit("gridgen does not expect more than 2 arguments");
    if (argc < 2) return stdin;
    const char* specName = argv[1];
    if (argc == 3 && std::strtol(argv[2], nullptr, 10) != 0) {
        FILE* indirect = std::fopen(argv[1], "r");
        if (!indirect) perrorNexit("fopen");
        pref_options.specFile = read_file_str(indirect);
        pref_options.layerFile = read_file_str(indirect);
        pref_options.solverInpFile = read_file_str(indirect);
        std::fclose(indirect);
        specName = pref_options.specFile;
    } else {
        pref_options.specFile = strdup(argv[1]);
    }
    FILE* stream = specName ? std::fopen(specName, "r") : nullptr;
    if (!stream) perrorNexit("fopen");
    return stream;
}

void wrtTrnsltn(double tx, double ty, double tz, const char* path) {
    // The one file whose failure lets the run go on; it never stands cut short under its name.
    FILE* stream = gd_try_open_output(path);
    if (stream) std::fprintf(stream, "%f %f %f \n", tx, ty, tz);
    if (!stream || !gd_finish_output(stream)) std::printf("%s could not be opened.", path);
}

// A grid file of tens of gigabytes must not fill the disk to show that it doesn't fit.
static void ck_room_for_grid_file(const char* path, long long bytes) {
    const char* slash = std::strrchr(path, '/');
    const std::string folder = slash ? std::string(path, slash - path + 1) : std::string(".");
    struct statvfs fs;
    if (statvfs(folder.c_str(), &fs) != 0) return;
    const long long room = static_cast<long long>(fs.f_bavail) * fs.f_frsize;
    if (room < bytes)
        printfErrNexit("no room for '%s': %lld bytes needed, %lld bytes free", path, bytes, room);
}

void set_final_gdpts(double t[3], int16_t shift[3]) {
    const GridLine* lines[3] = {&Xgdln, &Ygdln, &Zgdln};
    for (int a = 0; a < 3; ++a) {
        const LayerGrids& bef = BefBdyLyrGds[a];
        const LayerGrids& aft = AftBdyLyrGds[a];
        const GridLine& line = *lines[a];
        const int nB = bef.nWidths, nG = line.nGdpts, nA = aft.nWidths;
        const int n = nB + nG + nA + 2;
        ck_axis_cells(a, n - 1);
        double* p = static_cast<double*>(std::calloc(n, sizeof(double)));
        if (!p) perrorNexit("calloc");
        p[0] = p[1] = gd_options.gridStart[a];
        for (int j = 0; j < nB; ++j) p[j + 2] = p[j + 1] + bef.widths[j];
        // An axis without generated points is not moved.
        t[a] = nG > 0 ? p[nB + 1] - line.gdpts[0] : 0.0;
        for (int j = 0; j < nG; ++j) p[nB + 1 + j] = line.gdpts[j] + t[a];
        for (int j = 0; j < nA; ++j) p[nB + 1 + nG + j] = p[nB + nG + j] + aft.widths[j];
        p[n - 1] = p[n - 2];
        Nfinalgdpts[a] = n;
        finalgdpts[a] = p;
        shift[a] = static_cast<int16_t>(nB + 1);
    }
    ck_grid_points(Nfinalgdpts);
}

void gen_final_grid(const char* specPath, const char* trnsltnPath, double t[3]) {
    manage_gridgen_input(specPath);
    genXYZgdsFromSpecs(&Xgdln, &Ygdln, &Zgdln);
    full_span_grids_and_bodies();
    ck_lines_size();
    if (gd_options.gridPtsFile) wr_grid_pts_file(gd_options.gridPtsFile);
    if (!bodyCellsReplaced || gd_options.debugLevel > 0) mark_all_body_cells();
    FILE* dbg = gd_options.debugStream;
    if (gd_options.debugLevel > 3) dbgpr_body_info(dbg, allBdys, numBdys, "Before Layer Added");

    if (gd_options.layerFile) {
        FILE* layers = std::fopen(gd_options.layerFile, "r");
        if (!layers) perrorNexit("fopen");
        rd_gen_layer_gds(layers);
        std::fclose(layers);
    } else {
        // A specification without a layer file gets no layers, as if its six lists were empty.
        init_Bef_Aft_layer_gds();
    }
    if (gd_options.debugLevel > 3) wr_Bef_Aft_layer_gds(dbg);

    int16_t shift[3];
    set_final_gdpts(t, shift);
    wrtTrnsltn(t[0], t[1], t[2], trnsltnPath);
    if (gd_options.debugLevel > 3)
        std::fprintf(dbg,
                     "\nBody Points Translated By: [%25.18G, %25.18G, %25.18G]\nBody Cells "
                     "Indices Translated By: [%d, %d, %d]\n",
                     t[0], t[1], t[2], shift[0], shift[1], shift[2]);
    trAllBdyPts(t);
    translate_body_cells(shift);
    mark_body_blocking_zero_width_cells(Nfinalgdpts[0], Nfinalgdpts[1], Nfinalgdpts[2]);
    if (gd_options.debugLevel > 0) {
        wr_corner_pts_table(dbg);
        dbgpr_body_cells(dbg, 1, 1, 1,
                         "Body Cells (adjusted to Solver F77 array starting at 1 instead of 0)");
    }
}

int CutsGridGenerator(int argc, char** argv, bool writeTranslation, double* outX, double* outY,
                      double* outZ) {
    *outX = *outY = *outZ = 0.0;
    if (argc == 2 && std::strcmp(argv[1], "-v") == 0) {
        std::printf("\n\nGridlet: A Cartesian Structured Grid Generator - Version 1.11.4\n");
        std::printf("Made by the Kavex3 grid team.\n");
        return 0;
    }
    std::fclose(get_main_lex_data_file_stream(argc, argv));
    double t[3];
    gen_final_grid(argv[1], argv[5], t);
    ck_room_for_grid_file(argv[3], grid_file_size(writeTranslation, t, Nfinalgdpts, finalgdpts));
    *outX = t[0];
    *outY = t[1];
    *outZ = t[2];
    FILE* dbg = gd_options.debugStream;
    // Without an Options section no solver input file is named; the usual default is taken.
    wr_solver_input_file(gd_options.solverInpFile && gd_options.solverInpFile[0]
                             ? gd_options.solverInpFile
                             : "SolverGdInp.dat");

    // The grid file's open failing would lose the run's main result: report it like other opens.
    FILE* grid = gd_open_output(argv[3]);
    wr_grid_file(grid, writeTranslation, t, Nfinalgdpts, finalgdpts);
    gd_close_output(grid);
    if (dbg) {
        std::fflush(dbg);
        gd_check_output(dbg);
    }
    return 0;
}
