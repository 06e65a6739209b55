// Line grid generation: cuts a line at every named point, lets the specs bid for the pieces, fills
// them.
#include "generator/gdgen.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

#include "generator/gdcheck.h"
#include "generator/gdutil.h"

namespace {

bool debug_above(int level) {
    return gd_options.debugLevel > level && gd_options.debugStream;
}

void dbgpr_vals(const char* title, const double* vals, int n) {
    FILE* out = gd_options.debugStream;
    std::fprintf(out, "%s\nNo. of Vals: %d\n", title, n);
    for (int i = 0; i < n; ++i) std::fprintf(out, "[%d]   %18.12f\n", i + 1, vals[i]);
}

void dbgpr_gdspcs(const char* title, const BdyGdspc* specs, int n) {
    FILE* out = gd_options.debugStream;
    std::fprintf(out, "%s\nNo. of Grid Specs: %d\n", title, n);
    for (int i = 0; i < n; ++i) {
        const BdyGdspc& s = specs[i];
        std::fprintf(out,
                     "[%d] from: %18.12f; to: %18.12f; nGds: %f gp_ratio: %9.5f; FxdFrom: %s; "
                     "FxdTo: %s\n",
                     i + 1, s.from, s.to, s.nGds, s.gp_ratio, s.FxdFrom ? "T" : "F",
                     s.FxdTo ? "T" : "F");
    }
}

// Sorts vals and keeps a value only when it lies more than tol above the last value kept.
int sort_rm_dups(double* vals, int n, double tol) {
    std::qsort(vals, n, sizeof(double), qscmp_double);
    if (n == 0) return 0;
    int kept = 1;
    for (int i = 1; i < n; ++i)
        if (tol + vals[kept - 1] < vals[i]) vals[kept++] = vals[i];
    return kept;
}

// The fractional number of the graded spec's own cells that fall between lo and hi.
double graded_cells_in_piece(const BdyGdspc& s, double lo, double hi) {
    const int n = static_cast<int>(gd_options.roundOff + s.nGds);
    if (n < 1) return 0.0;
    double* w = static_cast<double*>(std::malloc(n * sizeof(double)));
    const double sum = graded_weights(w, n, 1.0, s.gp_ratio);
    ck_graded_sum(sum, s.gp_ratio, n, gd_options.specFile, "GP Ratio of a spec from %g to %g",
                  s.from, s.to);
    const double first = n == 1 ? s.to - s.from : (s.to - s.from) / sum;
    double pos = s.from;
    int i = 0;
    double x = w[0] * first + pos;
    while (x < lo) {
        pos = x;
        if (++i == n) {
            std::free(w);
            return 0.0;
        }
        x = w[i] * first + pos;
    }
    double count = ((x < hi ? x : hi) - lo) / (x - pos);
    pos = x;
    ++i;
    while (pos < hi && i < n) {
        x = w[i] * first + pos;
        if (hi <= x) {
            count += (hi - pos) / (x - pos);
            break;
        }
        count += 1;
        pos = x;
        ++i;
    }
    std::free(w);
    return count;
}

// Specs whose range reaches above the symmetry plane get a mirrored copy below it, appended.
BdyGdspc* mirror_gdspcs(const GridLine* line, int* nSpecs) {
    const double s = line->symmPosn;
    int nAbove = 0;
    for (int i = 0; i < line->nGdspcs; ++i)
        if (line->gdspcs[i].to > s) ++nAbove;
    *nSpecs = line->nGdspcs;
    if (nAbove == 0) return line->gdspcs;
    BdyGdspc* specs =
        static_cast<BdyGdspc*>(std::malloc((line->nGdspcs + nAbove) * sizeof(BdyGdspc)));
    std::memcpy(specs, line->gdspcs, line->nGdspcs * sizeof(BdyGdspc));
    for (int i = 0; i < line->nGdspcs; ++i) {
        const BdyGdspc& o = line->gdspcs[i];
        if (!(o.to > s)) continue;
        BdyGdspc& m = specs[(*nSpecs)++];
        m.from = 2 * s - o.to;
        m.to = 2 * s - o.from;
        m.nGds = o.nGds;
        m.gp_ratio = o.gp_ratio == 1.0 ? 1.0 : 1.0 / o.gp_ratio;
        m.FxdFrom = o.FxdTo;
        m.FxdTo = o.FxdFrom;
    }
    if (debug_above(9)) dbgpr_gdspcs("Symmetry Mirrored Grid Specs:", specs, *nSpecs);
    return specs;
}

// Each spec bids for the pieces inside its range; the finest bid wins, earlier specs win ties.
void bid_for_pieces(const BdyGdspc* specs, int nSpecs, BdyGdspc* pieces, int nPieces) {
    const double tol = gd_options.gridTol;
    double density = 0.0;
    for (int si = 0; si < nSpecs; ++si) {
        const BdyGdspc& s = specs[si];
        const bool uniform = s.gp_ratio == 1.0 || s.nGds <= 1.0;
        if (uniform) density = s.nGds / (s.to - s.from);
        for (int c = 0; c < nPieces && !(pieces[c].to > s.to + tol); ++c) {
            BdyGdspc& p = pieces[c];
            if (!(s.from - tol < p.from)) continue;
            double n;
            if (uniform)
                n = (p.to - p.from) * density;
            else if (s.nGds > 1.0 &&
                     (std::fabs(s.from - p.from) >= tol || std::fabs(s.to - p.to) >= tol))
                n = graded_cells_in_piece(s, p.from, p.to);
            else
                n = s.nGds;
            if (n > p.nGds) {
                p.nGds = n;
                p.gp_ratio = s.gp_ratio;
            }
        }
    }
}

// The line's ends are always forced; an inner boundary is forced if a forced point lies on it.
void mark_forced_ends(BdyGdspc* pieces, int nPieces, const double* forced, int last) {
    const double tol = gd_options.gridTol;
    pieces[0].FxdFrom = 1;
    pieces[nPieces - 1].FxdTo = 1;
    int m = 0;
    for (int i = 0; i < nPieces - 1; ++i) {
        pieces[i].FxdTo = 0;
        const double t = pieces[i].to;
        int isForced = 0;
        if (m <= last) {
            if (std::fabs(t - forced[m]) < tol) {
                isForced = 1;
            } else if (forced[m] < t) {
                while (++m <= last) {
                    if (std::fabs(t - forced[m]) < tol) {
                        isForced = 1;
                        break;
                    }
                    if (forced[m] >= t) break;
                }
            }
        }
        if (isForced) ++m;
        pieces[i].FxdTo = isForced;
        pieces[i + 1].FxdFrom = isForced;
    }
}

double avg_cell_width(const BdyGdspc& p) {
    const double width = p.to - p.from;
    return p.nGds >= 1.0 ? width / p.nGds : width;
}

// Pieces that would hold less than one cell join a neighbour whose cells are over twice as wide.
int merge_very_small_pieces(BdyGdspc* pieces, int nPieces) {
    bool changed = true;
    while (changed) {
        changed = false;
        int i = 0;
        while (i < nPieces) {
            BdyGdspc& p = pieces[i];
            if (p.nGds >= 1.0 || (p.FxdFrom && p.FxdTo)) {
                ++i;
                continue;
            }
            const double len = p.to - p.from;
            const double prevW = i == 0 ? 0.0 : avg_cell_width(pieces[i - 1]);
            const double nextW = i == nPieces - 1 ? 0.0 : avg_cell_width(pieces[i + 1]);
            const bool intoPrev = p.FxdTo || (!p.FxdFrom && nextW / len <= prevW / len);
            if (!((intoPrev ? prevW : nextW) / len > 2.0)) {
                ++i;
                continue;
            }
            if (intoPrev) {
                BdyGdspc& q = pieces[i - 1];
                q.FxdTo = p.FxdTo;
                q.to = p.to;
                q.nGds = q.nGds + len * q.nGds / (q.to - q.from);
            } else {
                BdyGdspc& q = pieces[i + 1];
                q.FxdFrom = p.FxdFrom;
                q.from = p.from;
                q.nGds = q.nGds + len * q.nGds / (q.to - q.from);
            }
            std::memmove(&pieces[i], &pieces[i + 1], (nPieces - i - 1) * sizeof(BdyGdspc));
            --nPieces;
            changed = true;
        }
    }
    return nPieces;
}

// Writes each piece's start and inner points, then the last end; returns the index of that end.
int fill_pieces(const BdyGdspc* pieces, int nPieces, double* result) {
    const double keep = 1.0 - gd_options.roundOff;
    int p = 0;
    for (int i = 0; i < nPieces; ++i) {
        const BdyGdspc& c = pieces[i];
        result[p++] = c.from;
        const int n = static_cast<int>(c.nGds + keep);
        if (n <= 1) continue;
        const double d = c.to - c.from;
        double x = c.from;
        if (c.gp_ratio == 1.0) {
            for (int k = 1; k <= n - 1; ++k) {
                x = x + d / n;
                result[p++] = x;
            }
        } else {
            double* w = static_cast<double*>(std::malloc(n * sizeof(double)));
            const double sum = graded_weights(w, n, 1.0, c.gp_ratio);
            ck_graded_sum(sum, c.gp_ratio, n, gd_options.specFile, "GP Ratio from %g to %g", c.from,
                          c.to);
            for (int k = 0; k <= n - 2; ++k) {
                x = x + w[k] * (d / sum);
                result[p++] = x;
            }
            std::free(w);
        }
    }
    result[p] = pieces[nPieces - 1].to;
    return p;
}

}  // namespace

void gen_line_grid(GridLine* line) {
    if (!line || (line->nGdspcs <= 0 && line->nFrcdGdpts <= 0)) return;
    const double tol = gd_options.gridTol;
    const int cap = line->nFrcdGdpts + 1 + 2 * line->nGdspcs;
    double* pts = static_cast<double*>(std::calloc(cap, sizeof(double)));
    double* forced = static_cast<double*>(std::calloc(cap, sizeof(double)));
    int nPts = 0, nForced = 0;

    for (int i = 0; i < line->nFrcdGdpts; ++i) pts[nPts++] = forced[nForced++] = line->frcdGdpts[i];
    for (int i = 0; i < line->nGdspcs; ++i) {
        const BdyGdspc& s = line->gdspcs[i];
        pts[nPts++] = s.from;
        pts[nPts++] = s.to;
        if (s.FxdFrom) forced[nForced++] = s.from;
        if (s.FxdTo) forced[nForced++] = s.to;
    }

    if (line->hasSymm) {
        const double s = line->symmPosn;
        pts[nPts++] = s;
        if (debug_above(9)) dbgpr_vals("\nPre-Fixed Pts - before mirroring & sorting:", pts, nPts);
        for (int i = 0; i < nPts; ++i)
            if (pts[i] > s) pts[i] = s - (pts[i] - s);
        for (int i = 0; i < nForced; ++i)
            if (forced[i] > s) forced[i] = s - (forced[i] - s);
    }

    std::qsort(pts, nPts, sizeof(double), qscmp_double);
    if (debug_above(9)) dbgpr_vals("\nPre-Fixed Pts - after sorting before rm-dups:", pts, nPts);
    nPts = sort_rm_dups(pts, nPts, tol);
    if (debug_above(9)) dbgpr_vals("Pre-Fixed Pts:", pts, nPts);
    int nPieces = nPts - 1;
    if (nPieces < 1)
        printfErrNexit("the %c grid line has a single distinct point; it needs at least two",
                       "XYZ?"[line->type & 3]);

    int nSpecs = 0;
    BdyGdspc* specs = mirror_gdspcs(line, &nSpecs);

    BdyGdspc* pieces = static_cast<BdyGdspc*>(std::calloc(nPieces, sizeof(BdyGdspc)));
    for (int i = 0; i < nPieces; ++i) {
        pieces[i].from = pts[i];
        pieces[i].to = pts[i + 1];
        pieces[i].nGds = 0.0;
        pieces[i].gp_ratio = 1.0;
    }
    bid_for_pieces(specs, nSpecs, pieces, nPieces);
    if (debug_above(9)) dbgpr_gdspcs("Grid Specs made at prefixed pts.:", pieces, nPieces);

    std::free(pts);
    if (specs != line->gdspcs) std::free(specs);

    // An empty forced list still yields one value, the 0.0 of its zero-filled array.
    const int nKept = sort_rm_dups(forced, nForced, tol);
    mark_forced_ends(pieces, nPieces, forced, nKept > 0 ? nKept - 1 : 0);
    std::free(forced);
    if (debug_above(9)) dbgpr_gdspcs("Grid Specs after marking forced pts.:", pieces, nPieces);

    nPieces = merge_very_small_pieces(pieces, nPieces);
    if (debug_above(9)) dbgpr_gdspcs("Grid Specs after merging very small gds.:", pieces, nPieces);

    ck_line_cells(line, pieces, nPieces);
    int size = 0;
    for (int i = 0; i < nPieces; ++i) size += 2 + static_cast<int>(pieces[i].nGds);
    if (line->hasSymm) size *= 2;
    double* result = static_cast<double*>(std::malloc(size * sizeof(double)));
    int p = fill_pieces(pieces, nPieces, result);

    if (line->hasSymm) {
        const double top = result[p];
        for (int q = p - 1; q >= 0; --q) result[p + (p - q)] = 2 * top - result[q];
        p *= 2;
    }
    std::free(pieces);
    line->nGdpts = p + 1;
    line->gdpts = result;
    if (debug_above(5)) dbgpr_vals("\nGrid-Line Pts:", line->gdpts, line->nGdpts);
}
