// Process-wide state of the intersector.
#include "intersector/IntersectGlobals.h"

#include <algorithm>
#include <thread>

FEL_vector3<int> g_v3iGridDimensions;
bool g_blnDebug = false;
IntersectOptions g_intersectOptions;

int IntersectThreads() {
    int n = g_intersectOptions.m_intThreads;
    return n > 0 ? n : int(std::max(1u, std::thread::hardware_concurrency()));
}
