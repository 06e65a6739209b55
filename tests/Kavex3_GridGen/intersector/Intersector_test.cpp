// The witness walk from the grid's corners, in the fast and the literal reading, and the dumps.
#include "intersector/Intersector.h"

#include <gtest/gtest.h>

#include <fstream>

#include "FEL_axis_aligned_mesh.h"
#include "IntersectorTestUtil.h"
#include "ScratchDir.h"

namespace {
class Walk : public ::testing::TestWithParam<bool> {
  protected:
    void SetUp() override { UseProcedure(run_, GetParam()); }
    int Count(CellState s, bool withList) const {
        int n = 0;
        for (std::size_t c = 0; c < cells_.Size(); ++c)
            n += cells_.Data()[c].m_eState == s &&
                 cells_.Data()[c].m_vecTriangles.empty() != withList;
        return n;
    }
    IntersectContext run_;
    GridCellArray& cells_ = run_.m_gridCells;
};

TEST_P(Walk, AClosedBoxKeepsItsInsideUnknownAndUntested) {
    // Box 1.5..4.5 in 6 x 6 x 6 unit cells: layers 1 and 4 are cut, cells 2..3 lie inside.
    UnitGrid(run_, 6, 6, 6);
    double lo[3] = {1.5, 1.5, 1.5}, hi[3] = {4.5, 4.5, 4.5};
    std::vector<SurfaceZone> zones = {Zone(BoxSurface(lo, hi))};
    IntersectZones(run_, zones, ".");
    EXPECT_EQ(Count(CELL_INTERSECTED, true), 4 * 4 * 4 - 2 * 2 * 2);
    // The outer-layer copy marks the whole rim without triangles, its edges and corners through
    // cells that the earlier steps set.
    EXPECT_EQ(Count(CELL_INTERSECTED, false), 32 + 48 + 72);
    EXPECT_EQ(Count(CELL_UNKNOWN, false), 8);
    for (int c = 2; c <= 3; ++c) EXPECT_EQ(cells_(c, c, c).m_eState, CELL_UNKNOWN);
    // A cell on the face x = 1.5 only: its witnesses, one per search cell, come from that face.
    TriangleSpan s = cells_.Triangles(cells_(1, 2, 2));
    ASSERT_FALSE(s.empty());
    for (Triangle* t : s)
        for (int v = 0; v < 3; ++v) EXPECT_EQ(t->m_adblVertices[3 * v], 1.5);
}

TEST_P(Walk, DebugLinesAndDumps) {
    ScratchDir dir;
    run_.m_blnDebug = true;
    std::string written;  // the dumps go through the run's writer, which the driver checks
    run_.m_fnWriteDump = [&](const std::string& path, const std::function<void(std::ostream&)>& w) {
        std::ofstream out(path);
        w(out);
        written += path.substr(path.rfind('/') + 1) + " ";
    };
    FEL_pointer<FEL_mesh> grid(new FEL_regular_mesh(3, 3, 3, 1, 1, 1, "grid"));
    _BodyStruct body, unused;
    body.pMesh = unused.pMesh =
        FEL_pointer<FEL_mesh>(new FEL_regular_mesh(2, 2, 1, 0.5f, 0.5f, 1, "b"));
    body.blnUsedInSolver = true;
    testing::internal::CaptureStdout();
    IntersectGrid(run_, grid, {unused, body}, dir.Path());  // the unused body gives no zone
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "3x3x3\nNumber of triangles: 6\nstart discrete  (-1, -1, -1)  (1.5, 1.5, 1)\n"
              "end discrete\n");
    const std::string head =
        "TITLE = \"FEL Intersected Cells\"\nVARIABLES = \"X\" \"Y\" \"Z\"\nZONE N=18, E =6, "
        "F=FEPOINT, ET=TRIANGLE\n0 0 0   0 0 0   0 0.5 0\n0 0.5 0   0 0.5 0   0 0 0\n"
        "0.5 0 0   0 0 0   0 0.5 0\n0 0.5 0   0.5 0.5 0   0.5 0 0\n"
        "0 0 0   0 0 0   0 0.5 0\n0 0.5 0   0 0.5 0   0 0 0\n";
    std::string numbers;
    for (int n = 1; n <= 18; ++n) numbers += std::to_string(n) + "\n";
    EXPECT_EQ(ReadWholeFile(dir / "completeTris.dat"), head + numbers);
    // Only cell (0, 0, 0) is dumped: the last layer of each axis is left out.
    TriangleSpan s = cells_.Triangles(cells_(0, 0, 0));
    EXPECT_NE(ReadWholeFile(dir / "trisglobal.dat").find("ZONE N=" + std::to_string(3 * s.size())),
              std::string::npos);
    EXPECT_EQ(written, "completeTris.dat trisglobal.dat ");
}

INSTANTIATE_TEST_SUITE_P(FastAndPlain, Walk, ::testing::Values(false, true));
}  // namespace
