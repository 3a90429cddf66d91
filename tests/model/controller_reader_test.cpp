#include "model/controller_reader.hpp"

#include <gtest/gtest.h>

namespace {

using model::ControllerReader;
using namespace Quillon::RaidConfig;

model::Controller Controller() {
    model::Controller c;
    c.family = "OOB_LSI";
    c.id = 2;
    for (const char* state : {"UGood", "UBad", "JBOD", "Online", "GHS"}) {
        model::Disk disk;
        disk.id = static_cast<int>(c.disks.size());
        disk.state = state;
        c.disks.push_back(disk);
    }
    return c;
}

TEST(ControllerReader, NothingToSaveIsCodeTenWithItsReason) {
    const model::Controller c = Controller();
    std::vector<VolumeObject> volumes(1);
    std::vector<int> spares = {7};
    std::string error;
    EXPECT_EQ(ControllerReader::Config(c, error, volumes, spares), RAID_NO_CONFIG);
    EXPECT_EQ(error, "controller 2 has no volume and no hot spare");
    EXPECT_TRUE(volumes.empty() && spares.empty()) << "nothing of an earlier answer is left";
    M2VolumeInfo m2;
    EXPECT_EQ(ControllerReader::Config(c, error, m2), RAID_NO_CONFIG);
    EXPECT_EQ(error, "controller 2 has no volume");
}

TEST(ControllerReader, DiskStatesDecideWhatMakeGoodAndMakeJbodTake) {
    const model::Controller c = Controller();
    EXPECT_EQ(ControllerReader::CanMakeGood(c), std::vector<int>({1, 2}));
    EXPECT_EQ(ControllerReader::CanMakeJbod(c), std::vector<int>({0}));
}

TEST(ControllerReader, AFunctionTheControllerLacksIsCodeThirtyThree) {
    const model::Controller c = Controller();
    std::string error;
    Quillon::protocol::FWDevOrderCtrl order;
    EXPECT_EQ(ControllerReader::FirmwareOrder(c, order, error), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(error, "the controller has no firmware device order");
    EKMController ekm;
    EXPECT_EQ(ControllerReader::KeyManagement(c, ekm, true, error), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(error, "the controller has no key management");
}

TEST(ControllerReader, AStripeLimitNobodyToldIsEmptyNotZeroK) {
    model::Controller c = Controller();
    std::string max = "x";
    std::string min = "x";
    std::vector<std::string> levels;
    ControllerReader::SupportInfo(c, max, min, levels);
    EXPECT_EQ(max, "");
    EXPECT_EQ(min, "");
    c.min_stripe_kb = 64;
    c.max_stripe_kb = 1024;
    c.raid_levels = {"0", "1"};
    ControllerReader::SupportInfo(c, max, min, levels);
    EXPECT_EQ(max, "1024K");
    EXPECT_EQ(min, "64K");
    EXPECT_EQ(levels, std::vector<std::string>({"0", "1"}));
}

} // namespace
