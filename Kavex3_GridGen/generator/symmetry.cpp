// Generation of the three lines: common symmetric patterns and the discard limits.
#include "generator/symmetry.h"

#include <cstdlib>
#include <cstring>

#include "generator/gdcheck.h"
#include "generator/gdgen.h"

namespace {

// The discard limits that are set become pre-fixed points, so that the cuts fall on grid points.
void add_discard_limits_as_frcd_gdpts(GridLine* line) {
    const int n = (line->discardBelow != UNSET_DBL) + (line->discardAfter != UNSET_DBL);
    if (n == 0) return;
    line->frcdGdpts = static_cast<double*>(
        std::realloc(line->frcdGdpts, (line->nFrcdGdpts + n) * sizeof(double)));
    if (line->discardBelow != UNSET_DBL) line->frcdGdpts[line->nFrcdGdpts++] = line->discardBelow;
    if (line->discardAfter != UNSET_DBL) line->frcdGdpts[line->nFrcdGdpts++] = line->discardAfter;
}

}  // namespace

void update_common_symmetry_gridline(const GridLine* line, GridLine* common) {
    if (!line->commonSymm) return;
    double* pts = common->frcdGdpts + common->nFrcdGdpts;
    BdyGdspc* specs = common->gdspcs + common->nGdspcs;
    if (line->nFrcdGdpts > 0) std::memcpy(pts, line->frcdGdpts, line->nFrcdGdpts * sizeof(double));
    if (line->nGdspcs > 0) std::memcpy(specs, line->gdspcs, line->nGdspcs * sizeof(BdyGdspc));
    common->nFrcdGdpts += line->nFrcdGdpts;
    common->nGdspcs += line->nGdspcs;
    if (common->symmPosn == line->symmPosn) return;
    const double delta = common->symmPosn - line->symmPosn;
    for (int i = 0; i < line->nFrcdGdpts; ++i) pts[i] += delta;
    for (int i = 0; i < line->nGdspcs; ++i) {
        specs[i].from += delta;
        specs[i].to += delta;
    }
}

void genXYZgdsFromSpecs(GridLine* x, GridLine* y, GridLine* z) {
    GridLine* lines[3] = {x, y, z};
    for (GridLine* line : lines) {
        ck_gdspcs(line);
        add_discard_limits_as_frcd_gdpts(line);
    }

    GridLine* first = nullptr;
    int nPts = 0, nSpecs = 0;
    for (GridLine* line : lines) {
        if (!line->commonSymm) continue;
        if (!first) first = line;
        nPts += line->nFrcdGdpts;
        nSpecs += line->nGdspcs;
    }
    if (!first) {
        for (GridLine* line : lines) gen_line_grid(line);
    } else {
        GridLine common{};
        common.type = 3;
        common.frcdGdpts = static_cast<double*>(std::calloc(nPts + 1, sizeof(double)));
        common.gdspcs = static_cast<BdyGdspc*>(std::calloc(nSpecs + 1, sizeof(BdyGdspc)));
        common.symmPosn = first->symmPosn;
        common.hasSymm = 1;
        common.fullSpanAbout = common.allBdysMin = common.allBdysMax = UNSET_DBL;
        common.discardBelow = common.discardAfter = UNSET_DBL;
        for (GridLine* line : lines) update_common_symmetry_gridline(line, &common);
        gen_line_grid(&common);
        for (GridLine* line : lines) {
            if (!line->commonSymm) {
                gen_line_grid(line);
                continue;
            }
            line->nGdpts = common.nGdpts;
            line->gdpts = static_cast<double*>(std::malloc((common.nGdpts + 1) * sizeof(double)));
            for (int i = 0; i < common.nGdpts; ++i) line->gdpts[i] = common.gdpts[i];
            if (line->symmPosn != common.symmPosn)
                for (int i = 0; i < line->nGdpts; ++i)
                    line->gdpts[i] += line->symmPosn - common.symmPosn;
        }
        std::free(common.frcdGdpts);
        std::free(common.gdspcs);
        std::free(common.gdpts);
    }

    for (GridLine* line : lines) {
        discard_grids_below(line);
        discard_grids_after(line, line->discardAfter);
    }
}

void discard_grids_below(GridLine* line) {
    if (line->nGdpts == 0 || line->discardBelow == UNSET_DBL) return;
    const double cut = line->discardBelow - gd_options.gridTol;
    if (cut > line->gdpts[line->nGdpts - 1]) {
        std::free(line->gdpts);
        line->gdpts = nullptr;
        line->nGdpts = 0;
        return;
    }
    int first = 0;
    while (line->gdpts[first] < cut) ++first;
    if (first == 0) return;
    line->nGdpts -= first;
    std::memmove(line->gdpts, line->gdpts + first, line->nGdpts * sizeof(double));
}

void discard_grids_after(GridLine* line, double limit) {
    if (line->nGdpts == 0 || limit == UNSET_DBL) return;
    const double cut = limit + gd_options.gridTol;
    if (line->gdpts[0] > cut) {
        std::free(line->gdpts);
        line->gdpts = nullptr;
        line->nGdpts = 0;
        return;
    }
    while (line->gdpts[line->nGdpts - 1] > cut) --line->nGdpts;
}
