// Layers: reading the layer file's six lists and turning them into cell widths.
#include "generator/layer.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "generator/gdcheck.h"
#include "generator/gdutil.h"

namespace {

void* calloc_or_exit(size_t n, size_t size) {
    void* p = std::calloc(n, size);
    if (!p) perrorNexit("calloc");
    return p;
}

// The list a record holds, for messages.
const char* list_name(const LayerGrids* record) {
    static const char* const names[] = {"X before the body", "Y before the body",
                                        "Z before the body", "X after the body",
                                        "Y after the body",  "Z after the body"};
    for (int a = 0; a < 3; ++a) {
        if (record == &BefBdyLyrGds[a]) return names[a];
        if (record == &AftBdyLyrGds[a]) return names[3 + a];
    }
    return "layers";
}

[[noreturn]] void unreadable() {
    printfErrNexit("unexpected end-of-file or error in reading layers");
}

}  // namespace

void init_Bef_Aft_layer_gds() {
    std::memset(BefBdyLyrGds, 0, sizeof BefBdyLyrGds);
    std::memset(AftBdyLyrGds, 0, sizeof AftBdyLyrGds);
}

Layer* read_layer_spec(FILE* stream, LayerGrids* record) {
    const char* file = gd_options.layerFile;
    long long n = 0;
    if (!rd_int(skpcmt(stream), &n)) unreadable();
    if (n < 0) printfErrNexit("number layers can not be negative");
    const char* list = list_name(record);
    ck_fits_in_file(stream, n, 5, file, "%s, number of layers", list);
    record->nLayers = static_cast<int>(n);
    if (n == 0) return nullptr;
    Layer* layers = static_cast<Layer*>(calloc_or_exit(n, sizeof(Layer)));
    const double tol = gd_options.gridTol;
    for (int i = 0; i < n; ++i) {
        long long number = 0, cells = 0;  // the layer's number is read and ignored
        double f1 = 0.0, f2 = 0.0, ratio = 0.0;
        if (!rd_int(skpcmt(stream), &number) || std::fscanf(stream, " %lf %lf", &f1, &f2) != 2 ||
            !rd_int(stream, &cells) || std::fscanf(stream, " %lf", &ratio) != 1)
            unreadable();
        ck_coord(f1 * f2, file, "%s, layer %d length %g * %g", list, i + 1, f1, f2);
        ck_range(cells, -kMaxAxisCells, kMaxAxisCells, file, "%s, layer %d cells", list, i + 1);
        Layer& l = layers[i];
        l.length = f1 * f2;
        l.nCells = static_cast<int>(cells < 0 ? -cells : cells);
        l.nxtCnctd = cells < 0;
        if (std::fabs(ratio) < tol || std::fabs(ratio - 1.0) < tol)
            l.gp_ratio = 1.0;
        else
            l.gp_ratio = ratio < 0 ? -1.0 / ratio : ratio;
        ck_ratio(l.gp_ratio, file, "%s, layer %d ratio %g", list, i + 1, ratio);
    }
    layers[n - 1].nxtCnctd = 0;
    return layers;
}

void gen_connected_layers_cellwidths(LayerGrids* record) {
    long long total = 0;
    for (int l = 0; l < record->nLayers; ++l) total += record->layers[l].nCells;
    const char* list = list_name(record);
    ck_range(total, 0, kMaxAxisCells, gd_options.layerFile, "%s, cells", list);
    record->nWidths = static_cast<int>(total);
    record->widths =
        total > 0 ? static_cast<double*>(calloc_or_exit(total, sizeof(double))) : nullptr;
    double* w = record->widths;
    int p = 0, chainStart = 0;
    double chainLength = 0.0;
    for (int l = 0; l < record->nLayers; ++l) {
        const Layer& layer = record->layers[l];
        const bool afterJoint = l > 0 && record->layers[l - 1].nxtCnctd;
        const int n = layer.nCells;
        if (!layer.nxtCnctd && !afterJoint) {
            if (layer.gp_ratio == 1.0) {
                for (int k = 0; k < n; ++k) w[p + k] = layer.length / n;
            } else {
                const double sum = graded_weights(w + p, n, 1.0, layer.gp_ratio);
                ck_graded_sum(sum, layer.gp_ratio, n, gd_options.layerFile, "%s, layer %d ratio",
                              list, l + 1);
                const double scale = layer.length / sum;
                for (int k = 0; k < n; ++k) w[p + k] *= scale;
            }
            p += n;
            continue;
        }
        double first = 1.0;
        if (!afterJoint) {
            chainLength = layer.length;
            chainStart = p;
        } else {
            chainLength += layer.length;
            // The width runs on across the joint; a chain that has no width yet starts at 1.
            if (p > chainStart) first = w[p - 1];
        }
        graded_weights(w + p, n, first, layer.gp_ratio);
        p += n;
        if (!layer.nxtCnctd) {
            double sum = 0.0;
            for (int k = chainStart; k < p; ++k) sum += w[k];
            ck_graded_sum(sum, layer.gp_ratio, p - chainStart, gd_options.layerFile,
                          "%s, layer %d ratio, at the end of a chain", list, l + 1);
            const double scale = chainLength / sum;
            for (int k = chainStart; k < p; ++k) w[k] *= scale;
        }
    }
}

void rd_gen_layer_gds(FILE* stream) {
    init_Bef_Aft_layer_gds();
    for (LayerGrids* set : {BefBdyLyrGds, AftBdyLyrGds})
        for (int a = 0; a < 3; ++a) set[a].layers = read_layer_spec(stream, &set[a]);
    for (int a = 0; a < 3; ++a) {
        gen_connected_layers_cellwidths(&BefBdyLyrGds[a]);
        gen_connected_layers_cellwidths(&AftBdyLyrGds[a]);
    }
}

void wr_layer_info(FILE* stream, const LayerGrids* record, const char* title) {
    std::fprintf(stream, "\n\n%s\n\nLayer Starting Position: %12.5G\n", title, record->startPosn);
    std::fprintf(stream, "\nNumber of Layers: %d\n", record->nLayers);
    if (record->nLayers > 0) {
        std::fprintf(stream, "%3s %12s %12s %9s %9s\n", "", "Length", "GPratio", "Num-Cells",
                     "Nxt-Cnctd");
        for (int l = 0; l < record->nLayers; ++l) {
            const Layer& layer = record->layers[l];
            std::fprintf(stream, "%3d %12.5G %12.5G %9d %9s\n", l + 1, layer.length, layer.gp_ratio,
                         layer.nCells, layer.nxtCnctd ? "T" : "F");
        }
    }
    std::fprintf(stream, "\nNumber of Cell Widths: %d\n", record->nWidths);
    if (record->nWidths > 0) {
        std::fprintf(stream, "%3s %12s\n", "", "CellWidths");
        for (int k = 0; k < record->nWidths; ++k)
            std::fprintf(stream, "%3d %12.5G\n", k + 1, record->widths[k]);
    }
}

void wr_Bef_Aft_layer_gds(FILE* stream) {
    static const char* const before[3] = {"X-Layer Before Body", "Y-Layer Before Body",
                                          "Z-Layer Before Body"};
    static const char* const after[3] = {"X-Layer After Body", "Y-Layer After Body",
                                         "Z-Layer After Body"};
    for (int a = 0; a < 3; ++a) wr_layer_info(stream, &BefBdyLyrGds[a], before[a]);
    for (int a = 0; a < 3; ++a) wr_layer_info(stream, &AftBdyLyrGds[a], after[a]);
}
