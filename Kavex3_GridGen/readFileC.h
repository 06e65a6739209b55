// Reader of the generator's specification text into the module-level records.
#pragma once

// Reads the specification at path and fills gd_options, Xgdln, Ygdln, Zgdln and allBdys.
// An unreadable file ends the process with "ERROR: File not found" and status 1.
void manage_gridgen_input(const char* path);
