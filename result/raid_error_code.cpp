#include "result/raid_error_code.hpp"

#include "result/result_values.hpp"

namespace result {

std::uint32_t RaidResultFromError(Quillon::RaidConfig::RaidErrorCode code) {
    // Taken on the number, so a code outside the named enumerators still maps.
    switch (static_cast<int>(code)) {
    case 0:
    case 34: // nothing to do: a success here, though a tally over targets counts only 0
        return Success;
    case 1:
        return AuthenticationFailed;
    case 2:
        return InternalError;
    case 3:
    case 11:
    case 12:
    case 15:
    case 16:
    case 19:
    case 21:
    case 22:
        return RaidFailsToOperate;
    case 4:
        return ConnectionFailed;
    case 5:
    case 6:
        return RaidTargetNotExist;
    case 7:
        return FileNotExist;
    case 8:
        return FailedOpenFile;
    case 9:
        return RaidIniFileError;
    case 10:
        return RaidNoPolicyToSave;
    case 13:
        return RaidNoDisksToGood;
    case 14:
        return RaidNoDisksToJbod;
    case 17:
        return RaidNeedLatestFirmware;
    case 18:
        return RaidDiskStateError;
    case 20:
        return RaidNoContainers;
    case 23:
        return RaidNoDisksOfTarget;
    case 24:
        return RaidNoVolumes;
    case 29:
        return FunctionNotSupported;
    case 32:
        return RestDataFailed;
    case 33:
        return RaidNotSupportedOnDevice;
    default: // 26, 30 and every code no caller tests
        return GenericFailure;
    }
}

} // namespace result
