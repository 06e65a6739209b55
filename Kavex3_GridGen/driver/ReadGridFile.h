// The driver's pass over a .Grid project: its bodies, its solver file and the rewritten copy.
#pragma once

#include <exception>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "FEL_vector3.h"
#include "driver/DriverContext.h"
#include "intersector/BodyStruct.h"

// The driver's keywords, tested in this order on every project line, the first found winning.
enum ProjectKeyword {
    PROJECT_CONVERSION_FACTOR,
    PROJECT_SOLVER_INPUT_FILE,
    PROJECT_TYPE,
    PROJECT_DEBUG_LEVEL,
    PROJECT_KEYWORDS
};
extern const char* const g_astrProjectKeywords[PROJECT_KEYWORDS];
// The index of the first keyword that line holds, or -1.
int ProjectKeywordOf(const std::string& line);
// The words of a "type:" line in the order of the body kinds; the first that the line holds names
// the kind, BODY_NONE when none does.
extern const char* const g_astrBodyTypeWords[BODY_NONE];
BodyType KindOfTypeLine(const std::string& line);
// A body's second and third lines must hold these, or the reading of the project ends there.
extern const char* const g_strPointsFileKey;    // "Points File: "
extern const char* const g_strUsedInSolverKey;  // "used in solver:"

// Copies gridFile line by line to tempGrid (each line flushed, since the generator reads that file
// while it is open), rewriting every body's type line to X cut planes and its points line to the
// body's cut file run.m_strTempDir + "//N-x.cut". Fills solverInputFile, the components of
// conversionFactor that its line gives, the run's debug switch and bodies; appends the cut files
// to run.m_vecstrTempFiles. Returns true on failure, which no path does: an unreadable project
// gives no bodies, a body cut short ends the reading silently.
bool ReadGridFile(DriverContext& run, std::string gridFile, std::string& solverInputFile,
                  std::ostream& tempGrid, FEL_vector3<float>& conversionFactor,
                  std::vector<_BodyStruct>& bodies);

// Reads the mesh file of every surface body (STL or Plot3D) into its pMesh; cut bodies keep null
// meshes. A name holding ".p3d" or ".stl" is first tried as text unstructured Plot3D, then the
// reader detects the format. An unreadable file throws the mesh library's exception.
void ReadBodies(std::vector<_BodyStruct>& bodies);

// ReadBodies for the worker's run: a binary STL body whose box its facets give at once
// (FEL_stl_binary_bounds) is read on one thread of the reading's own, in project order, while
// the run writes the boxes and generates the grid; until Wait() such a body's pMesh is a mesh of
// its box alone, which is all that those stages ask of it. Other bodies are read at once. The
// reader switches FEL_Close off while it merges: no FEL code may run beside it, before Wait().
class BodyReading {
  public:
    explicit BodyReading(std::vector<_BodyStruct>& bodies);
    ~BodyReading();
    BodyReading(const BodyReading&) = delete;
    BodyReading& operator=(const BodyReading&) = delete;
    // Gives each waiting body its mesh; throws what its reading threw.
    void Wait();

  private:
    struct Waiting {
        _BodyStruct* pBody;
        std::string strPath;
        FEL_pointer<FEL_mesh> pMesh;
    };
    std::vector<Waiting> m_vecWaiting;
    std::exception_ptr m_pError;
    std::thread m_thread;
};
