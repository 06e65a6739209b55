// Module-level records of the line generator: options, grid lines, grid specs, bodies, layers, body
// cells.
#pragma once

#include <cfloat>
#include <cstdint>
#include <cstdio>

// Unset doubles hold the largest finite double; every "is it set" test compares with exactly this.
constexpr double UNSET_DBL = DBL_MAX;

struct BdyGdspc {
    double from;      // start of the range
    double to;        // end of the range
    double nGds;      // number of grids (cells) in the range, not necessarily whole
    double gp_ratio;  // ratio of each cell's width to the one before it
    int FxdFrom;      // a grid line must lie on from
    int FxdTo;        // a grid line must lie on to
};

struct GridLine {
    int type;  // 0 X, 1 Y, 2 Z; 3 marks a working record
    int nFrcdGdpts;
    double* frcdGdpts;  // pre-fixed points that must be grid points
    double symmPosn;
    int hasSymm;
    int commonSymm;
    double fullSpanAbout;
    int nGdspcs;
    BdyGdspc* gdspcs;
    int nGdpts;
    double* gdpts;  // generated points, ascending
    double allBdysMin;
    double allBdysMax;
    double discardBelow;
    double discardAfter;
};

struct GdOptions {
    double gridStart[3];
    double convFactor[3];  // used only when all three are set
    double plotThicknessRatio;
    double cutBlockFraction;
    double cuboidBlockFraction;
    double roundOff;
    double gridTol;
    double cellTol;
    int debugLevel;
    char* specFile;
    char* layerFile;
    char* debugFile;
    FILE* debugStream;
    char* gridPtsFile;
    char* solverInpFile;
};

// A position told relative to a body: kind 2 low end, 1 high end, otherwise the centre.
struct BodyLengthPosn {
    char* name;
    int kind;
    double value;  // fraction of the body's length added to the base, unless unset
};

struct Rotor {
    double center[3];
    double radius;
    double thickness;  // half thickness: absolute, or a ratio of radius
    int isAbsThickness;
    double plotThicknessRatio;
};

// One cut plane: a polygon of (q1, q2) pairs, the two coordinates other than the cut axis in axis
// order.
struct BodyCut {
    double posn;
    double (*pts)[2];
    int nPts;
    int minQ1, maxQ1;  // indices of the points with the smallest and largest q1
    int minQ2, maxQ2;
};

// Body::type. A cut-plane body's type is its cut axis; a rotor's is BDY_XROTOR + its disc's axis.
// These are not the run driver's BodyType codes.
enum BdyType : int {
    BDY_XCUTPLANES = 0,
    BDY_YCUTPLANES = 1,
    BDY_ZCUTPLANES = 2,
    BDY_CUBOID = 3,
    BDY_XROTOR = 4,
    BDY_YROTOR = 5,
    BDY_ZROTOR = 6,
    BDY_NONE = 10,
};

inline bool is_cut_planes_type(int type) {
    return type >= BDY_XCUTPLANES && type <= BDY_ZCUTPLANES;
}
inline bool is_rotor_type(int type) {
    return type >= BDY_XROTOR && type <= BDY_ZROTOR;
}

// The axes of a cut's (q1, q2) pairs: the two axes other than the cut axis, in axis order.
inline void cut_pair_axes(int cutAxis, int* q1, int* q2) {
    *q1 = cutAxis == 0 ? 1 : 0;
    *q2 = cutAxis == 2 ? 1 : 2;
}

struct Body {
    char* name;
    int type;  // a BdyType
    char* pointsFile;
    BodyCut* cuts;
    int nCuts;
    double* cuboid;  // six doubles: two opposite corners, each X, Y, Z
    Rotor* rotor;
    double origin[3];
    double bdyMin[3];
    double bdyMax[3];
    int usedInSolver;
    int fullSpanUsedInSolver;  // -1: like usedInSolver
    int mirrorAxis;            // axis of a full-span copy; 3 for an original
    double blockFraction;
};

struct Layer {
    double length;
    double gp_ratio;
    int nCells;
    int nxtCnctd;  // this layer continues into the next one
};

struct LayerGrids {
    int nLayers;
    Layer* layers;
    double startPosn;
    int nWidths;
    double* widths;
};

extern GdOptions gd_options;
extern GdOptions pref_options;
extern GridLine Xgdln, Ygdln, Zgdln;

extern Body* allBdys;
extern int numBdys;
extern int maxBdys;
extern int numOrigBdys;

extern LayerGrids BefBdyLyrGds[3];
extern LayerGrids AftBdyLyrGds[3];

// Blocked cells: three parallel arrays of 16-bit cell indices, I, J, K. Bodies may overlap, so the
// count can pass the grid's own count of cells, and 2^31 at the largest grid.
extern int16_t* bodyCells[3];
extern long long nBodyCells;
// Set by a caller that replaces the generator's body cells with its own (every body a surface,
// whose cut body is only its bounding box): at debug level 0 no file or log shows those cells, and
// they are not marked.
extern bool bodyCellsReplaced;

extern int Nfinalgdpts[3];
extern double* finalgdpts[3];
