#include "result/legacy_result_table.hpp"
#include "result/result_catalogue.hpp"
#include "result/result_values.hpp"

#include <gtest/gtest.h>

namespace {

TEST(ResultCatalogue, RegisterResultCombinesCategoryAndCode) {
    EXPECT_EQ(
        result::RegisterResult(24, 125,
                               "Please make sure the command of RAID config run on the Halden "
                               "with lastest Vantor firmware version."),
        0x18007DU);
}

TEST(ResultCatalogue, RegisterResultReplacesTextUnderTheSameKey) {
    const std::uint32_t value = result::RegisterResult(40, 7, "first");
    EXPECT_EQ(result::RegisterResult(40, 7, "second"), value);
    EXPECT_EQ(result::LookupResult(value, 40), "second");
}

TEST(ResultCatalogue, CategoryBelowOneGoesToTheGenericTable) {
    const std::uint32_t value = result::RegisterResult(-3, 68, "negative category");
    EXPECT_EQ(value, (68U | (static_cast<std::uint32_t>(-3) << 16U)));
    // Found in the generic table whatever category the look-up names.
    EXPECT_EQ(result::LookupResult(value, 12), "negative category");
}

TEST(ResultCatalogue, FamilyValueWithCodeZeroIsUnknow) {
    EXPECT_EQ(result::GetResultMessage(0x180000), "Unknow error");
}

TEST(ResultCatalogue, LookupOfAnUnregisteredValueSaysUnknow) {
    EXPECT_EQ(result::LookupResult(0x3F0042U, 63), "Unknow error");
    EXPECT_EQ(result::LookupResult(2U, 0), "Unknow error");  // code 2 is unassigned
    EXPECT_EQ(result::LookupResult(31U, 0), "Unknow error"); // and so is 31
}

TEST(ResultCatalogue, FamilyTableIsOnlySearchedForItsOwnCategory) {
    EXPECT_EQ(result::LookupResult(0x180076U, 24), "There are no controllers.");
    EXPECT_EQ(result::LookupResult(0x180076U, 23), "Unknow error");
}

TEST(ResultCatalogue, CodeAbove255IsLookedUpWholeInTheLegacyTable) {
    EXPECT_EQ(result::GetResultMessage(0x2B02), "Unknown error");
    // A generic row with the same low bits does not answer for it.
    result::RegisterResult(0, 0x2B02, "generic row");
    EXPECT_EQ(result::GetResultMessage(0x2B02), "Unknown error");
}

TEST(ResultCatalogue, LegacyTableRowIsFoundForItsWholeValue) {
    result::LegacyResultTable()[0x0601] = "update row";
    EXPECT_EQ(result::GetResultMessage(0x0601), "update row");
    EXPECT_EQ(result::GetResultMessage(0x0602), "Unknown error");
    result::LegacyResultTable().erase(0x0601);
}

TEST(ResultCatalogue, GenericRowsCarryTheirMessages) {
    const std::pair<std::uint32_t, const char*> rows[] = {
        {result::Success, "Succeed."},
        {result::GenericFailure, "Generic Failure."},
        {result::InvalidParameter, "Invalid parameter."},
        {result::FileNotExist, "File doesn't exist."},
        {result::FailedOpenFile, "Failed to open file."},
        {result::FailedWriteFile, "Failed to write file."},
        {result::AuthenticationFailed, "Authentication failed."},
        {result::ConnectionFailed, "Connection failed."},
        {result::InternalError, "Internal error."},
        {result::FunctionNotSupported, "Function is not supported on target system."},
        {result::RestDataFailed, "Fail to get data from Rest interface of BMC."},
    };
    const std::uint32_t codes[] = {0, 1, 5, 6, 9, 11, 12, 13, 17, 25, 60};
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(rows[i].first, codes[i]);
        EXPECT_EQ(result::GetResultMessage(static_cast<std::int32_t>(rows[i].first)),
                  rows[i].second);
    }
}

TEST(ResultCatalogue, RaidFamilyRowsCarryTheirValuesAndMessages) {
    const std::tuple<std::uint32_t, std::uint32_t, const char*> rows[] = {
        {result::RaidOnlyEnableEncryption, 0x180068,
         "Tessel can only enable Volume Encryption, cannot perform other operations."},
        {result::RaidNoFwDeviceOrderController, 0x180069,
         "There are no controllers with \"Firmware Device Order\" function."},
        {result::RaidNotSupportedOnDevice, 0x18006A,
         "Function isn't supported on the target device."},
        {result::RaidBadDgOption, 0x18006B, "Incorrect use of '--dg' option."},
        {result::RaidNoDisksToJbod, 0x18006C, "There are no disks to makejbod."},
        {result::RaidNoDisksToGood, 0x18006D, "There are no disks to makegood."},
        {result::RaidNoContainers, 0x180070, "There are no containers."},
        {result::RaidNoSoftwareRaid, 0x180071,
         "Current system not support Intel RSTe software raid."},
        {result::RaidDiskStateError, 0x180072, "Disk state error."},
        {result::RaidNoDisksOfTarget, 0x180073, "There are no disks of the target device."},
        {result::RaidNotSupportedOnM2, 0x180074,
         "RAID config doesn't support this command on M.2 SSD."},
        {result::RaidFailsOnAllTargets, 0x180075, "The operation fails on all targets."},
        {result::RaidNoControllers, 0x180076, "There are no controllers."},
        {result::RaidFailsOnSomeTargets, 0x180077, "The operation fails on some targets."},
        {result::RaidNoVolumes, 0x180078, "There are no volumes."},
        {result::RaidFailsToOperate, 0x180079, "RAID config fails to operate."},
        {result::RaidIniFileError, 0x18007A, "RAID config ini file error."},
        {result::RaidNoPolicyToSave, 0x18007B, "There is no raid config policy to save."},
        {result::RaidTargetNotExist, 0x18007C, "The target device does not exist."},
        {result::RaidNeedLatestFirmware, 0x18007D,
         "Please make sure the command of RAID config run on the Halden with lastest Vantor "
         "firmware version."},
    };
    for (const auto& [constant, value, message] : rows) {
        EXPECT_EQ(constant, value);
        EXPECT_EQ(result::GetResultMessage(static_cast<std::int32_t>(value)), message);
    }
}

TEST(ResultCatalogue, UnassignedRaidCodesAreUnknow) {
    EXPECT_EQ(result::GetResultMessage(0x18006E), "Unknow error"); // 110
    EXPECT_EQ(result::GetResultMessage(0x18006F), "Unknow error"); // 111
}

} // namespace
