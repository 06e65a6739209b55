// Bodies in the grid's coordinates, and the writers of the FAST body file.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "driver/DriverContext.h"
#include "intersector/BodyStruct.h"

// Wraps each surface body's mesh so that a point p of its file reads as M p + t: M the diagonal of
// conversionFactor, t the three floats of the run directory's "Lcl2Gbl.dat". Without that file the
// bodies stay as they are, unscaled. Cut bodies have no mesh and are left alone.
void TranslateToGlobal(const DriverContext& run, std::vector<_BodyStruct>& bodies,
                       FEL_vector3<float> conversionFactor);

// Writes the structured sub-meshes of all bodies to directory + "//FASTout.bdy".
void WriteBodies(std::vector<_BodyStruct> bodies, std::string directory);
// The FAST multi-block form: the count, each block's dimensions, then per block all X, all Y and
// all Z as doubles, each followed by a blank, a line end after each run. Nothing without blocks.
void WriteStructuredBodies(std::vector<_BodyStruct>& bodies, std::ostream& stream);
// The FAST unstructured form of a triangle mesh: "nodes faces 0", the X, Y and Z of the nodes one
// per line, the faces' node numbers from 1, and a surface tag 1 per face.
void WriteUnstructuredBody(FEL_pointer<FEL_mesh> mesh, std::ostream& stream);
// Reduces a path to its directory part, without the last "/"; a bare name becomes "".
void StripFilename(std::string& path);

// The body writers' module settings: their output directory and their report on standard output.
extern std::string g_strBodyOutputDirectory;
extern bool g_blnBodyWritersVerbose;
