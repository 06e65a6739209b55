// Tests of the choice between the short cut-body path and the full path.
#include "ConvertCuts.h"

#include <gtest/gtest.h>

TEST(all_bodies_are_cut_files, OnlySurfaceBodiesBreakIt) {
    EXPECT_TRUE(all_bodies_are_cut_files({}));
    std::vector<_BodyStruct> bodies(3);
    bodies[0].eBodyType = BODY_XCUT;
    bodies[1].eBodyType = BODY_YCUT;
    bodies[2].eBodyType = BODY_ZCUT;
    EXPECT_TRUE(all_bodies_are_cut_files(bodies));
    bodies[1].eBodyType = BODY_STL;
    EXPECT_FALSE(all_bodies_are_cut_files(bodies));
    bodies[1].eBodyType = BODY_PLOT3D;
    EXPECT_FALSE(all_bodies_are_cut_files(bodies));
}
