// Debug dump of the three grid lines as read from the specification text.
#include "generator/readFileC_dbg.h"

#include <cstdio>

static const char* tf(int flag) {
    return flag ? "True" : "False";
}

void dbgpr_gridline(FILE* stream, const GridLine* line) {
    // A working record (type 3) is the line common to all symmetric axes.
    static const char* const names[] = {"X", "Y", "Z", "Common"};
    const char* axis = line->type >= 0 && line->type <= 3 ? names[line->type] : "?";
    std::fprintf(stream, "\nGrid Line Type: %s Line\n", axis);
    if (line->hasSymm) {
        std::fprintf(stream, "Symmetry must be maintained about: %f\n", line->symmPosn);
        std::fprintf(stream, "Common Symmetry: %s\n", tf(line->commonSymm));
    }
    if (line->fullSpanAbout != UNSET_DBL)
        std::fprintf(stream, "Full Span Mirror About: %f\n", line->fullSpanAbout);
    std::fprintf(stream, "All Bodies %s Minimum: %f\n", axis, line->allBdysMin);
    std::fprintf(stream, "All Bodies %s Maximum: %f\n", axis, line->allBdysMax);
    std::fprintf(stream, "\nNo. of Grid Specs: %d\n", line->nGdspcs);
    for (int i = 0; i < line->nGdspcs; ++i) {
        const BdyGdspc& s = line->gdspcs[i];
        std::fprintf(stream, "\nFrom: %f\n", s.from);
        std::fprintf(stream, "To: %f\n", s.to);
        std::fprintf(stream, "Num. Grids: %f\n", s.nGds);
        std::fprintf(stream, "GP Ratio: %f\n", s.gp_ratio);
        std::fprintf(stream, "From Line Fxd: %s\n", tf(s.FxdFrom));
        std::fprintf(stream, "To Line Fxd: %s\n", tf(s.FxdTo));
    }
    // The forced points stand on one line, separated by ", ".
    std::fprintf(stream,
                 "\nNumber of Forced Grid Points: %d\nForced Grid Points: ", line->nFrcdGdpts);
    for (int i = 0; i < line->nFrcdGdpts; ++i)
        std::fprintf(stream, i ? ", %f" : "%f", line->frcdGdpts[i]);
    std::fputc('\n', stream);
}

void dbgpr_gridLines_info2(FILE* stream, const char* title) {
    std::fprintf(stream, "\n%s\n", title);
    dbgpr_gridline(stream, &Xgdln);
    dbgpr_gridline(stream, &Ygdln);
    dbgpr_gridline(stream, &Zgdln);
}
