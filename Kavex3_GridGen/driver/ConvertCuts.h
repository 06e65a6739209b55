// The driver's calls around the line generator on the cut-file path, and cut bodies as meshes.
#pragma once

#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "intersector/BodyStruct.h"

// True when no body is a surface (STL or Plot3D); an empty list counts as all cut bodies.
bool all_bodies_are_cut_files(std::vector<_BodyStruct> bodies);

// Runs the line generator on the specification text, with its output files in directory:
// "FASTout.bdy", "KX3.grid.dat", "FAST_rotor.bdy" and "Lcl2Gbl.dat". writeTranslation puts the
// translation line at the head of the grid file; the translations come back through outX..outZ.
void all_cuts_grid_generation(char* programName, std::string specification, std::string directory,
                              bool writeTranslation, double* outX, double* outY, double* outZ);

// Empty: no stage calls it, since projects with surface bodies take the driver's full sequence.
void non_cuts_grid_generation();

// Turns the cut bodies into meshes with the external program "cuts2plot3d", found on PATH: it is
// run once on all cut bodies, scaled by conversionFactor, and writes a multi-zone Plot3D file to
// outputFile, one zone per cut body in list order. Each cut body gets its zone as pMesh; the
// others are left alone. Returns the whole mesh, or null when the program can't be found (with a
// message on stderr) or no body is a cut body (nothing run). An unreadable output file throws the
// mesh library's exception. Paths go to the shell unquoted.
FEL_pointer<FEL_mesh> ConvertTranslateCutFilesToPlot3D(std::vector<_BodyStruct>& bodies,
                                                       FEL_vector3<float> conversionFactor,
                                                       std::string outputFile);
