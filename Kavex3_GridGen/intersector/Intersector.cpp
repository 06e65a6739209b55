// Unfinished.
#include "intersector/Intersector.h"
GridCellArray g_gridCells;
FEL_vector3<int> g_v3iGridDimensions;
bool g_blnDebug = false;
IntersectOptions g_intersectOptions;
void IntersectGrid(FEL_pointer<FEL_mesh>, std::vector<_BodyStruct>, std::string) {}
