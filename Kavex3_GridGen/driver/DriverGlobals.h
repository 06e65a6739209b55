// Process-wide state of the run driver: what the parent link's stop thread needs. A run's own
// state travels in its DriverContext.
#pragma once

#include <pthread.h>

#include <string>

// Guards the stop check's look at the parent link; the stop thread ends the process, so it can't
// wait for a context that the main thread owns.
extern pthread_mutex_t g_mutex;
// The working directory at start, with "/" appended.
extern std::string strCWD;
