// The drive ids under the Chassis: unique across controllers, and split back into the Storage and
// the disk they name.
#include "emulator/drive_uris.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

sim::Controller Served(const std::string& family, int id) {
    sim::Controller controller;
    controller.family = family;
    controller.id = id;
    return controller;
}

sim::Machine Machine() {
    sim::Machine machine;
    machine.controllers = {Served("LSI", 0), Served("OOB_LSI", 1), Served("OOB_LSI", 10),
                           Served("OOB_CFC", 0)};
    return machine;
}

TEST(DriveUrisTest, AnIdIsTheStorageIdAndTheDiskId) {
    EXPECT_EQ(emulator::DriveUris::Id(Served("OOB_LSI", 0), 6), "OOB_LSI-0-6");
    EXPECT_EQ(emulator::DriveUris::Uri(Served("OOB_CFC", 2), 11),
              "/redfish/v1/Chassis/1/Drives/OOB_CFC-2-11");
}

TEST(DriveUrisTest, SplitFindsTheStorageEvenWhenOneIdStartsAnother) {
    const auto ten = emulator::DriveUris::Split(Machine(), "OOB_LSI-10-3");
    ASSERT_TRUE(ten.has_value());
    EXPECT_EQ(ten->sid, "OOB_LSI-10");
    EXPECT_EQ(ten->disk, "3");
    const auto one = emulator::DriveUris::Split(Machine(), "OOB_LSI-1-03");
    ASSERT_TRUE(one.has_value());
    EXPECT_EQ(one->sid, "OOB_LSI-1");
    EXPECT_EQ(one->disk, "03") << "handed on as it stands";
}

TEST(DriveUrisTest, SplitKnowsOnlyServedControllers) {
    EXPECT_FALSE(emulator::DriveUris::Split(Machine(), "LSI-0-1").has_value());
    EXPECT_FALSE(emulator::DriveUris::Split(Machine(), "OOB_LSI-2-1").has_value());
    EXPECT_FALSE(emulator::DriveUris::Split(Machine(), "OOB_LSI-1-").has_value());
    EXPECT_FALSE(emulator::DriveUris::Split(Machine(), "6").has_value());
}

TEST(DriveUrisTest, DiskOfStripsOnlyItsOwnStorage) {
    EXPECT_EQ(emulator::DriveUris::DiskOf("OOB_LSI-1", "OOB_LSI-1-6"), "6");
    EXPECT_EQ(emulator::DriveUris::DiskOf("OOB_LSI-1", "6"), "6");
    EXPECT_EQ(emulator::DriveUris::DiskOf("OOB_LSI-1", "OOB_LSI-10-6"), "OOB_LSI-10-6");
    EXPECT_EQ(emulator::DriveUris::DiskOf("OOB_LSI-1", "OOB_CFC-0-6"), "OOB_CFC-0-6");
}

} // namespace
} // namespace emulator_test
