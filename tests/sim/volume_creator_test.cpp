#include "sim/volume_creator.hpp"
#include "sim/volume_request.hpp"

#include <gtest/gtest.h>

namespace {

using sim::VolumeCreator;

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

// An M.2 adapter's pair: the lowest free disks, as many as asked, the others left alone.
TEST(VolumeCreator, AFewOfTheRestTakeTheLowestFreeDisks) {
    sim::Controller controller;
    controller.family = "OOB_M2";
    controller.raid_levels = {"0", "1"};
    for (int id = 0; id < 4; ++id) {
        sim::Disk disk;
        disk.id = id;
        disk.capacity_mb = 1000;
        disk.state = id == 0 ? "UBad" : "UGood";
        controller.disks.push_back(disk);
    }
    sim::VolumeRequest request;
    request.rest_disks = true;
    request.rest_count = 2;
    request.raid_level = "1";
    std::string error;
    ASSERT_EQ(VolumeCreator::Create(controller, request, error), Quillon::RaidConfig::RAID_OK)
        << error;
    ASSERT_EQ(controller.volumes.size(), 1U);
    EXPECT_EQ(controller.volumes[0].spans, (std::vector<std::vector<int>>{{1, 2}}));
    EXPECT_EQ(controller.disks[3].state, "UGood");

    // One free disk left: not enough for the pair.
    EXPECT_EQ(VolumeCreator::Create(controller, request, error),
              Quillon::RaidConfig::RAID_OPERATION_FAILED);
    EXPECT_EQ(error, "the volume needs 2 unconfigured-good disks, the controller has 1");
}

} // namespace
