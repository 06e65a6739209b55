// Kavex3_Check: a project's mistakes found before the run, in the form editors and CI pick up.
#pragma once

#include <string>

#include "CheckReport.h"

namespace Dorva {

struct CheckOptions {
    std::string strProject;
    std::string strRotor;   // optional
    std::string strRunDir;  // optional: the cut files placed there, and its free space
    double dblMaxRatio = 1.3;
    bool blnJson = false;
};

// Everything the check finds about one project, as the worker started in this directory would
// read it.
CheckResult RunCheck(const CheckOptions& options);

// The program: status 1 when there is an error (or the command line is wrong), else 0.
int CheckMain(int argc, char** argv);

}  // namespace Dorva
