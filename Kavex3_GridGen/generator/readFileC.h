// Reader of the generator's specification text into the module-level records.
#pragma once

#include <cstdio>

#include "generator/gdrecords.h"

// Reads the specification text at path and fills gd_options, Xgdln, Ygdln, Zgdln and allBdys.
// An unreadable file ends the process with "ERROR: File not found" and status 1.
void manage_gridgen_input(const char* path);

// Defaults of gd_options (debugStream stdout, strings null); pref_options is not touched.
void init_options2();
// Defaults of Xgdln, Ygdln, Zgdln (types 0, 1, 2).
void init_all_grid_lines2();
void init_gridln(GridLine* line, int type);
// At the end of the Options section: opens the debug file and applies pref_options' file names.
void set_derived_options2();

// Everything behind the first occurrence of key in line (found = 1); else "" (found = 0).
const char* getSubstring(const char* line, const char* key, int* found);

// Absolute position on axis (0, 1, 2) of a body-relative position; DBL_MAX if the body is unknown.
// A null body is looked up by posn->name.
double reltd_bdyposn_to_abs_posn(const BodyLengthPosn* posn, const Body* body, int axis);

// The collection of grid specs of the section being read, grown by 10 records at a time.
BdyGdspc* newBdyGdspc2();
BdyGdspc* getAllBdyGdspcs();
int getNBdyGdspcs();
// Forgets the collection without freeing it: a grid line has taken it over.
void reset_newBdyGdspc_parms2();

// Removes the specs of a line with no grids (nGds <= gridTol); their fixed ends become
// pre-fixed points, appended to frcdGdpts in order.
void rm_gdspc_with_nGds_zero_to_gen_frcd_gdpts(GridLine* line);
// The above on Xgdln, Ygdln, Zgdln in this order.
void compact_gdspcs_of_gdlines2();

// The walk's states. A line does what the first keyword of its state's table that it holds says
// (the value being everything behind it); a line holding none of them is passed over.
enum SpecState {
    SPEC_TOP,
    SPEC_OPTIONS,
    SPEC_BODIES,
    SPEC_BODY,
    SPEC_XSECTION,
    SPEC_YSECTION,
    SPEC_ZSECTION,
    SPEC_GDSPEC,
    SPEC_STATES
};
constexpr int SPEC_STAY = -1;             // the line leaves the state as it is
constexpr int SPEC_BACK_TO_SECTION = -2;  // the end of a grid spec: back to its section
struct SpecWalker;
struct SpecKeyword {
    const char* key;
    int next;  // a SpecState, SPEC_STAY or SPEC_BACK_TO_SECTION
    void (*act)(SpecWalker&);
};
// A state's keywords in the order they are tried, ended by a null key.
const SpecKeyword* spec_keywords(int state);
// The first keyword of the state's table that line holds (value: the text behind it), or null.
const SpecKeyword* spec_keyword_of(int state, const char* line, const char** value);

// The words of a body's "type: " value, tried in this order: three cut-plane and three rotor types.
extern const char* const spec_body_type_words[6];

// The 1-based number of the input file's line being walked; 0 outside the walk.
extern int gd_spec_line;

// Set to 1 when the text's Options, Bodies, X, Y and Z sections end.
extern int OptionsDefnDone, BodyDefnsDone, XgdSpecDone, YgdSpecDone, ZgdSpecDone;
