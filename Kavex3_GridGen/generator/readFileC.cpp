// Reader of the generator's specification text: keywords, the line-by-line walk and grid specs.
#include "generator/readFileC.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "generator/bodies.h"
#include "generator/gdcheck.h"
#include "generator/gdoutfile.h"
#include "generator/gdutil.h"
#include "generator/readFileC_dbg.h"

int OptionsDefnDone = 0, BodyDefnsDone = 0, XgdSpecDone = 0, YgdSpecDone = 0, ZgdSpecDone = 0;

static GridLine* crnt_gdln = nullptr;
static BdyGdspc* allBdyGdspcs = nullptr;
static int maxBGSs = 0;
static int nBdyGdspcs = 0;

void init_gridln(GridLine* line, int type) {
    line->type = type;
    line->nFrcdGdpts = 0;
    line->frcdGdpts = nullptr;
    line->symmPosn = UNSET_DBL;
    line->hasSymm = 0;
    line->commonSymm = 0;
    line->fullSpanAbout = UNSET_DBL;
    line->nGdspcs = 0;
    line->gdspcs = nullptr;
    line->nGdpts = 0;
    line->gdpts = nullptr;
    line->allBdysMin = UNSET_DBL;
    line->allBdysMax = UNSET_DBL;
    line->discardBelow = UNSET_DBL;
    line->discardAfter = UNSET_DBL;
}

void init_all_grid_lines2() {
    init_gridln(&Xgdln, 0);
    init_gridln(&Ygdln, 1);
    init_gridln(&Zgdln, 2);
}

void init_options2() {
    GdOptions& o = gd_options;
    for (int a = 0; a < 3; ++a) {
        o.gridStart[a] = 0.0;
        o.convFactor[a] = UNSET_DBL;
    }
    o.plotThicknessRatio = 0.009;
    o.cutBlockFraction = 0.12;
    o.cuboidBlockFraction = 0.12;
    o.roundOff = 0.5;
    o.gridTol = 1e-8;
    o.cellTol = 1e-5;
    o.debugLevel = 9;
    o.specFile = nullptr;
    o.layerFile = nullptr;
    o.debugFile = nullptr;
    o.debugStream = stdout;
    o.gridPtsFile = nullptr;
    o.solverInpFile = nullptr;
}

void set_derived_options2() {
    GdOptions& o = gd_options;
    if (o.debugLevel > 0 && o.debugFile && o.debugFile[0] != '\0') {
        // Written in place, like the logs: a run that fails keeps its trail up to the failure.
        FILE* f = gd_try_open_output(o.debugFile, true);
        if (f)
            o.debugStream = f;
        else
            std::perror("using stdout - fopen");
    }
    if (pref_options.layerFile) o.layerFile = pref_options.layerFile;
    if (pref_options.solverInpFile) o.solverInpFile = pref_options.solverInpFile;
    if (!o.solverInpFile || o.solverInpFile[0] == '\0') o.solverInpFile = strdup("SolverGdInp.dat");
}

const char* getSubstring(const char* line, const char* key, int* found) {
    const char* at = std::strstr(line, key);
    *found = at != nullptr;
    return at ? at + std::strlen(key) : "";
}

double reltd_bdyposn_to_abs_posn(const BodyLengthPosn* posn, const Body* body, int axis) {
    if (!body) body = body_from_name(posn->name, 0);
    if (!body) return UNSET_DBL;
    const double lo = body->bdyMin[axis];
    const double hi = body->bdyMax[axis];
    double base;
    if (posn->kind == 2)
        base = lo;
    else if (posn->kind == 1)
        base = hi;
    else if (is_rotor_type(body->type) && body->rotor)
        base = body->rotor->center[axis];
    else
        base = (lo + hi) * 0.5;
    if (posn->value != UNSET_DBL) base += (hi - lo) * posn->value;
    return base;
}

BdyGdspc* newBdyGdspc2() {
    if (nBdyGdspcs == maxBGSs) {
        void* grown = std::realloc(allBdyGdspcs, (maxBGSs + 10) * sizeof(BdyGdspc));
        if (!grown) std::exit(1);
        allBdyGdspcs = static_cast<BdyGdspc*>(grown);
        maxBGSs += 10;
    }
    BdyGdspc* s = &allBdyGdspcs[nBdyGdspcs++];
    s->from = UNSET_DBL;
    s->to = UNSET_DBL;
    s->nGds = 0.0;
    s->gp_ratio = 1.0;
    s->FxdFrom = 1;
    s->FxdTo = 1;
    return s;
}

BdyGdspc* getAllBdyGdspcs() {
    return allBdyGdspcs;
}

int getNBdyGdspcs() {
    return nBdyGdspcs;
}

void reset_newBdyGdspc_parms2() {
    allBdyGdspcs = nullptr;
    maxBGSs = 0;
    nBdyGdspcs = 0;
}

void rm_gdspc_with_nGds_zero_to_gen_frcd_gdpts(GridLine* line) {
    if (line->nGdspcs < 1) return;
    std::vector<double> noted;
    int kept = 0;
    for (int i = 0; i < line->nGdspcs; ++i) {
        const BdyGdspc& s = line->gdspcs[i];
        if (s.nGds > gd_options.gridTol) {
            line->gdspcs[kept++] = s;
            continue;
        }
        if (s.FxdFrom && s.from != UNSET_DBL) noted.push_back(s.from);
        if (s.FxdTo && s.to != UNSET_DBL) noted.push_back(s.to);
    }
    line->nGdspcs = kept;
    if (noted.empty()) return;
    const size_t n = line->nFrcdGdpts + noted.size();
    void* grown = std::realloc(line->frcdGdpts, n * sizeof(double));
    if (!grown) perrorNexit("realloc");
    line->frcdGdpts = static_cast<double*>(grown);
    std::memcpy(line->frcdGdpts + line->nFrcdGdpts, noted.data(), noted.size() * sizeof(double));
    line->nFrcdGdpts = static_cast<int>(n);
}

void compact_gdspcs_of_gdlines2() {
    rm_gdspc_with_nGds_zero_to_gen_frcd_gdpts(&Xgdln);
    rm_gdspc_with_nGds_zero_to_gen_frcd_gdpts(&Ygdln);
    rm_gdspc_with_nGds_zero_to_gen_frcd_gdpts(&Zgdln);
}

namespace {

enum class State { Top, Options, Bodies, Body, Section, Spec };

// Lines keep a trailing '\r' of CRLF text as they are: the run driver writes the text with plain
// line ends, and a name read from CRLF text simply holds the '\r'.
std::vector<std::string> read_all_lines(const char* path) {
    FILE* f = std::fopen(path, "r");
    if (!f) {
        std::fputs("ERROR: File not found\n", stderr);
        std::exit(1);
    }
    std::vector<std::string> lines;
    char* buf = nullptr;
    size_t cap = 0;
    ssize_t len;
    while ((len = getline(&buf, &cap, f)) != -1) {
        if (len > 0 && buf[len - 1] == '\n') --len;
        lines.emplace_back(buf, static_cast<size_t>(len));
    }
    const bool failed = std::ferror(f);
    std::free(buf);
    std::fclose(f);
    if (failed) {
        std::fputs("ERROR: File not found\n", stderr);
        std::exit(1);
    }
    return lines;
}

int holdsTrue(const char* value) {
    return std::strstr(value, "True") != nullptr;
}

// "Name L0.5": the number stands behind the last blank or 'L', the name ends one character
// before it. An empty name gives DBL_MAX.
double position_value(const char* value, int axis, const char* field) {
    const char* split = nullptr;
    for (const char* c = value; *c; ++c)
        if (*c == ' ' || *c == 'L') split = c;
    std::string name;
    BodyLengthPosn posn{nullptr, 2, 0.0};
    if (split) {
        posn.value = std::atof(split + 1);
        if (split - value > 1) name.assign(value, split - value - 1);
    }
    posn.name = name.data();
    const Body* body = body_from_name(posn.name, 1);
    const double p = reltd_bdyposn_to_abs_posn(&posn, body, axis);
    if (p != UNSET_DBL) ck_coord(p, gd_options.specFile, "%c %s%s", "XYZ"[axis], field, value);
    return p;
}

// "(x,y,z)"; components that don't scan keep their values, set or unset.
void read_xyz(const char* value, double xyz[3], const char* field) {
    const int scanned = std::sscanf(value, "(%lf,%lf,%lf)", &xyz[0], &xyz[1], &xyz[2]);
    for (int a = 0; a < scanned; ++a)
        ck_coord(xyz[a], gd_options.specFile, "%s%c", field, "XYZ"[a]);
}

// atoi without its overflow: a level outside the range of int is refused.
int read_debug_level(const char* value) {
    char* end;
    errno = 0;
    const long level = std::strtol(value, &end, 10);
    if (end == value) return 0;
    ck_range(errno == ERANGE ? LONG_MAX : level, INT_MIN, INT_MAX, gd_options.specFile,
             "Debug Level");
    return static_cast<int>(level);
}

// The walk over the lines; each step looks for the keywords of its state in table order.
struct Walker {
    State state = State::Top;
    const char* sectionEnd = nullptr;  // end keyword of the grid section in progress
    int* sectionDone = nullptr;
    Rotor* lastRotor = nullptr;
    const char* v = nullptr;  // value behind the keyword last found

    bool has(const char* line, const char* key) {
        int found;
        v = getSubstring(line, key, &found);
        return found;
    }

    void step(const char* line) {
        switch (state) {
            case State::Top:
                top(line);
                break;
            case State::Options:
                options(line);
                break;
            case State::Bodies:
                bodies(line);
                break;
            case State::Body:
                body(line, &allBdys[numBdys - 1]);
                break;
            case State::Section:
                section(line);
                break;
            case State::Spec:
                spec(line, &getAllBdyGdspcs()[getNBdyGdspcs() - 1]);
                break;
        }
    }

    void top(const char* line) {
        if (has(line, "Start Options")) {
            state = State::Options;
        } else if (has(line, "Start Body Definitions")) {
            state = State::Bodies;
        } else if (has(line, "Body X-GridSpec")) {
            enterSection(&Xgdln, "End X-Grid Spec", &XgdSpecDone);
        } else if (has(line, "Body Y-GridSpec")) {
            enterSection(&Ygdln, "End Y-Grid Spec", &YgdSpecDone);
        } else if (has(line, "Body Z-GridSpec")) {
            enterSection(&Zgdln, "End Z-Grid Spec", &ZgdSpecDone);
        }
    }

    void enterSection(GridLine* line, const char* end, int* done) {
        crnt_gdln = line;
        sectionEnd = end;
        sectionDone = done;
        state = State::Section;
    }

    void options(const char* line) {
        GdOptions& o = gd_options;
        if (has(line, "End Options")) {
            set_derived_options2();
            OptionsDefnDone = 1;
            state = State::Top;
        } else if (has(line, "Grid Start Point: ")) {
            read_xyz(v, o.gridStart, "Grid Start Point ");
        } else if (has(line, "Conversion Factor: ")) {
            read_xyz(v, o.convFactor, "Conversion Factor ");
        } else if (has(line, "Debug Level: ")) {
            o.debugLevel = read_debug_level(v);
        } else if (has(line, "Solver Input File: ")) {
            o.solverInpFile = strdup(v);
        } else if (has(line, "Layer File: ")) {
            o.layerFile = strdup(v);
        }
    }

    void bodies(const char* line) {
        if (has(line, "End Body Definitions")) {
            bodies_lex_input_done();
            BodyDefnsDone = 1;
            set_all_bodies_min_max(&Xgdln.allBdysMin, &Xgdln.allBdysMax, &Ygdln.allBdysMin,
                                   &Ygdln.allBdysMax, &Zgdln.allBdysMin, &Zgdln.allBdysMax);
            state = State::Top;
        } else if (has(line, "New Body")) {
            new_body_struct();
            state = State::Body;
        }
    }

    void body(const char* line, Body* b) {
        if (has(line, "#")) {
            state = State::Bodies;
        } else if (has(line, "name: ")) {
            b->name = strdup(v);
        } else if (has(line, "type: ")) {
            setType(b);
        } else if (has(line, "Points File: ")) {
            b->pointsFile = strdup(v);
        } else if (has(line, "used in solver: ")) {
            b->usedInSolver = holdsTrue(v);
        } else if (lastRotor) {
            rotorKey(line);
        }
        // Rotor keys before any rotor was made have nothing to act on and are ignored.
    }

    // The rotor keys act on the rotor made last, whichever body it belongs to.
    void rotorKey(const char* line) {
        if (has(line, "center: ")) {
            read_xyz(v, lastRotor->center, "rotor center ");
        } else if (has(line, "radius: ")) {
            lastRotor->radius = std::atof(v);
            ck_coord(lastRotor->radius, gd_options.specFile, "rotor radius");
        } else if (has(line, "half thickness: ")) {
            lastRotor->thickness = std::atof(v);
            ck_coord(lastRotor->thickness, gd_options.specFile, "rotor half thickness");
        } else if (has(line, "Is Absolute Thickness: ")) {
            lastRotor->isAbsThickness = holdsTrue(v);
        }
    }

    void setType(Body* b) {
        static const char* const words[] = {"XcutPlanes",    "YcutPlanes",    "ZcutPlanes",
                                            "X-Plane Rotor", "Y-Plane Rotor", "Z-Plane Rotor"};
        static const int types[] = {BDY_XCUTPLANES, BDY_YCUTPLANES, BDY_ZCUTPLANES,
                                    BDY_XROTOR,     BDY_YROTOR,     BDY_ZROTOR};
        b->type = BDY_NONE;
        for (int i = 0; i < 6; ++i) {
            if (!std::strstr(v, words[i])) continue;
            b->type = types[i];
            if (is_rotor_type(b->type)) {
                Rotor* r = static_cast<Rotor*>(std::calloc(1, sizeof(Rotor)));
                if (!r) perrorNexit("calloc");
                b->rotor = lastRotor = init_rotor(r);
            }
            return;
        }
    }

    void section(const char* line) {
        if (has(line, sectionEnd)) {
            crnt_gdln->gdspcs = getAllBdyGdspcs();
            crnt_gdln->nGdspcs = getNBdyGdspcs();
            reset_newBdyGdspc_parms2();
            *sectionDone = 1;
            state = State::Top;
        } else if (has(line, "New GridSpec")) {
            newBdyGdspc2();
            state = State::Spec;
        }
    }

    void spec(const char* line, BdyGdspc* s) {
        const int axis = crnt_gdln->type;
        if (has(line, "#")) {
            if (s->to < s->from) {
                const double from = s->from;
                s->from = s->to;
                s->to = from;
                s->gp_ratio = 1.0 / s->gp_ratio;
            }
            state = State::Section;
        } else if (has(line, "in: ")) {
            bdy_low_high(body_from_name(v, 1), axis, &s->from, &s->to);
        } else if (has(line, "from: ")) {
            s->from = position_value(v, axis, "from: ");
        } else if (has(line, "to: ")) {
            s->to = position_value(v, axis, "to: ");
        } else if (has(line, "number of Grids: ")) {
            s->nGds = std::atof(v);
            ck_cells(s->nGds, gd_options.specFile, "%c number of Grids", "XYZ"[axis]);
        } else if (has(line, "Grid Line On From: ")) {
            s->FxdFrom = holdsTrue(v);
        } else if (has(line, "Grid Line On To: ")) {
            s->FxdTo = holdsTrue(v);
        } else if (has(line, "GP Ratio: ")) {
            const double r = std::atof(v);
            s->gp_ratio = r < 0.0 ? -1.0 / r : r;
            ck_ratio(s->gp_ratio, gd_options.specFile, "%c GP Ratio %s", "XYZ"[axis], v);
        } else if (has(line, "Maintain Symmetry About: ")) {
            const double p = position_value(v, axis, "Maintain Symmetry About: ");
            if (p != UNSET_DBL) {
                crnt_gdln->symmPosn = p;
                crnt_gdln->hasSymm = 1;
            }
        }
    }
};

}  // namespace

void manage_gridgen_input(const char* path) {
    const std::vector<std::string> lines = read_all_lines(path);
    init_all_grid_lines2();
    init_options2();
    gd_options.specFile = strdup(path);  // names the file in messages about its values
    Walker walker;
    for (const std::string& line : lines) walker.step(line.c_str());
    compact_gdspcs_of_gdlines2();
    if (gd_options.debugLevel > 5)
        dbgpr_gridLines_info2(gd_options.debugStream,
                              "Grid Lines - almost just after reading in the spec");
    std::fflush(gd_options.debugStream);
}
