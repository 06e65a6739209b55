// Process-wide state of the run driver.
#pragma once

#include <pthread.h>

#include <string>
#include <vector>

#include "intersector/IntersectContext.h"

// Debug switch of the later stages; set from the project's "Debug Level" line. The intersector
// reads its copy in its run context.
extern bool g_blnDebug;
// The intersector's run context of the worker: the stages after the intersection reach the cells
// through it.
extern IntersectContext g_intersectContext;
// Guards the stop check's look at the parent link.
extern pthread_mutex_t g_mutex;
// The working directory at start, with "/" appended.
extern std::string strCWD;
// The run directory (the "pth" parameter).
extern std::string g_strTempDir;
// Temporary files, in the order they were made; clean-up goes by explicit paths.
extern std::vector<std::string> g_vecstrTempFiles;
