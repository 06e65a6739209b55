// Unfinished.
#include "intersector/Triangle.h"
