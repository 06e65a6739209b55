// The run's final output: the scan of the classified cells, the blanked grid and the rewrite of
// the solver input file with the blocked cells.
#include "driver/FinalOutput.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>

#include "FilePath.h"
#include "driver/OutFile.h"
#include "driver/Write.h"
#include "intersector/Classify.h"
#include "intersector/Intersector.h"

namespace {

// The scan's order: i falling, then j, then k.
bool ScanOrder(const FEL_vector3<int>& a, const FEL_vector3<int>& b) {
    if (a.x != b.x) return a.x > b.x;
    if (a.y != b.y) return a.y > b.y;
    return a.z > b.z;
}

bool SameCell(const FEL_vector3<int>& a, const FEL_vector3<int>& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

}  // namespace

std::vector<FEL_vector3<int>> ScanBodyCells(IntersectContext& run) {
    long long intersected = 0;
    // The decisions follow the descending scan; afterwards a cell's state alone tells its fate:
    // 1 stays intersected, 2 is outside, anything else is blocked.
    DecideCells(run, intersected);
    std::vector<FEL_vector3<int>> cells;
    const FEL_vector3<int> n = run.GridDimensions();
    for (int i = n[0] - 1; i >= 0; --i)
        for (int j = n[1] - 1; j >= 0; --j)
            for (int k = n[2] - 1; k >= 0; --k) {
                const CellState state = run.m_gridCells(i, j, k).m_eState;
                if (state != CELL_INTERSECTED && state != CELL_EXTERIOR)
                    cells.emplace_back(i + 1, j + 1, k + 1);
            }
    return cells;
}

std::vector<FEL_vector3<int>> ReadSolverBodyCells(const std::string& solverInputFile) {
    std::ifstream in(solverInputFile.c_str());
    std::vector<FEL_vector3<int>> cells;
    std::string line;
    while (std::getline(in, line) && line.find("# Num. of Body Cells:") == std::string::npos) {
    }
    while (std::getline(in, line) && line != "# Number of Rotors:") {
        FEL_vector3<int> c;
        char rest = 0;
        if (std::sscanf(line.c_str(), "%d, %d, %d%c", &c.x, &c.y, &c.z, &rest) == 3)
            cells.push_back(c);
    }
    std::sort(cells.begin(), cells.end(), ScanOrder);
    cells.erase(std::unique(cells.begin(), cells.end(), SameCell), cells.end());
    return cells;
}

std::vector<FEL_vector3<int>> MergeBodyCells(const std::vector<FEL_vector3<int>>& a,
                                             const std::vector<FEL_vector3<int>>& b) {
    std::vector<FEL_vector3<int>> all;
    all.reserve(a.size() + b.size());
    std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(all), ScanOrder);
    return all;
}

void WriteFinalOutput(DriverContext& run, const std::string& solverInputFile,
                      const std::string& gridFile, FEL_pointer<FEL_mesh> grid,
                      const GridOffsets& offsets, const std::vector<FEL_vector3<int>>& extraCells) {
    std::ifstream solver(solverInputFile.c_str());
    const std::string strWorkFile = Dorva::FilePath(run.m_strTempDir + "/temp.ClWdths").Get();
    OutFile work(strWorkFile, true);
    run.m_vecstrTempFiles.push_back(strWorkFile);
    std::string line;
    while (std::getline(solver, line)) {
        work << line << std::endl;
        if (line.find("# Num. of Body Cells:") != std::string::npos) break;
    }

    std::cout << "Final output..." << std::endl;
    std::vector<FEL_vector3<int>> cells = ScanBodyCells(run.m_intersect);
    if (!extraCells.empty()) cells = MergeBodyCells(cells, extraCells);
    std::cout << "Body cells: " << std::endl << cells.size() << std::endl;
    work << cells.size() << '\n';

    std::cout << "Writing grid..." << std::endl;
    OutputIBlankedGrid(gridFile, grid, cells, true, true, offsets.dblX, offsets.dblY, offsets.dblZ);

    std::ostringstream list;
    list << "# Body Cells ({I-index, J-index, K-index} of the cells)\n";
    for (auto c = cells.rbegin(); c != cells.rend(); ++c)
        list << c->x << ", " << c->y << ", " << c->z << '\n';
    work << list.str();
    line.clear();
    while (std::getline(solver, line) && line != "# Number of Rotors:") line.clear();
    work << "#\n" << line << '\n';
    while (std::getline(solver, line)) work << line << std::endl;
    solver.close();
    work.Close();
    ReplaceFile(strWorkFile, solverInputFile);
}

void HideSurfaceBodiesFromMarking(const std::string& tempGridPath,
                                  const std::vector<_BodyStruct>& bodies) {
    std::ifstream in(tempGridPath.c_str());
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    in.close();
    for (const _BodyStruct& body : bodies) {
        if (body.eBodyType <= BODY_ZCUT) continue;
        const std::string points = std::string(21, ' ') + "Points File: " + body.strCutFile;
        for (std::size_t l = 0; l + 1 < lines.size(); ++l) {
            if (lines[l] != points) continue;
            std::string& used = lines[l + 1];
            used = used.substr(0, used.find("used in solver:")) + "used in solver: False";
            break;
        }
    }
    OutFile out(tempGridPath, true);
    for (const std::string& line : lines) out << line << '\n';
    out.Close();
}
