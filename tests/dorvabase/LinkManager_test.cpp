// Tests of the link result texts that the front end shows to users.
#include "LinkManager.h"

#include <gtest/gtest.h>

using Dorva::LinkManager;

TEST(LinkManager, ResultTextsKeepTheirExactWording) {
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::SUCCESS), "Success");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::ALREADY_STARTED),
              "Manager has already  been started");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::SHARED_MEMORY_OPEN_FAILED),
              "Couldn't open shared memory");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::UNALLOCATED_LINK_ID),
              "Unallocated link ID");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::DATA_CHANGED), "Data has changed");
    EXPECT_EQ(LinkManager::GetResultString(LinkManager::TAKE_CONTROL_FAILED),
              "Failed to take control of shared memory");
    EXPECT_EQ(LinkManager::GetResultString(static_cast<LinkManager::Result>(0)), "Unknown");
    EXPECT_EQ(LinkManager::GetResultString(static_cast<LinkManager::Result>(21)), "Unknown");
}
