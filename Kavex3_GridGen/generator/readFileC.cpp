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

int gd_spec_line = 0;
const char* const spec_body_type_words[6] = {"XcutPlanes",    "YcutPlanes",    "ZcutPlanes",
                                             "X-Plane Rotor", "Y-Plane Rotor", "Z-Plane Rotor"};
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

}  // namespace

// The walk over the lines: a state's keywords are tried in table order and the first found acts.
struct SpecWalker {
    int state = SPEC_TOP;
    int section = SPEC_XSECTION;  // the grid section that a spec record returns to
    Rotor* lastRotor = nullptr;
    const char* v = nullptr;  // value behind the keyword found

    void step(const char* line) {
        const SpecKeyword* k = spec_keyword_of(state, line, &v);
        if (!k) return;
        k->act(*this);
        if (k->next == SPEC_BACK_TO_SECTION)
            state = section;
        else if (k->next != SPEC_STAY)
            state = k->next;
    }

    Body* body() { return &allBdys[numBdys - 1]; }
    BdyGdspc* spec() { return &getAllBdyGdspcs()[getNBdyGdspcs() - 1]; }
    int axis() const { return crnt_gdln->type; }
};

namespace {

void nothing(SpecWalker&) {}

void enterSection(SpecWalker& w, GridLine* line) {
    crnt_gdln = line;
    w.section = SPEC_XSECTION + line->type;
}

void endSection(SpecWalker&) {
    static int* const done[] = {&XgdSpecDone, &YgdSpecDone, &ZgdSpecDone};
    crnt_gdln->gdspcs = getAllBdyGdspcs();
    crnt_gdln->nGdspcs = getNBdyGdspcs();
    reset_newBdyGdspc_parms2();
    *done[crnt_gdln->type] = 1;
}

void endOptions(SpecWalker&) {
    set_derived_options2();
    OptionsDefnDone = 1;
}

void endBodies(SpecWalker&) {
    bodies_lex_input_done();
    BodyDefnsDone = 1;
    set_all_bodies_min_max(&Xgdln.allBdysMin, &Xgdln.allBdysMax, &Ygdln.allBdysMin,
                           &Ygdln.allBdysMax, &Zgdln.allBdysMin, &Zgdln.allBdysMax);
}

const int kBodyTypes[] = {BDY_XCUTPLANES, BDY_YCUTPLANES, BDY_ZCUTPLANES,
                          BDY_XROTOR,     BDY_YROTOR,     BDY_ZROTOR};

void setType(SpecWalker& w) {
    Body* b = w.body();
    b->type = BDY_NONE;
    for (int i = 0; i < 6; ++i) {
        if (!std::strstr(w.v, spec_body_type_words[i])) continue;
        b->type = kBodyTypes[i];
        if (is_rotor_type(b->type)) {
            Rotor* r = static_cast<Rotor*>(std::calloc(1, sizeof(Rotor)));
            if (!r) perrorNexit("calloc");
            b->rotor = w.lastRotor = init_rotor(r);
        }
        return;
    }
}

// The rotor keys act on the rotor made last, whichever body it belongs to; before any rotor was
// made they have nothing to act on and are passed over.
void rotorCenter(SpecWalker& w) {
    if (w.lastRotor) read_xyz(w.v, w.lastRotor->center, "rotor center ");
}

void rotorRadius(SpecWalker& w) {
    if (!w.lastRotor) return;
    w.lastRotor->radius = std::atof(w.v);
    ck_coord(w.lastRotor->radius, gd_options.specFile, "rotor radius");
}

void rotorThickness(SpecWalker& w) {
    if (!w.lastRotor) return;
    w.lastRotor->thickness = std::atof(w.v);
    ck_coord(w.lastRotor->thickness, gd_options.specFile, "rotor half thickness");
}

void rotorAbsolute(SpecWalker& w) {
    if (w.lastRotor) w.lastRotor->isAbsThickness = holdsTrue(w.v);
}

void endSpec(SpecWalker& w) {
    BdyGdspc* s = w.spec();
    if (s->to < s->from) {
        const double from = s->from;
        s->from = s->to;
        s->to = from;
        s->gp_ratio = 1.0 / s->gp_ratio;
    }
}

void specRatio(SpecWalker& w) {
    const double r = std::atof(w.v);
    BdyGdspc* s = w.spec();
    s->gp_ratio = r < 0.0 ? -1.0 / r : r;
    ck_ratio(s->gp_ratio, gd_options.specFile, "%c GP Ratio %s", "XYZ"[w.axis()], w.v);
}

void specSymmetry(SpecWalker& w) {
    const double p = position_value(w.v, w.axis(), "Maintain Symmetry About: ");
    if (p != UNSET_DBL) {
        crnt_gdln->symmPosn = p;
        crnt_gdln->hasSymm = 1;
    }
}

using W = SpecWalker;
const SpecKeyword kTop[] = {
    {"Start Options", SPEC_OPTIONS, nothing},
    {"Start Body Definitions", SPEC_BODIES, nothing},
    {"Body X-GridSpec", SPEC_XSECTION, [](W& w) { enterSection(w, &Xgdln); }},
    {"Body Y-GridSpec", SPEC_YSECTION, [](W& w) { enterSection(w, &Ygdln); }},
    {"Body Z-GridSpec", SPEC_ZSECTION, [](W& w) { enterSection(w, &Zgdln); }},
    {nullptr, 0, nullptr}};
const SpecKeyword kOptions[] = {
    {"End Options", SPEC_TOP, endOptions},
    {"Grid Start Point: ", SPEC_STAY,
     [](W& w) { read_xyz(w.v, gd_options.gridStart, "Grid Start Point "); }},
    {"Conversion Factor: ", SPEC_STAY,
     [](W& w) { read_xyz(w.v, gd_options.convFactor, "Conversion Factor "); }},
    {"Debug Level: ", SPEC_STAY, [](W& w) { gd_options.debugLevel = read_debug_level(w.v); }},
    {"Solver Input File: ", SPEC_STAY, [](W& w) { gd_options.solverInpFile = strdup(w.v); }},
    {"Layer File: ", SPEC_STAY, [](W& w) { gd_options.layerFile = strdup(w.v); }},
    {nullptr, 0, nullptr}};
const SpecKeyword kBodies[] = {{"End Body Definitions", SPEC_TOP, endBodies},
                               {"New Body", SPEC_BODY, [](W&) { new_body_struct(); }},
                               {nullptr, 0, nullptr}};
const SpecKeyword kBody[] = {
    {"#", SPEC_BODIES, nothing},
    {"name: ", SPEC_STAY, [](W& w) { w.body()->name = strdup(w.v); }},
    {"type: ", SPEC_STAY, setType},
    {"Points File: ", SPEC_STAY, [](W& w) { w.body()->pointsFile = strdup(w.v); }},
    {"used in solver: ", SPEC_STAY, [](W& w) { w.body()->usedInSolver = holdsTrue(w.v); }},
    {"center: ", SPEC_STAY, rotorCenter},
    {"radius: ", SPEC_STAY, rotorRadius},
    {"half thickness: ", SPEC_STAY, rotorThickness},
    {"Is Absolute Thickness: ", SPEC_STAY, rotorAbsolute},
    {nullptr, 0, nullptr}};
// The end keywords aren't checked against the section: each section looks only for its own.
const SpecKeyword kXSection[] = {{"End X-Grid Spec", SPEC_TOP, endSection},
                                 {"New GridSpec", SPEC_GDSPEC, [](W&) { newBdyGdspc2(); }},
                                 {nullptr, 0, nullptr}};
const SpecKeyword kYSection[] = {{"End Y-Grid Spec", SPEC_TOP, endSection},
                                 {"New GridSpec", SPEC_GDSPEC, [](W&) { newBdyGdspc2(); }},
                                 {nullptr, 0, nullptr}};
const SpecKeyword kZSection[] = {{"End Z-Grid Spec", SPEC_TOP, endSection},
                                 {"New GridSpec", SPEC_GDSPEC, [](W&) { newBdyGdspc2(); }},
                                 {nullptr, 0, nullptr}};
const SpecKeyword kGdspec[] = {
    {"#", SPEC_BACK_TO_SECTION, endSpec},
    {"in: ", SPEC_STAY,
     [](W& w) { bdy_low_high(body_from_name(w.v, 1), w.axis(), &w.spec()->from, &w.spec()->to); }},
    {"from: ", SPEC_STAY, [](W& w) { w.spec()->from = position_value(w.v, w.axis(), "from: "); }},
    {"to: ", SPEC_STAY, [](W& w) { w.spec()->to = position_value(w.v, w.axis(), "to: "); }},
    {"number of Grids: ", SPEC_STAY,
     [](W& w) {
         w.spec()->nGds = std::atof(w.v);
         ck_cells(w.spec()->nGds, gd_options.specFile, "%c number of Grids", "XYZ"[w.axis()]);
     }},
    {"Grid Line On From: ", SPEC_STAY, [](W& w) { w.spec()->FxdFrom = holdsTrue(w.v); }},
    {"Grid Line On To: ", SPEC_STAY, [](W& w) { w.spec()->FxdTo = holdsTrue(w.v); }},
    {"GP Ratio: ", SPEC_STAY, specRatio},
    {"Maintain Symmetry About: ", SPEC_STAY, specSymmetry},
    {nullptr, 0, nullptr}};

}  // namespace

const SpecKeyword* spec_keywords(int state) {
    static const SpecKeyword* const tables[SPEC_STATES] = {
        kTop, kOptions, kBodies, kBody, kXSection, kYSection, kZSection, kGdspec};
    return tables[state];
}

const SpecKeyword* spec_keyword_of(int state, const char* line, const char** value) {
    for (const SpecKeyword* k = spec_keywords(state); k->key; ++k) {
        int found;
        *value = getSubstring(line, k->key, &found);
        if (found) return k;
    }
    return nullptr;
}

void manage_gridgen_input(const char* path) {
    const std::vector<std::string> lines = read_all_lines(path);
    init_all_grid_lines2();
    init_options2();
    gd_options.specFile = strdup(path);  // names the file in messages about its values
    SpecWalker walker;
    gd_spec_line = 0;
    for (const std::string& line : lines) {
        ++gd_spec_line;
        walker.step(line.c_str());
    }
    gd_spec_line = 0;
    compact_gdspcs_of_gdlines2();
    if (gd_options.debugLevel > 5)
        dbgpr_gridLines_info2(gd_options.debugStream,
                              "Grid Lines - almost just after reading in the spec");
    std::fflush(gd_options.debugStream);
}
