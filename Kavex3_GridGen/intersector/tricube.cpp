// Unfinished.
#include "intersector/tricube.h"
