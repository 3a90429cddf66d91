#include "collaborators/log.hpp"
#include "service/misc_raid_service/service_raid.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

TEST(ServiceRaid, ActionNameNeedsNoPriorCall) {
    const RaidConfig::RaidConfigOption option;
    const service::ServiceRaid raid(option);
    EXPECT_EQ(raid.ActionName(), "Raid");
}

TEST(ServiceRaid, RunForwardsToTheImplementation) {
    raidcfg_test::TempDir dir;
    std::string error;
    ASSERT_TRUE(Quillon::SetLogDir(dir.path(), error)) << error;
    RaidConfig::RaidConfigOption option;
    option.output_dir = dir.path() + "/";
    option.command = "frobnicate";
    service::ServiceRaid raid(option);
    const TesselResult outcome = raid.Run();
    EXPECT_EQ(outcome.code(), 1);
    EXPECT_EQ(outcome.message(), "Generic Failure.");
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("raid_result.xml")));
}

TEST(ServiceRaid, RefusalNeedsNoFile) {
    raidcfg_test::TempDir dir;
    RaidConfig::RaidConfigOption option;
    option.output_dir = dir.path() + "/";
    option.command = "show";
    option.target = "0";
    option.cfc = true;
    service::ServiceRaid raid(option);
    const TesselResult outcome = raid.Run();
    EXPECT_EQ(outcome.code(), 5);
    EXPECT_EQ(outcome.message(), "--target command is not supported on current system.");
    EXPECT_FALSE(raidcfg_test::FileExists(dir.File("raid_result.xml")));
}

} // namespace
