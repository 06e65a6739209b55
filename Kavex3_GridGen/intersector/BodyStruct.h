// One body of a grid project, as the run driver sees it.
#pragma once

#include <cstdint>
#include <string>

#include "FEL_mesh.h"
#include "FEL_pointer.h"

enum BodyType : std::uint32_t {
    BODY_XCUT = 0,
    BODY_YCUT = 1,
    BODY_ZCUT = 2,
    BODY_STL = 3,
    BODY_PLOT3D = 4,
    BODY_NONE = 5  // no recognised word on the "type:" line; never stored in a body
};

// Bodies of kind BODY_XCUT..BODY_ZCUT are cut bodies: cut planes already on file. The others are
// surfaces held in mesh files. A copy shares the mesh through its reference count.
struct _BodyStruct {
    std::string strPointsFile;  // exactly as the project's "Points File: " line gives it
    std::string strCutFile;     // the body's cut file in the run directory, normalised
    BodyType eBodyType = BODY_NONE;
    FEL_pointer<FEL_mesh> pMesh;  // null until ReadBodies fills it; stays null for cut bodies
    bool blnUsedInSolver = false;
};
