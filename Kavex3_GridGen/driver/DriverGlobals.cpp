// Process-wide state of the run driver.
#include "driver/DriverGlobals.h"

bool g_blnDebug = false;
IntersectContext g_intersectContext;
pthread_mutex_t g_mutex;
std::string strCWD;
std::string g_strTempDir;
std::vector<std::string> g_vecstrTempFiles;
