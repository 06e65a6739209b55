// Tests of the choice between the short cut-body path and the full path, and of the conversion of
// cut bodies into meshes by the external converter.
#include "driver/ConvertCuts.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "ScratchDir.h"

namespace {

// Puts directory at the head of PATH (or as all of it) while it lives.
struct PathPrefix {
    PathPrefix(const std::string& directory, bool blnKeepRest) {
        setenv("PATH", (blnKeepRest ? directory + ":" + m_strOld : directory).c_str(), 1);
    }
    ~PathPrefix() { setenv("PATH", m_strOld.c_str(), 1); }
    const std::string m_strOld = getenv("PATH");
};

// A stand-in for the external converter: it writes its own path and arguments, one a line, to
// "args" beside itself, and to its -o path (its second argument; the three factors follow) a text
// multi-zone Plot3D file with one zone of 2 x 1 x 1 nodes per cut option.
void WriteFakeConverter(const ScratchDir& dir) {
    const std::string script = dir / "cuts2plot3d";
    WriteWholeFile(script, "#!/bin/sh\nprintf '%s\\n' \"$0\" \"$@\" > " + (dir / "args") +
                               "\nn=$(( ($# - 8) / 2 ))\n{\n  echo $n\n"
                               "  for i in $(seq $n); do echo '2 1 1'; done\n"
                               "  for i in $(seq $n); do echo '0 1'; echo '0 0'; echo '0 0'; done\n"
                               "} > \"$2\"\n");
    chmod(script.c_str(), 0755);
}

// Bodies given by points file, cut file, kind and mesh.
using Bodies = std::vector<_BodyStruct>;

}  // namespace

TEST(ConvertTranslateCutFilesToPlot3D, RunsTheConverterOnceAndHandsOutZonesOverCutBodies) {
    ScratchDir dir;
    WriteFakeConverter(dir);
    PathPrefix path(dir.Path(), true);
    Bodies bodies = {{"hull.stl", "", BODY_STL, {}}, {"wing.p3d", "", BODY_PLOT3D, {}},
                     {"a.cut", "", BODY_XCUT, {}},   {"c.cut", "", BODY_ZCUT, {}},
                     {"fin.stl", "", BODY_STL, {}},  {"b.cut", "", BODY_YCUT, {}}};
    const std::string out = dir / "cuts.xyz";
    const FEL_pointer<FEL_mesh> mesh =
        ConvertTranslateCutFilesToPlot3D(bodies, FEL_vector3<float>(2.0f, 0.5f, 1.25f), out);

    EXPECT_EQ(ReadWholeFile(dir / "args"), dir / "cuts2plot3d\n-o\n" + out +
                                               "\n-X\n2.000000\n-Y\n0.500000\n-Z\n1.250000\n"
                                               "-x\na.cut\n-z\nc.cut\n-y\nb.cut\n");
    ASSERT_FALSE(mesh.null());
    EXPECT_EQ(mesh->get_n_zones(), 3);
    for (int b : {0, 1, 4}) EXPECT_TRUE(bodies[b].pMesh.null()) << b;
    // The third body is the first cut body and gets zone 0, the fourth zone 1, the sixth zone 2.
    const int zoneOfBody[] = {-1, -1, 0, 1, -1, 2};
    for (int b : {2, 3, 5}) EXPECT_EQ(bodies[b].pMesh, mesh->get_zone(zoneOfBody[b])) << b;
}

TEST(ConvertTranslateCutFilesToPlot3D, NullWithoutConverterOrWithoutCutBodies) {
    ScratchDir dir;
    WriteFakeConverter(dir);
    const std::string out = dir / "cuts.xyz";
    Bodies bodies = {{"a.cut", "", BODY_XCUT, {}}};
    {
        PathPrefix path(dir / "no-such-dir", false);
        testing::internal::CaptureStderr();
        EXPECT_TRUE(ConvertTranslateCutFilesToPlot3D(bodies, {1, 1, 1}, out).null());
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "Could not find cuts2plot3d executable.\n");
    }

    PathPrefix path(dir.Path(), true);
    for (Bodies surfaces :
         {Bodies{}, Bodies{{"hull.stl", "", BODY_STL, {}}, {"wing.p3d", "", BODY_PLOT3D, {}}}})
        EXPECT_TRUE(ConvertTranslateCutFilesToPlot3D(surfaces, {1, 1, 1}, out).null());
    EXPECT_FALSE(PathExists(dir / "args"));
    EXPECT_FALSE(PathExists(out));
}
