// Body files read as the run reads them, and the shape of each surface: finite, with an extent on
// every axis, closed.
#pragma once

#include <string>
#include <vector>

#include "CheckReport.h"
#include "FEL_vector3.h"
#include "intersector/BodyStruct.h"

namespace Dorva {

// Open edges of a triangle soup given three vertices a triangle: edges with a single triangle,
// over bit-equal vertices (as the STL reader merges them).
long OpenEdgeCount(const std::vector<FEL_vector3<float>>& vecVertices);

// Checks every body's file; fills the meshes of the surface bodies that read. vecPointsLines
// holds each body's "Points File: " line; vecCutSources receives, per body, the file that the
// generator reads as its cut planes ("" for a surface body): the run directory's N-x.cut when
// strRunDir is given, else the body's own file. Returns false when a body can't be read.
bool CheckBodyFiles(std::vector<_BodyStruct>& vecBodies, const std::vector<int>& vecPointsLines,
                    const std::string& strProject, const std::string& strRunDir,
                    std::vector<std::string>& vecCutSources, CheckResult& result);

}  // namespace Dorva
