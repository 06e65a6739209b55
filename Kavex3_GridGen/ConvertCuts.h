// The driver's calls around the line generator on the cut-file path.
#pragma once

#include <string>
#include <vector>

#include "BodyStruct.h"

// True when no body is a surface (STL or Plot3D); an empty list counts as all cut bodies.
bool all_bodies_are_cut_files(std::vector<_BodyStruct> bodies);

// Runs the line generator on the specification text, with its output files in directory:
// "FASTout.bdy", "KX3.grid.dat", "FAST_rotor.bdy" and "Lcl2Gbl.dat". writeTranslation puts the
// translation line at the head of the grid file; the translations come back through outX..outZ.
void all_cuts_grid_generation(char* programName, std::string specification, std::string directory,
                              bool writeTranslation, double* outX, double* outY, double* outZ);

// Empty: no stage calls it, since projects with surface bodies take the driver's full sequence.
void non_cuts_grid_generation();
