// Tests of the run's pieces: the grid-points file and the translation file's failure.
#include "generator/gdrun.h"

#include <gtest/gtest.h>

#include "gdtest_util.h"
#include "generator/gdsolverfiles.h"

namespace {

using GdRun = GenTest;

TEST_F(GdRun, GridPointsFileAndTheTranslationFilesFailure) {
    set_line(&Xgdln, {0.1, -2.5});
    set_line(&Zgdln, {1e-20});
    wr_grid_pts_file((dir_ / "gdpts.dat").c_str());
    // 0.1 and 1e-20 to 18 significant digits: 0.100000000000000006 and 9.99999999999999945E-21.
    EXPECT_EQ(ReadWholeFile(dir_ / "gdpts.dat"),
              "# X-Grid Points\n2\n       0.100000000000000006\n"
              "                       -2.5\n"
              "# Y-Grid Points\n0\n# Z-Grid Points\n1\n    9.99999999999999945E-21\n");
    ::testing::internal::CaptureStdout();
    wrtTrnsltn(0, 0, 0, "/nonexistent-dir/Lcl2Gbl.dat");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "/nonexistent-dir/Lcl2Gbl.dat could not be opened.");
}

}  // namespace
