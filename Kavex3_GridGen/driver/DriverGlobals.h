// Process-wide state of the run driver.
#pragma once

#include <pthread.h>

#include <string>
#include <vector>

// Debug switch of the later stages; set from the project's "Debug Level" line. Defined by the
// intersector, which reads it.
extern bool g_blnDebug;
// Guards the stop check's look at the parent link.
extern pthread_mutex_t g_mutex;
// The working directory at start, with "/" appended.
extern std::string strCWD;
// The run directory (the "pth" parameter).
extern std::string g_strTempDir;
// Temporary files, in the order they were made; clean-up goes by explicit paths.
extern std::vector<std::string> g_vecstrTempFiles;
