// Range checks of the numbers the line generator reads and the sizes it derives from them.
#include "generator/gdcheck.h"

#include <cctype>
#include <climits>
#include <cmath>
#include <cstdarg>

#include "generator/gdutil.h"

namespace {

// The field's name, from its format and the arguments behind it.
#define FIELD_NAME(name)                            \
    char name[256];                                 \
    va_list args;                                   \
    va_start(args, field);                          \
    std::vsnprintf(name, sizeof name, field, args); \
    va_end(args)

// Ends the run: "file 'F', FIELD = VALUE: WHY".
[[noreturn]] void refuse(const char* file, const char* name, const char* value, const char* why) {
    printfErrNexit("file '%s', %s = %s: %s", file ? file : "", name, value, why);
}

[[noreturn]] void refuse_dbl(const char* file, const char* name, double v, const char* why) {
    char value[32];
    std::snprintf(value, sizeof value, "%.15g", v);
    refuse(file, name, value, why);
}

const char* spec_file() {
    return gd_options.specFile;
}

char axis_name(int axis) {
    return "XYZ?"[axis >= 0 && axis < 3 ? axis : 3];
}

}  // namespace

void ck_coord(double v, const char* file, const char* field, ...) {
    if (std::fabs(v) <= kMaxCoord) return;  // false for NaN too
    FIELD_NAME(name);
    refuse_dbl(file, name, v,
               std::isfinite(v) ? "beyond the +-1e15 a coordinate may reach" : "not a number");
}

void ck_ratio(double v, const char* file, const char* field, ...) {
    if (std::isfinite(v) && std::isfinite(1.0 / v)) return;
    FIELD_NAME(name);
    refuse_dbl(file, name, v, "a ratio must be a number whose reciprocal is a number too");
}

void ck_cells(double v, const char* file, const char* field, ...) {
    if (std::isfinite(v) && v <= kMaxAxisCells) return;
    FIELD_NAME(name);
    refuse_dbl(file, name, v,
               std::isfinite(v) ? "an axis holds at most 32767 cells" : "not a number");
}

void ck_range(long long v, long long lo, long long hi, const char* file, const char* field, ...) {
    if (v >= lo && v <= hi) return;
    char value[32], why[80];
    std::snprintf(value, sizeof value, "%lld", v);
    std::snprintf(why, sizeof why, "outside the range %lld to %lld", lo, hi);
    FIELD_NAME(name);
    refuse(file, name, value, why);
}

int rd_int(FILE* stream, long long* v) {
    int c;
    do c = std::fgetc(stream);
    while (c != EOF && std::isspace(c));
    const bool negative = c == '-';
    if (c == '+' || c == '-') c = std::fgetc(stream);
    if (c == EOF || !std::isdigit(c)) {
        if (c != EOF) std::ungetc(c, stream);
        return 0;
    }
    long long magnitude = 0;
    for (; c != EOF && std::isdigit(c); c = std::fgetc(stream)) {
        const int digit = c - '0';
        magnitude = magnitude > (LLONG_MAX - digit) / 10 ? LLONG_MAX : magnitude * 10 + digit;
    }
    if (c != EOF) std::ungetc(c, stream);
    *v = negative ? -magnitude : magnitude;
    return 1;
}

void ck_fits_in_file(FILE* stream, long long count, long long each, const char* file,
                     const char* field, ...) {
    // ftell counts a pushed-back character as unread, and seeking back re-reads it from the file.
    const long pos = std::ftell(stream);
    if (pos < 0 || each <= 0 || std::fseek(stream, 0, SEEK_END) != 0) return;
    const long end = std::ftell(stream);
    std::fseek(stream, pos, SEEK_SET);
    const long long fit = (end - pos + 1) / 2;  // numbers the rest can hold
    if (count <= fit / each) return;
    char value[32], why[96];
    std::snprintf(value, sizeof value, "%lld", count);
    std::snprintf(why, sizeof why, "the %ld bytes left in the file can not hold so many",
                  end - pos);
    FIELD_NAME(name);
    refuse(file, name, value, why);
}

void ck_graded_sum(double sum, double r, long long n, const char* file, const char* field, ...) {
    if (std::isfinite(sum)) return;
    char why[96];
    std::snprintf(why, sizeof why, "over %lld cells the widths grow beyond any number", n);
    FIELD_NAME(name);
    refuse_dbl(file, name, r, why);
}

void ck_gdspcs(const GridLine* line) {
    for (int i = 0; i < line->nGdspcs; ++i) {
        const BdyGdspc& s = line->gdspcs[i];
        if (s.from != UNSET_DBL && s.to != UNSET_DBL) continue;
        printfErrNexit(
            "file '%s', %c grid spec with number of Grids = %g: it needs both a from and a to",
            spec_file(), axis_name(line->type), s.nGds);
    }
}

void ck_line_cells(const GridLine* line, const BdyGdspc* pieces, int nPieces) {
    const double keep = 1.0 - gd_options.roundOff;
    long long cells = 0;
    for (int i = 0; i < nPieces; ++i) {
        const BdyGdspc& p = pieces[i];
        ck_cells(p.nGds, spec_file(), "%c grid line, cells from %g to %g", axis_name(line->type),
                 p.from, p.to);
        const long long n = static_cast<long long>(p.nGds + keep);
        cells += n > 1 ? n : 1;
    }
    if (line->hasSymm) cells *= 2;
    ck_range(cells, 0, kMaxAxisCells, spec_file(), "%c grid line, cells", axis_name(line->type));
}

void ck_axis_cells(int axis, long long cells) {
    if (cells <= kMaxAxisCells) return;
    printfErrNexit(
        "file '%s' with layer file '%s', %c axis cells = %lld: the solver's 16-bit cell indices "
        "address at most 32767",
        spec_file(), gd_options.layerFile ? gd_options.layerFile : "", axis_name(axis), cells);
}

void ck_lines_size() {
    const int n[3] = {Xgdln.nGdpts, Ygdln.nGdpts, Zgdln.nGdpts};
    for (int a = 0; a < 3; ++a) ck_axis_cells(a, n[a] - 1LL);
    ck_grid_points(n);
}

void ck_grid_points(const int n[3]) {
    const long long points = static_cast<long long>(n[0]) * n[1] * n[2];
    if (points <= kMaxGridPoints) return;
    printfErrNexit(
        "file '%s' with layer file '%s', grid points = %d x %d x %d = %lld: the mesh library "
        "numbers at most 2147483647 points",
        spec_file(), gd_options.layerFile ? gd_options.layerFile : "", n[0], n[1], n[2], points);
}
