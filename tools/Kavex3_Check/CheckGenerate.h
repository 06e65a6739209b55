// The line generator's own run, up to its output files, in a child process: its refusals become
// diagnostics, its corner points the summary, and the bodies placed in its frame tell how many
// triangles the run will drop.
#pragma once

#include <string>
#include <vector>

#include "CheckProject.h"
#include "CheckReport.h"
#include "FEL_vector3.h"
#include "intersector/BodyStruct.h"

namespace Dorva {

struct GeneratorCheck {
    std::string strProject;
    std::string strScratch;  // holds the driver's "temp.Grid"; the generator's inputs go here
    std::vector<_BodyStruct> vecBodies;
    std::vector<std::string> vecCutSources;
    FEL_vector3<float> v3fConversionFactor{1.0f, 1.0f, 1.0f};
    std::string strRunDir;
    double dblMaxRatio = 1.3;
};

void CheckGenerator(const GeneratorCheck& job, const ProjectLayout& layout, CheckResult& result);

}  // namespace Dorva
