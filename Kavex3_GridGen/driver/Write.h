// The driver's output files: bounding-box cut files, the blanked grid file and the cell dump.
#pragma once

#include <stack>
#include <string>
#include <thread>
#include <vector>

#include "FEL_mesh.h"
#include "FEL_pointer.h"
#include "FEL_vector3.h"
#include "intersector/BodyStruct.h"

// Writes each surface body's bounding box to its strCutFile as four X cut planes of five points,
// in the stream's default number format: the box's centre line at x0, the Y-Z rectangle at x0 and
// at x1, the centre line at x1. Cut bodies keep the cut file that the front end placed.
void WriteOutBoundingBoxes(std::vector<_BodyStruct>& bodies);

// The grid read back, held as its three axes when it is a volume grid whose every node has, bit for
// bit, the values of its axis lines through the first node; otherwise the mesh as it is. The
// axes take a few kilobytes where the nodes take 12 bytes each.
FEL_pointer<FEL_mesh> GridAsAxes(FEL_pointer<FEL_mesh> grid);

// GridAsAxes of the grid file read back, read straight into the axes on threads where the file
// allows it (threads 0: the process's cores); the plain reading with plain_grid_text.
FEL_pointer<FEL_mesh> ReadGridAsAxes(const std::string& path, int threads);

// Removes a file on a thread of its own, from construction until Wait() or destruction: giving
// back a file's pages took 0.15 s a gigabyte on tmpfs.
class BackgroundRemoval {
  public:
    explicit BackgroundRemoval(const std::string& path);
    ~BackgroundRemoval() { Wait(); }
    BackgroundRemoval(const BackgroundRemoval&) = delete;
    BackgroundRemoval& operator=(const BackgroundRemoval&) = delete;
    void Wait();

  private:
    std::thread m_thread;
};

// Rewrites the grid file for the solver: "# a b c" (or an empty line without offsets), the point
// counts of the mesh, every X, then Y, then Z coordinate of the mesh (i fastest) as one
// blank and the value fixed with 5 decimals, all on one line; with writeBodyCells the tail
// "# Num. of Body Cells: ", the count, the heading and the cells from the last of the list to the
// first, "I, J, K" one-based. A file that can't be opened is silently not written.
void OutputIBlankedGrid(std::string fileName, FEL_pointer<FEL_mesh> mesh,
                        std::vector<FEL_vector3<int>>& cells, bool writeBodyCells,
                        bool writeOffsets, double offsetX, double offsetY, double offsetZ);

// Debug dump of one-based cells as a Tecplot brick zone, eight unshared corners per cell.
void OutputBodyCells(FEL_pointer<FEL_mesh> mesh, std::stack<FEL_vector3<int>> cells,
                     std::string fileName);
