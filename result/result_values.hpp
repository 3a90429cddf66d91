#pragma once

#include <cstdint>

// Named result values. Each one is registered in the catalogue while the process starts, so its
// message is known before the service runs. Do not read them from another static initialiser.
namespace result {

// Category 0: the generic family.
extern const std::uint32_t Success;              // 0
extern const std::uint32_t GenericFailure;       // 1
extern const std::uint32_t InvalidParameter;     // 5
extern const std::uint32_t FileNotExist;         // 6
extern const std::uint32_t FailedOpenFile;       // 9
extern const std::uint32_t FailedWriteFile;      // 11
extern const std::uint32_t AuthenticationFailed; // 12
extern const std::uint32_t ConnectionFailed;     // 13
extern const std::uint32_t InternalError;        // 17
extern const std::uint32_t FunctionNotSupported; // 25
extern const std::uint32_t RestDataFailed;       // 60

// Category 24: the RAID family.
constexpr std::int32_t kRaidCategory = 24;
extern const std::uint32_t RaidOnlyEnableEncryption;      // 104
extern const std::uint32_t RaidNoFwDeviceOrderController; // 105
extern const std::uint32_t RaidNotSupportedOnDevice;      // 106
extern const std::uint32_t RaidBadDgOption;               // 107
extern const std::uint32_t RaidNoDisksToJbod;             // 108
extern const std::uint32_t RaidNoDisksToGood;             // 109
extern const std::uint32_t RaidNoContainers;              // 112
extern const std::uint32_t RaidNoSoftwareRaid;            // 113
extern const std::uint32_t RaidDiskStateError;            // 114
extern const std::uint32_t RaidNoDisksOfTarget;           // 115
extern const std::uint32_t RaidNotSupportedOnM2;          // 116
extern const std::uint32_t RaidFailsOnAllTargets;         // 117
extern const std::uint32_t RaidNoControllers;             // 118
extern const std::uint32_t RaidFailsOnSomeTargets;        // 119
extern const std::uint32_t RaidNoVolumes;                 // 120
extern const std::uint32_t RaidFailsToOperate;            // 121
extern const std::uint32_t RaidIniFileError;              // 122
extern const std::uint32_t RaidNoPolicyToSave;            // 123
extern const std::uint32_t RaidTargetNotExist;            // 124
extern const std::uint32_t RaidNeedLatestFirmware;        // 125

} // namespace result
