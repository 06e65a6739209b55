// A finished run as the inspector sees it: the project's bodies placed in the grid's frame, the
// grid's corner points per axis and the blocked cells.
#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "FEL_vector3.h"
#include "intersector/BodyStruct.h"

// Bad input: one line naming the file and what is wrong with it.
class InspectError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A body's surface as triangles over merged vertices, in the grid's frame. Vertices merge only
// when their coordinates are equal (as the STL reader merges them), so shared edges are found.
struct InspectSurface {
    std::vector<FEL_vector3<float>> vecPoints;
    std::vector<std::array<int, 3>> vecTriangles;
    std::vector<bool> vecKept;  // per triangle: whether the run's triangulation keeps it
};

struct InspectBody {
    _BodyStruct body;
    std::string strFile;  // the file read: the mesh file, or the run's cut file of a cut body
    InspectSurface surface;
};

// A rotor disc of the project, in the grid's frame: normal to axis intAxis, of the given radius
// and half thickness.
struct InspectRotor {
    int intAxis = 2;
    FEL_vector3<float> v3fCentre{0, 0, 0};
    double dblRadius = 0, dblHalfThickness = 0;
};

struct InspectRun {
    std::string strRunDir;
    std::string strGridFile;
    std::string strBlockedSource;               // the file whose list gave the blocked cells
    std::array<std::vector<float>, 3> vecAxes;  // corner points of X, Y and Z
    std::vector<FEL_vector3<int>> vecBlocked;   // 1-based {I, J, K}, in the file's order
    FEL_vector3<float> v3fConversion{1, 1, 1};
    FEL_vector3<float> v3fTranslation{0, 0, 0};
    std::vector<InspectBody> vecBodies;
    std::vector<InspectRotor> vecRotors;

    int Cells(int axis) const { return static_cast<int>(vecAxes[axis].size()) - 1; }
};

// Reads the run directory's "KX3.grid.dat" through the mesh reader, its body-cell list, the
// project through the driver's reader and every body's file, placed as the run placed it: the
// conversion factor first, then the translation of "Lcl2Gbl.dat". Reads only; throws InspectError.
InspectRun LoadInspectRun(const std::string& strRunDir, const std::string& strProject);

// The rotor discs of a project text, placed as the generator places them: centre and radius
// scaled by the conversion factor (the radius by its X part), an absolute half thickness by its Z
// part, a relative one being a ratio of the radius; then moved by the translation. A disc whose
// centre or radius is not given is left out. Throws InspectError when the file can't be read.
std::vector<InspectRotor> ReadRotors(const std::string& strProject,
                                     const FEL_vector3<float>& v3fScale,
                                     const FEL_vector3<float>& v3fTranslation);

// Reads a body-cell list: the first "# Num. of Body Cells:" line, its count, and for a count
// above 0 a header line and that many "I, J, K" lines. False if the file has no such line; throws
// InspectError on a list that is cut short or malformed.
bool ReadBodyCellList(const std::string& strFile, std::vector<FEL_vector3<int>>& vecCells);

// The cell (0-based) of an axis's corner points that holds a coordinate: a value on a corner
// point goes to the cell above it (below it for blnUpper), and zero-width cells are passed over;
// -1 outside the axis.
int CellOfCoordinate(const std::vector<float>& vecAxis, double dbl, bool blnUpper = false);

// Surface of a mesh (every zone: the triangles of unstructured zones, the last plane of
// structured ones split into two triangles a quadrilateral), with the vertices of placed: the same
// mesh wrapped in transformations. A triangle is kept as the run's triangulation of placed keeps
// it.
InspectSurface SurfaceOfMesh(const FEL_mesh& mesh, const FEL_mesh& placed);
