// Unfinished.
#include "intersector/convert.h"
