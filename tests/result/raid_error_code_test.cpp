#include "result/raid_error_code.hpp"
#include "result/result_values.hpp"

#include <gtest/gtest.h>

namespace {

using Quillon::RaidConfig::RaidErrorCode;

std::uint32_t Map(int number) {
    return result::RaidResultFromError(RaidErrorCode(number));
}

TEST(RaidResultFromError, EveryTestedCodeMapsAsItsTableRowSays) {
    const std::pair<int, std::uint32_t> rows[] = {
        {0, result::Success},
        {1, result::AuthenticationFailed},
        {2, result::InternalError},
        {3, result::RaidFailsToOperate},
        {4, result::ConnectionFailed},
        {5, result::RaidTargetNotExist},
        {6, result::RaidTargetNotExist},
        {7, result::FileNotExist},
        {8, result::FailedOpenFile},
        {9, result::RaidIniFileError},
        {10, result::RaidNoPolicyToSave},
        {11, result::RaidFailsToOperate},
        {12, result::RaidFailsToOperate},
        {13, result::RaidNoDisksToGood},
        {14, result::RaidNoDisksToJbod},
        {15, result::RaidFailsToOperate},
        {16, result::RaidFailsToOperate},
        {17, result::RaidNeedLatestFirmware},
        {18, result::RaidDiskStateError},
        {19, result::RaidFailsToOperate},
        {20, result::RaidNoContainers},
        {21, result::RaidFailsToOperate},
        {22, result::RaidFailsToOperate},
        {23, result::RaidNoDisksOfTarget},
        {24, result::RaidNoVolumes},
        {26, result::GenericFailure},
        {29, result::FunctionNotSupported},
        {30, result::GenericFailure},
        {32, result::RestDataFailed},
        {33, result::RaidNotSupportedOnDevice},
        {34, result::Success},
    };
    for (const auto& [number, value] : rows) {
        EXPECT_EQ(Map(number), value) << "code " << number;
    }
}

TEST(RaidResultFromError, UntestedCodesAreGenericFailure) {
    for (int number : {25, 27, 28, 31, 35, 99, -1, 1000}) {
        EXPECT_EQ(Map(number), result::GenericFailure) << "code " << number;
    }
}

TEST(RaidResultFromError, UnchangedIsASuccess) {
    EXPECT_EQ(result::RaidResultFromError(Quillon::RaidConfig::RAID_OK_UNCHANGED), result::Success);
}

TEST(RaidErrorCode, EnumeratorsHaveTheirNumbers) {
    using namespace Quillon::RaidConfig;
    EXPECT_EQ(RAID_OK, 0);
    EXPECT_EQ(RAID_DISK_NOT_FOUND, 6);
    EXPECT_EQ(RAID_NO_CONFIG, 10);
    EXPECT_EQ(RAID_NO_VOLUMES, 24);
    EXPECT_EQ(RAID_UNKNOWN_ERROR, 26);
    EXPECT_EQ(RAID_FUNCTION_UNSUPPORTED, 29);
    EXPECT_EQ(RAID_BAD_PARAMETER, 30);
    EXPECT_EQ(RAID_REST_FAILED, 32);
    EXPECT_EQ(RAID_DEVICE_UNSUPPORTED, 33);
    EXPECT_EQ(RAID_OK_UNCHANGED, 34);
}

} // namespace
