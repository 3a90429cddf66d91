#include "model/raid_capacity.hpp"

#include <gtest/gtest.h>

namespace {

using model::RaidCapacity;

long long Usable(const std::string& level, const std::vector<std::vector<int>>& spans) {
    std::string error;
    return RaidCapacity::UsableMegabytes(level, spans, 1000, error);
}

TEST(RaidCapacity, UsableSpaceFollowsTheLevel) {
    EXPECT_EQ(Usable("0", {{1, 2, 3}}), 3000);
    EXPECT_EQ(Usable("1", {{1, 2}}), 1000);
    EXPECT_EQ(Usable("5", {{1, 2, 3}}), 2000);
    EXPECT_EQ(Usable("6", {{1, 2, 3, 4}}), 2000);
    EXPECT_EQ(Usable("10", {{1, 2}, {3, 4}}), 2000);
    EXPECT_EQ(Usable("50", {{1, 2, 3}, {4, 5, 6}}), 4000);
    EXPECT_EQ(Usable("60", {{1, 2, 3, 4}, {5, 6, 7, 8}}), 4000);
    EXPECT_EQ(Usable("1triple", {{1, 2, 3}}), 1000);
    EXPECT_EQ(Usable("10triple", {{1, 2, 3, 4, 5, 6}}), 2000);
    EXPECT_EQ(Usable("RAID5", {{1, 2, 3}}), 2000);
}

TEST(RaidCapacity, LevelsThatDoNotFitSayWhy) {
    std::string error;
    EXPECT_EQ(RaidCapacity::UsableMegabytes("50", {{1, 2, 3, 4, 5, 6}}, 1000, error), -1);
    EXPECT_EQ(error, "RAID 50 needs at least 2 spans, got 1");
    EXPECT_EQ(RaidCapacity::UsableMegabytes("60", {{1, 2, 3}, {4, 5, 6}}, 1000, error), -1);
    EXPECT_EQ(error, "RAID 60 needs at least 4 disks in every span, got 3");
    EXPECT_EQ(RaidCapacity::UsableMegabytes("7", {{1}}, 1000, error), -1);
    EXPECT_EQ(error, "RAID level \"7\" is not known");
}

} // namespace
