// The words of the Redfish mapping, both ways.
#include "emulator/redfish_names.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using emulator::RedfishNames;

TEST(EmulatorNamesTest, RaidTypesBothWays) {
    EXPECT_EQ(RedfishNames::RaidType("1"), "RAID1");
    EXPECT_EQ(RedfishNames::RaidType("raid5"), "RAID5");
    EXPECT_EQ(RedfishNames::RaidType("1triple"), "RAID1Triple");
    EXPECT_EQ(RedfishNames::RaidType("10Triple"), "RAID10Triple");
    EXPECT_EQ(RedfishNames::RaidType("1T"), "");
    EXPECT_EQ(RedfishNames::LevelOfRaidType("RAID10Triple"), "10triple");
    EXPECT_EQ(RedfishNames::LevelOfRaidType("RAID60"), "60");
    EXPECT_EQ(RedfishNames::LevelOfRaidType("None"), "");
}

TEST(EmulatorNamesTest, CachePoliciesFollowTheFamily) {
    EXPECT_EQ(RedfishNames::WriteCachePolicy("OOB_LSI", 0), "WriteThrough");
    EXPECT_EQ(RedfishNames::WriteCachePolicy("OOB_MICROCHIP", 0), "");
    EXPECT_EQ(RedfishNames::WriteCachePolicy("OOB_MICROCHIP", 3), "UnprotectedWriteBack");
    EXPECT_EQ(RedfishNames::WritePolicyCode("OOB_MICROCHIP", "WriteThrough"), 1);
    EXPECT_EQ(RedfishNames::WritePolicyCode("OOB_CFC", "ProtectedWriteBack"), 1);
    EXPECT_FALSE(RedfishNames::WritePolicyCode("OOB_CFC", "Off"));
    EXPECT_EQ(RedfishNames::ReadCachePolicy(2), "AdaptiveReadAhead");
    EXPECT_EQ(RedfishNames::ReadCachePolicy(3), "");
    EXPECT_EQ(RedfishNames::ReadPolicyCode("Off"), 0);
}

TEST(EmulatorNamesTest, EncryptionModes) {
    EXPECT_EQ(RedfishNames::EncryptionMode("None"), "Disabled");
    EXPECT_EQ(RedfishNames::EncryptionMode("LOCAL"), "UseLocalKey");
    EXPECT_EQ(RedfishNames::EncryptionMode("external"), "UseExternalKey");
    EXPECT_EQ(RedfishNames::EncryptionMode("other"), "");
    EXPECT_EQ(RedfishNames::EkmWord("UseExternalKey"), "external");
    EXPECT_EQ(RedfishNames::EkmWord("PasswordOnly"), "");
}

TEST(EmulatorNamesTest, ManufacturerAndModelLeadBackToTheFamily) {
    sim::Controller controller;
    controller.family = "OOB_VROC";
    controller.model = "NVMe RAID";
    controller.vendor = "Broadcom";
    EXPECT_EQ(RedfishNames::Manufacturer(controller), "Intel");
    EXPECT_EQ(RedfishNames::Model(controller), "VROC NVMe RAID");
    controller.model.clear();
    EXPECT_EQ(RedfishNames::Model(controller), "VROC");
    controller.family = "OOB_CFC";
    controller.product_name = "Card";
    EXPECT_EQ(RedfishNames::Manufacturer(controller), "Broadcom");
    EXPECT_EQ(RedfishNames::Model(controller), "Card");
    controller.id = 3;
    EXPECT_EQ(RedfishNames::StorageId(controller), "OOB_CFC-3");
    EXPECT_FALSE(RedfishNames::IsServedFamily("LSI"));
}

} // namespace
} // namespace emulator_test
