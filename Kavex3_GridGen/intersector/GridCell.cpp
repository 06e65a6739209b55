// Unfinished.
#include "intersector/GridCell.h"
std::uint16_t GridCell::s_ushtNewCounter = 0;
GridCellArray::~GridCellArray() { Release(); }
void GridCellArray::Release() {}
