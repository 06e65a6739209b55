// Umbrella header of the FEL mesh library: includes every public header.
#pragma once

#include "FEL_axis_aligned_mesh.h"
#include "FEL_bitvector.h"
#include "FEL_cell.h"
#include "FEL_curvilinear_mesh.h"
#include "FEL_exception.h"
#include "FEL_matrix33.h"
#include "FEL_mesh.h"
#include "FEL_multi_mesh.h"
#include "FEL_pointer.h"
#include "FEL_structured_mesh.h"
#include "FEL_tetrahedral_mesh.h"
#include "FEL_transformed_mesh.h"
#include "FEL_vector3.h"
