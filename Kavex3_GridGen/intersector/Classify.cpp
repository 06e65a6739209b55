// Unfinished.
#include "intersector/Classify.h"
void ClassifyCells(FEL_pointer<FEL_mesh>) {}
int IsCellInterior(FEL_vector3<int>, GridCellArray&, GridCell&) { return 3; }
