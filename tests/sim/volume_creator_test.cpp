#include "sim/volume_creator.hpp"

#include <gtest/gtest.h>

namespace {

using sim::VolumeCreator;

long long Usable(const std::string& level, const std::vector<std::vector<int>>& spans) {
    std::string error;
    return VolumeCreator::UsableMegabytes(level, spans, 1000, error);
}

TEST(VolumeCreator, UsableSpaceFollowsTheLevel) {
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

TEST(VolumeCreator, LevelsThatDoNotFitSayWhy) {
    std::string error;
    EXPECT_EQ(VolumeCreator::UsableMegabytes("50", {{1, 2, 3, 4, 5, 6}}, 1000, error), -1);
    EXPECT_EQ(error, "RAID 50 needs at least 2 spans, got 1");
    EXPECT_EQ(VolumeCreator::UsableMegabytes("60", {{1, 2, 3}, {4, 5, 6}}, 1000, error), -1);
    EXPECT_EQ(error, "RAID 60 needs at least 4 disks in every span, got 3");
    EXPECT_EQ(VolumeCreator::UsableMegabytes("7", {{1}}, 1000, error), -1);
    EXPECT_EQ(error, "RAID level \"7\" is not known");
}

TEST(VolumeCreator, SizesTakeTheFormsTheCastLeaves) {
    long long mb = 0;
    std::string error;
    ASSERT_TRUE(VolumeCreator::ParseSize("", 5000, mb, error));
    EXPECT_EQ(mb, 5000);
    ASSERT_TRUE(VolumeCreator::ParseSize("102400", 5000, mb, error));
    EXPECT_EQ(mb, 102400);
    ASSERT_TRUE(VolumeCreator::ParseSize("512MB", 5000, mb, error));
    EXPECT_EQ(mb, 512);
    ASSERT_TRUE(VolumeCreator::ParseSize("2GB", 5000, mb, error));
    EXPECT_EQ(mb, 2048);
    ASSERT_TRUE(VolumeCreator::ParseSize("1t", 5000, mb, error));
    EXPECT_EQ(mb, 1048576);
    ASSERT_TRUE(VolumeCreator::ParseSize("50%", 5000, mb, error));
    EXPECT_EQ(mb, 2500);
    EXPECT_FALSE(VolumeCreator::ParseSize("0%", 5000, mb, error));
    EXPECT_FALSE(VolumeCreator::ParseSize("big", 5000, mb, error));
    EXPECT_EQ(error, "volume size \"big\" is not a size");
    EXPECT_FALSE(VolumeCreator::ParseSize("5PB", 5000, mb, error));
    EXPECT_EQ(error, "volume size \"5PB\" has an unknown unit");
}

TEST(VolumeCreator, StripSizesTakeTheFormsTheCastLeaves) {
    int kb = -1;
    std::string error;
    for (const auto& [text, expected] : std::vector<std::pair<std::string, int>>{
             {"128K", 128}, {"64k", 64}, {"1MB", 1024}, {"128", 128}, {"", 0}}) {
        ASSERT_TRUE(VolumeCreator::ParseStrip(text, kb, error)) << text;
        EXPECT_EQ(kb, expected) << text;
    }
    EXPECT_FALSE(VolumeCreator::ParseStrip("wide", kb, error));
    EXPECT_FALSE(VolumeCreator::ParseStrip("64Q", kb, error));
}

} // namespace
