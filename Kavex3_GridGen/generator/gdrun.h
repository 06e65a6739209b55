// The line generator's run: from the specification text to the grid, solver and translation files.
#pragma once

#include <cstdint>
#include <cstdio>

// argv holds six entries although argc is 2: program name, specification path (or "-v"),
// "FASTout.bdy", "KX3.grid.dat", "FAST_rotor.bdy" and "Lcl2Gbl.dat" paths. Writes the grid file,
// the solver input file and the translation file; the translations come back through outX..outZ.
// Returns 0; every failure ends the process with status 1.
int CutsGridGenerator(int argc, char** argv, bool writeTranslation, double* outX, double* outY,
                      double* outZ);

// The run up to its output files: reads the generator's input file, generates the lines, marks the
// body cells, adds the layers and builds the final corner points, translating the bodies and their
// cells by t; writes the translation file to trnsltnPath.
void gen_final_grid(const char* specPath, const char* trnsltnPath, double t[3]);

// Opens the specification text named by the arguments (standard input for argc below 2) and records
// its name; with argc 3 and a non-zero argv[2], argv[1] is an indirect file naming the
// specification, layer and solver input files for pref_options. Failures end the process.
FILE* get_main_lex_data_file_stream(int argc, char** argv);

// Writes the translation file; a failure is reported on standard output and the run goes on.
void wrtTrnsltn(double tx, double ty, double tz, const char* path);

// Builds finalgdpts/Nfinalgdpts from gridStart, the layers and the generated lines; returns each
// axis's translation through t and its body-cell index shift through shift.
void set_final_gdpts(double t[3], int16_t shift[3]);
