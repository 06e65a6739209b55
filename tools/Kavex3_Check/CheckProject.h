// The project's text read the way the worker reads it: the driver's pass, then the generator's walk
// over the driver's rewrite, with every line that neither of them uses reported.
#pragma once

#include <string>
#include <vector>

#include "CheckReport.h"

namespace Dorva {

// Where the driver's bodies and the generator's sections stand in the project.
struct ProjectLayout {
    std::vector<int> vecBodyPointsLines;  // per driver body, the line of its "Points File: "
    int aintSectionLines[3] = {0, 0, 0};  // "Body X-GridSpec" and the like; 0 when missing
    std::string strLayerFile;             // the generator's "Layer File: " value, as it reads it
    int intLayerLine = 0;
    bool blnTruncated = false;  // the driver stopped reading at a body cut short
};

// vecProject: the project's lines; vecRewrite: the driver's copy of them ("temp.Grid").
ProjectLayout CheckProjectText(const std::string& strProject,
                               const std::vector<std::string>& vecProject,
                               const std::vector<std::string>& vecRewrite, CheckResult& result);

}  // namespace Dorva
