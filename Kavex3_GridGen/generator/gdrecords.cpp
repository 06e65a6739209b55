// Storage of the line generator's module-level records; they live for one generator run per
// process.
#include "generator/gdrecords.h"

GdOptions gd_options;
GdOptions pref_options;
GridLine Xgdln, Ygdln, Zgdln;

Body* allBdys = nullptr;
int numBdys = 0;
int maxBdys = 0;
int numOrigBdys = 0;

LayerGrids BefBdyLyrGds[3];
LayerGrids AftBdyLyrGds[3];

int16_t* bodyCells[3] = {nullptr, nullptr, nullptr};
long long nBodyCells = 0;
bool bodyCellsReplaced = false;

int Nfinalgdpts[3] = {0, 0, 0};
double* finalgdpts[3] = {nullptr, nullptr, nullptr};
