// Tests of the final output: the rewrite of solver input files with and without their markers,
// and the generator's cells joined to the scan.
#include "driver/FinalOutput.h"

#include <gtest/gtest.h>

#include <utility>

#include "FEL_curvilinear_mesh.h"
#include "ScratchDir.h"
#include "intersector/Intersector.h"

namespace {

// 3 x 3 x 3 points, 0, 1 and 2.5 on each axis.
FEL_pointer<FEL_mesh> SmallGrid() {
    const float line[3] = {0.0f, 1.0f, 2.5f};
    auto* xyz = new FEL_vector3<float>[27];
    for (int n = 0; n < 27; ++n) xyz[n] = {line[n % 3], line[n / 3 % 3], line[n / 9] - 4.0f};
    return FEL_pointer<FEL_mesh>(new FEL_curvilinear_mesh_xyz_layout(3, 3, 3, xyz));
}

// Solver input files around the generator's list, with and without the two markers. The grid's
// one body cell is (2, 1, 2); every other cell is outside.
TEST(FinalOutput, SolverInputRewrite) {
    const std::string head = "# IE = 2\n2\n#\n";
    const std::string list = "# Body Cells ({I-index, J-index, K-index} of the cells)\n2, 1, 2\n";
    const std::pair<std::string, std::string> cases[] = {
        {head + "# Num. of Body Cells:\n1\n# Body Cells\n1, 1, 1\n#\n# Number of Rotors:\n0\n",
         head + "# Num. of Body Cells:\n1\n" + list + "#\n# Number of Rotors:\n0\n"},
        // Without the count's marker, all is copied, then the list, "#" and an empty line.
        {head + "# Number of Rotors:\n0\n", head + "# Number of Rotors:\n0\n1\n" + list + "#\n\n"},
        // Without the rotors' marker, the rest is dropped.
        {head + "# Num. of Body Cells:\n3\n1, 1, 1\n",
         head + "# Num. of Body Cells:\n1\n" + list + "#\n\n"},
    };
    for (const auto& [solver, expected] : cases) {
        ScratchDir dir;
        DriverContext run(dir.Path());
        WriteWholeFile(dir / "S", solver);
        FEL_pointer<FEL_mesh> mesh = SmallGrid();
        GridCellArray& cells = run.m_intersect.m_gridCells;
        CreateGrid(cells, mesh);
        for (int n = 0; n < 8; ++n) cells(n / 4, n / 2 % 2, n % 2).m_eState = CELL_EXTERIOR;
        cells(1, 0, 1).m_eState = CELL_UNKNOWN;
        WriteFinalOutput(run, dir / "S", dir / "grid", mesh, GridOffsets(), {});
        EXPECT_EQ(ReadWholeFile(dir / "S"), expected);
        EXPECT_FALSE(PathExists(dir / "temp.ClWdths"));
    }
}

TEST(FinalOutput, GeneratorCellsJoinTheScanWithoutDuplicates) {
    ScratchDir dir;
    WriteWholeFile(dir / "S",
                   "# Num. of Body Cells:\n3\n# Body Cells\n1, 1, 1\n2, 1, 2\n"
                   "1, 1, 1\n#\n# Number of Rotors:\n0\n");
    EXPECT_EQ(MergeBodyCells({{2, 2, 1}, {2, 1, 2}}, ReadSolverBodyCells(dir / "S")),
              (std::vector<FEL_vector3<int>>{{2, 2, 1}, {2, 1, 2}, {1, 1, 1}}));
}

}  // namespace
