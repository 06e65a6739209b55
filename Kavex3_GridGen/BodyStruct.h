// One body of a grid project, as the run driver sees it.
#pragma once

#include <cstdint>
#include <string>

enum BodyType : std::uint32_t {
    BODY_XCUT = 0,
    BODY_YCUT = 1,
    BODY_ZCUT = 2,
    BODY_STL = 3,
    BODY_PLOT3D = 4,
    BODY_NONE = 5  // no recognised word on the "type:" line; never stored in a body
};

// Bodies of kind BODY_XCUT..BODY_ZCUT are cut bodies: cut planes already on file. The others are
// surfaces held in mesh files.
struct _BodyStruct {
    std::string strPointsFile;  // exactly as the project's "Points File: " line gives it
    std::string strCutFile;     // the body's cut file in the run directory, normalised
    BodyType eBodyType = BODY_NONE;
    bool blnUsedInSolver = false;
};
