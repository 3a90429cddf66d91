#pragma once

#include <cstdint>

namespace Quillon {
namespace RaidConfig {

// The backends' plain codes. 0 and 34 are successes; the gaps are codes no caller tests.
enum RaidErrorCode {
    RAID_OK = 0,
    RAID_AUTH_FAILED = 1,
    RAID_INTERNAL_ERROR = 2,
    RAID_OPERATION_FAILED = 3,
    RAID_CONNECT_FAILED = 4,
    RAID_TARGET_NOT_FOUND = 5,
    RAID_DISK_NOT_FOUND = 6,
    RAID_FILE_NOT_FOUND = 7,
    RAID_FILE_OPEN_FAILED = 8,
    RAID_POLICY_ERROR = 9,
    RAID_NO_CONFIG = 10,
    RAID_MAKEGOOD_REFUSED = 11,
    RAID_MAKEJBOD_REFUSED = 12,
    RAID_NO_MAKEGOOD_DISKS = 13,
    RAID_NO_MAKEJBOD_DISKS = 14,
    RAID_ADDHSP_REFUSED = 15,
    RAID_RMHSP_REFUSED = 16,
    RAID_BMC_UNSUPPORTED = 17,
    RAID_DISK_STATE_ERROR = 18,
    RAID_OPERATION_FAILED_19 = 19,
    RAID_NO_CONTAINERS = 20,
    RAID_OPERATION_FAILED_21 = 21,
    RAID_OPERATION_FAILED_22 = 22,
    RAID_NO_DISKS = 23,
    RAID_NO_VOLUMES = 24,
    RAID_UNKNOWN_ERROR = 26,
    RAID_FUNCTION_UNSUPPORTED = 29,
    RAID_BAD_PARAMETER = 30,
    RAID_REST_FAILED = 32,
    RAID_DEVICE_UNSUPPORTED = 33,
    RAID_OK_UNCHANGED = 34,
};

} // namespace RaidConfig
} // namespace Quillon

namespace result {

// The one mapping from a backend code to a result value, taken on the number.
std::uint32_t RaidResultFromError(Quillon::RaidConfig::RaidErrorCode code);

} // namespace result
