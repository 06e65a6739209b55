// Process-wide state of the run driver: what the parent link's stop thread needs.
#include "driver/DriverGlobals.h"

pthread_mutex_t g_mutex;
std::string strCWD;
