// The intersector's run context: the run's cells, its options, the cells' visit marks and the debug
// switch, made by the caller and handed to every stage. Nothing of a run lives in a process-wide
// variable.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "FEL_vector3.h"
#include "intersector/GridCell.h"

class IntersectContext;

// The literal procedure that the fast one is checked against: linear first-witness search in walk
// order and sub-grid floods. The worker never carries it; the library intersector_reference
// provides it to the tests and the benchmark.
struct ReferenceProcedure {
    // Fills a search grid that SizeSearchGrid has laid out.
    void (*m_pfnDiscretize)(SearchGrid& grid, const std::vector<std::vector<Triangle*>>& lists,
                            const std::vector<FEL_vector3<float>>& mins,
                            const std::vector<FEL_vector3<float>>& maxs);
    void (*m_pfnWalk)(IntersectContext& run, const std::vector<SearchGrid>& grids);
    int (*m_pfnIsCellInterior)(IntersectContext& run, FEL_vector3<int> index, GridCell& cell);
};

// How the intersector runs; no setting changes a result.
struct IntersectOptions {
    // Worker threads for the witness search and the cell decisions; 0 takes the machine's cores.
    int m_intThreads = 0;
    // The literal procedure instead of the fast one (one thread), or none.
    const ReferenceProcedure* m_pReference = nullptr;
};

class IntersectContext {
  public:
    IntersectContext() = default;
    IntersectContext(const IntersectContext&) = delete;
    IntersectContext& operator=(const IntersectContext&) = delete;

    // The run's cells, built by IntersectGrid, read by the classification and the final scan
    // (what the worker's stages know as g_gridCells).
    GridCellArray m_gridCells;
    IntersectOptions m_options;
    // Debug lines on standard output and the dumps "completeTris.dat" and "trisglobal.dat". The
    // driver's ReadGridFile sets it from the project's "Debug Level" line (the worker's
    // g_blnDebug).
    bool m_blnDebug = false;
    // Writes one debug dump whole through `write`. The driver hands in its checked output files,
    // so that a dump cut short ends the run as any other file does; without it, a plain file.
    std::function<void(const std::string& path, const std::function<void(std::ostream&)>& write)>
        m_fnWriteDump;

    // Cells along i, j, k: the grid's point counts less 1 (what the worker's stages know as
    // g_v3iGridDimensions). Always those of m_gridCells, so there is one source for the grid's
    // size.
    FEL_vector3<int> GridDimensions() const {
        return {m_gridCells.Count(0), m_gridCells.Count(1), m_gridCells.Count(2)};
    }
    // The thread count that the options ask for; the reference runs on one.
    int Threads() const;
    // A visit mark that no cell carries, for one walk. When the 16-bit count wraps, every cell's
    // mark is cleared first, so a mark left by an earlier walk never looks current.
    std::uint16_t NewVisitMark();

  private:
    std::uint16_t m_ushtVisitMark = 0;
};
