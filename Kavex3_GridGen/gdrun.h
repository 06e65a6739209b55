// The line generator's run: from the specification text to the grid, solver and translation files.
#pragma once

// argv holds six entries although argc is 2: program name, specification path (or "-v"),
// "FASTout.bdy", "KX3.grid.dat", "FAST_rotor.bdy" and "Lcl2Gbl.dat" paths. Writes the grid file,
// the solver input file and the translation file; the translations come back through outX..outZ.
// Returns 0; every failure ends the process with status 1.
int CutsGridGenerator(int argc, char** argv, bool writeTranslation, double* outX, double* outY,
                      double* outZ);
