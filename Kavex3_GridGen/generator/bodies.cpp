// The line generator's bodies: the body table, cut-points files, boxes, scaling and translation.
#include "generator/bodies.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include "generator/gdcheck.h"
#include "generator/gdutil.h"

static const char* orEmpty(const char* s) {
    return s ? s : "";
}

Body* new_body_struct() {
    if (numBdys == maxBdys) {
        void* grown = std::realloc(allBdys, (maxBdys + 10) * sizeof(Body));
        if (!grown) printfErrNexit("can not grow the body table beyond %d bodies", maxBdys);
        allBdys = static_cast<Body*>(grown);
        maxBdys += 10;
    }
    Body* b = &allBdys[numBdys++];
    std::memset(b, 0, sizeof *b);
    b->type = BDY_NONE;
    // The box stays unset until the body's data give one.
    for (int a = 0; a < 3; ++a) b->bdyMin[a] = b->bdyMax[a] = UNSET_DBL;
    b->usedInSolver = 1;
    b->fullSpanUsedInSolver = -1;
    b->mirrorAxis = 3;
    b->blockFraction = UNSET_DBL;
    return b;
}

Rotor* init_rotor(Rotor* rotor) {
    for (double& c : rotor->center) c = UNSET_DBL;
    rotor->radius = UNSET_DBL;
    rotor->thickness = UNSET_DBL;
    rotor->isAbsThickness = 0;
    rotor->plotThicknessRatio = gd_options.plotThicknessRatio;
    return rotor;
}

[[noreturn]] static void unreadable(const Body* body) {
    printfErrNexit("can not read the counts or values of body points file '%s'",
                   orEmpty(body->pointsFile));
}

void read_body_cuts_pts(Body* body, FILE* stream) {
    long long counts[2];
    if (!rd_int(skpcmt(stream), &counts[0]) || !rd_int(stream, &counts[1]) || counts[0] < 0 ||
        counts[1] < 0)
        unreadable(body);
    const char* file = body->pointsFile;
    ck_range(counts[0], 0, INT_MAX, file, "number of cuts");
    ck_range(counts[1], 0, INT_MAX, file, "points of each cut");
    ck_fits_in_file(stream, counts[0], 1 + 2 * counts[1], file, "number of cuts of %lld points",
                    counts[1]);
    const int nCuts = static_cast<int>(counts[0]), nPts = static_cast<int>(counts[1]);
    BodyCut* cuts = static_cast<BodyCut*>(std::calloc(nCuts ? nCuts : 1, sizeof(BodyCut)));
    if (!cuts) perrorNexit("calloc");
    body->cuts = cuts;
    body->nCuts = nCuts;
    for (int c = 0; c < nCuts; ++c) {
        BodyCut& cut = cuts[c];
        if (std::fscanf(skpcmt(stream), " %lf", &cut.posn) != 1) unreadable(body);
        ck_coord(cut.posn, file, "cut %d position", c + 1);
        cut.pts = static_cast<double(*)[2]>(std::calloc(nPts ? nPts : 1, sizeof *cut.pts));
        if (!cut.pts) perrorNexit("calloc");
        cut.nPts = nPts;
        for (int i = 0; i < nPts; ++i) {
            double* p = cut.pts[i];
            if (std::fscanf(skpcmt(stream), " %lf %lf", &p[0], &p[1]) != 2) unreadable(body);
            ck_coord(p[0], file, "cut %d point %d, first coordinate", c + 1, i + 1);
            ck_coord(p[1], file, "cut %d point %d, second coordinate", c + 1, i + 1);
            if (p[0] < cut.pts[cut.minQ1][0])
                cut.minQ1 = i;
            else if (p[0] > cut.pts[cut.maxQ1][0])
                cut.maxQ1 = i;
            if (p[1] < cut.pts[cut.minQ2][1])
                cut.minQ2 = i;
            else if (p[1] > cut.pts[cut.maxQ2][1])
                cut.maxQ2 = i;
        }
    }
}

// Applies op(value, t[axis]) to every coordinate of the body's own data (not its box).
template <typename Op>
static void apply_to_bdy_data(Body* body, const double t[3], Op op) {
    if (is_cut_planes_type(body->type)) {
        int a1, a2;
        cut_pair_axes(body->type, &a1, &a2);
        for (int c = 0; c < body->nCuts; ++c) {
            BodyCut& cut = body->cuts[c];
            cut.posn = op(cut.posn, t[body->type]);
            for (int i = 0; i < cut.nPts; ++i) {
                cut.pts[i][0] = op(cut.pts[i][0], t[a1]);
                cut.pts[i][1] = op(cut.pts[i][1], t[a2]);
            }
        }
    } else if (body->type == BDY_CUBOID && body->cuboid) {
        for (int a = 0; a < 3; ++a) {
            body->cuboid[a] = op(body->cuboid[a], t[a]);
            body->cuboid[3 + a] = op(body->cuboid[3 + a], t[a]);
        }
    } else if (is_rotor_type(body->type) && body->rotor) {
        for (int a = 0; a < 3; ++a) body->rotor->center[a] = op(body->rotor->center[a], t[a]);
    }
}

static double add(double v, double t) {
    return v + t;
}

void tr_origBdypts_if_needed(Body* body) {
    const double* o = body->origin;
    if (o[0] == 0.0 && o[1] == 0.0 && o[2] == 0.0) return;
    apply_to_bdy_data(body, o, add);
}

void scale_origBdypts(Body* body, const double factors[3]) {
    apply_to_bdy_data(body, factors, [](double v, double f) { return v * f; });
    Rotor* r = body->rotor;
    if (is_rotor_type(body->type) && r) {
        // The radius follows the X factor and an absolute thickness the Z factor, whatever the
        // disc's axis; a ratio thickness is not scaled.
        r->radius *= factors[0];
        if (r->isAbsThickness) r->thickness *= factors[2];
    }
}

// Returns whether the body's data gave it a box.
static bool set_bdy_box(Body* b) {
    if (is_cut_planes_type(b->type)) {
        // A body without cuts (no points file) keeps its box as it is.
        if (b->nCuts < 1 || b->cuts[0].nPts < 1) return false;
        double pMin = b->cuts[0].posn, pMax = pMin;
        double q1Min = b->cuts[0].pts[0][0], q1Max = q1Min;
        double q2Min = b->cuts[0].pts[0][1], q2Max = q2Min;
        for (int c = 0; c < b->nCuts; ++c) {
            const BodyCut& cut = b->cuts[c];
            if (cut.posn < pMin) pMin = cut.posn;
            if (cut.posn > pMax) pMax = cut.posn;
            if (cut.pts[cut.minQ1][0] < q1Min) q1Min = cut.pts[cut.minQ1][0];
            if (cut.pts[cut.maxQ1][0] > q1Max) q1Max = cut.pts[cut.maxQ1][0];
            if (cut.pts[cut.minQ2][1] < q2Min) q2Min = cut.pts[cut.minQ2][1];
            if (cut.pts[cut.maxQ2][1] > q2Max) q2Max = cut.pts[cut.maxQ2][1];
        }
        int a1, a2;
        cut_pair_axes(b->type, &a1, &a2);
        b->bdyMin[b->type] = pMin;
        b->bdyMax[b->type] = pMax;
        b->bdyMin[a1] = q1Min;
        b->bdyMax[a1] = q1Max;
        b->bdyMin[a2] = q2Min;
        b->bdyMax[a2] = q2Max;
        return true;
    }
    if (b->type == BDY_CUBOID && b->cuboid) {
        for (int a = 0; a < 3; ++a) {
            const double p = b->cuboid[a], q = b->cuboid[3 + a];
            b->bdyMin[a] = p < q ? p : q;
            b->bdyMax[a] = p < q ? q : p;
        }
        return true;
    }
    if (is_rotor_type(b->type) && b->rotor) {
        const Rotor& r = *b->rotor;
        const double h = r.isAbsThickness ? r.thickness : r.radius * r.thickness;
        for (int a = 0; a < 3; ++a) {
            const double d = a == b->type - BDY_XROTOR ? h : r.radius;
            b->bdyMin[a] = r.center[a] - d;
            b->bdyMax[a] = r.center[a] + d;
        }
        return true;
    }
    return false;
}

void bodies_lex_input_done() {
    const double* f = gd_options.convFactor;
    const bool scale = f[0] != UNSET_DBL && f[1] != UNSET_DBL && f[2] != UNSET_DBL;
    for (int i = 0; i < numBdys; ++i) {
        Body* b = &allBdys[i];
        if (is_cut_planes_type(b->type) && b->pointsFile && b->pointsFile[0] != '\0') {
            FILE* in = std::fopen(b->pointsFile, "r");
            if (!in) printfErrNexit("can not open body points file '%s'", b->pointsFile);
            read_body_cuts_pts(b, in);
            std::fclose(in);
        }
        tr_origBdypts_if_needed(b);
        if (scale) scale_origBdypts(b, f);
        // Scaling, or a rotor value left unset, can carry the box out of range.
        if (set_bdy_box(b))
            for (int a = 0; a < 6; ++a)
                ck_coord(a < 3 ? b->bdyMin[a] : b->bdyMax[a - 3], gd_options.specFile,
                         "extent of body '%s' on %c", orEmpty(b->name), "XYZ"[a % 3]);
        if (b->fullSpanUsedInSolver == -1) b->fullSpanUsedInSolver = b->usedInSolver;
    }
    numOrigBdys = numBdys;
}

Body* body_from_name(const char* name, int mustExist) {
    if (!name || name[0] == '\0') return nullptr;
    for (int i = 0; i < numBdys; ++i)
        if (allBdys[i].name && std::strcmp(allBdys[i].name, name) == 0) return &allBdys[i];
    if (mustExist) printfErrNexit("Incorrect body name '%s'", name);
    return nullptr;
}

void bdy_low_high(const Body* body, int axis, double* low, double* high) {
    if (!body) return;
    *low = body->bdyMin[axis];
    *high = body->bdyMax[axis];
}

void set_all_bodies_min_max(double* xMin, double* xMax, double* yMin, double* yMax, double* zMin,
                            double* zMax) {
    if (numBdys < 1) return;
    double* mins[3] = {xMin, yMin, zMin};
    double* maxs[3] = {xMax, yMax, zMax};
    for (int a = 0; a < 3; ++a) {
        *mins[a] = allBdys[0].bdyMin[a];
        *maxs[a] = allBdys[0].bdyMax[a];
        for (int i = 1; i < numBdys; ++i) {
            if (allBdys[i].bdyMin[a] < *mins[a]) *mins[a] = allBdys[i].bdyMin[a];
            if (allBdys[i].bdyMax[a] > *maxs[a]) *maxs[a] = allBdys[i].bdyMax[a];
        }
    }
}

void trAllBdyPts(const double t[3]) {
    for (int i = 0; i < numBdys; ++i) {
        Body* b = &allBdys[i];
        apply_to_bdy_data(b, t, add);
        for (int a = 0; a < 3; ++a) {
            b->bdyMin[a] += t[a];
            b->bdyMax[a] += t[a];
        }
    }
}

static const char* tf(int flag) {
    return flag ? "True" : "False";
}

void dbgpr_body_info(FILE* stream, const Body* bodies, int count, const char* title) {
    static const char* const axes[] = {"X", "Y", "Z"};
    std::fprintf(stream, "\n%s\nNo. of Bodys: %d\n", title, count);
    for (int i = 0; i < count; ++i) {
        const Body& b = bodies[i];
        std::fprintf(stream, "\nBody Name: %s\n", orEmpty(b.name));
        if (is_cut_planes_type(b.type)) {
            std::fprintf(stream, "Body Points Type: %scutPlanes\n", axes[b.type]);
            std::fprintf(stream, "Body Points File: %s\n", orEmpty(b.pointsFile));
        } else if (b.type == BDY_CUBOID) {
            std::fprintf(stream, "Body Points Type: Cuboid\n");
            if (b.cuboid) {
                const double* c = b.cuboid;
                std::fprintf(stream, "Cuboid Pts: (%f, %f, %f) to (%f, %f, %f)\n", c[0], c[1], c[2],
                             c[3], c[4], c[5]);
            }
        } else if (is_rotor_type(b.type)) {
            std::fprintf(stream, "Body Points Type: %s-Plane Rotor\n", axes[b.type - BDY_XROTOR]);
            if (const Rotor* r = b.rotor) {
                std::fprintf(stream,
                             "Rotor Center: (%f, %f, %f)\nRotor Radius: %f\nRotor Thickness: "
                             "%f\nIs Abs. Thickness? %s\nPlot Thickness Ratio: %f\n",
                             r->center[0], r->center[1], r->center[2], r->radius, r->thickness,
                             tf(r->isAbsThickness), r->plotThicknessRatio);
            }
        }
        // An unresolved full-span flag (-1) shows what it stands for: the body's own flag.
        const int fullSpan = b.fullSpanUsedInSolver == -1 ? b.usedInSolver : b.fullSpanUsedInSolver;
        std::fprintf(stream, "Used In Solver: %s\n", tf(b.usedInSolver));
        std::fprintf(stream, "Full Span Used In Solver: %s\n", tf(fullSpan));
        std::fprintf(stream, "Bounding Box: (MinXYZ: %f, %f, %f) to (MaxXYZ: %f, %f, %f)\n",
                     b.bdyMin[0], b.bdyMin[1], b.bdyMin[2], b.bdyMax[0], b.bdyMax[1], b.bdyMax[2]);
    }
}
