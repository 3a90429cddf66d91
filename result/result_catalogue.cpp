#include "result/result_catalogue.hpp"

#include <map>

#include "result/legacy_result_table.hpp"
#include "result/result_values.hpp"

namespace result {
namespace {

using MessageTable = std::map<std::uint32_t, std::string>;

MessageTable& GenericTable() {
    static MessageTable table;
    return table;
}

std::map<std::int32_t, MessageTable>& FamilyTable() {
    static std::map<std::int32_t, MessageTable> table;
    return table;
}

} // namespace

std::uint32_t RegisterResult(std::int32_t category, std::uint32_t code,
                             const std::string& message) {
    const std::uint32_t value = code | (static_cast<std::uint32_t>(category) << 16U);
    if (category < 1) {
        GenericTable()[value] = message;
    } else {
        FamilyTable()[category][value] = message;
    }
    return value;
}

std::string LookupResult(std::uint32_t value, std::int32_t category) {
    const MessageTable& generic = GenericTable();
    if (auto found = generic.find(value); found != generic.end()) {
        return found->second;
    }
    const auto& families = FamilyTable();
    if (auto family = families.find(category); family != families.end()) {
        if (auto found = family->second.find(value); found != family->second.end()) {
            return found->second;
        }
    }
    return "Unknow error"; // sic: the catalogue's own miss text, which hosts match on
}

std::string GetResultMessage(std::int32_t value) {
    const auto unsigned_value = static_cast<std::uint32_t>(value);
    if ((unsigned_value & 0xFF00U) != 0U) {
        // Codes of 256 and above belong to the update family's legacy table, looked up whole.
        // Its miss text differs from the catalogue's on purpose.
        const auto& legacy = LegacyResultTable();
        if (auto found = legacy.find(value); found != legacy.end()) {
            return found->second;
        }
        return "Unknown error";
    }
    return LookupResult(unsigned_value, static_cast<std::int32_t>(unsigned_value >> 16U));
}

// The named values live in this file so that linking any look-up also links their registration,
// which runs while the process starts, before the service is first called.
const std::uint32_t Success = RegisterResult(0, 0, "Succeed.");
const std::uint32_t GenericFailure = RegisterResult(0, 1, "Generic Failure.");
const std::uint32_t InvalidParameter = RegisterResult(0, 5, "Invalid parameter.");
const std::uint32_t FileNotExist = RegisterResult(0, 6, "File doesn't exist.");
const std::uint32_t FailedOpenFile = RegisterResult(0, 9, "Failed to open file.");
const std::uint32_t FailedWriteFile = RegisterResult(0, 11, "Failed to write file.");
const std::uint32_t AuthenticationFailed = RegisterResult(0, 12, "Authentication failed.");
const std::uint32_t ConnectionFailed = RegisterResult(0, 13, "Connection failed.");
const std::uint32_t InternalError = RegisterResult(0, 17, "Internal error.");
const std::uint32_t FunctionNotSupported =
    RegisterResult(0, 25, "Function is not supported on target system.");
const std::uint32_t RestDataFailed =
    RegisterResult(0, 60, "Fail to get data from Rest interface of BMC.");

const std::uint32_t RaidOnlyEnableEncryption =
    RegisterResult(kRaidCategory, 104,
                   "Tessel can only enable Volume Encryption, cannot perform other operations.");
const std::uint32_t RaidNoFwDeviceOrderController = RegisterResult(
    kRaidCategory, 105, "There are no controllers with \"Firmware Device Order\" function.");
const std::uint32_t RaidNotSupportedOnDevice =
    RegisterResult(kRaidCategory, 106, "Function isn't supported on the target device.");
const std::uint32_t RaidBadDgOption =
    RegisterResult(kRaidCategory, 107, "Incorrect use of '--dg' option.");
const std::uint32_t RaidNoDisksToJbod =
    RegisterResult(kRaidCategory, 108, "There are no disks to makejbod.");
const std::uint32_t RaidNoDisksToGood =
    RegisterResult(kRaidCategory, 109, "There are no disks to makegood.");
const std::uint32_t RaidNoContainers =
    RegisterResult(kRaidCategory, 112, "There are no containers.");
const std::uint32_t RaidNoSoftwareRaid =
    RegisterResult(kRaidCategory, 113, "Current system not support Intel RSTe software raid.");
const std::uint32_t RaidDiskStateError = RegisterResult(kRaidCategory, 114, "Disk state error.");
const std::uint32_t RaidNoDisksOfTarget =
    RegisterResult(kRaidCategory, 115, "There are no disks of the target device.");
const std::uint32_t RaidNotSupportedOnM2 =
    RegisterResult(kRaidCategory, 116, "RAID config doesn't support this command on M.2 SSD.");
const std::uint32_t RaidFailsOnAllTargets =
    RegisterResult(kRaidCategory, 117, "The operation fails on all targets.");
const std::uint32_t RaidNoControllers =
    RegisterResult(kRaidCategory, 118, "There are no controllers.");
const std::uint32_t RaidFailsOnSomeTargets =
    RegisterResult(kRaidCategory, 119, "The operation fails on some targets.");
const std::uint32_t RaidNoVolumes = RegisterResult(kRaidCategory, 120, "There are no volumes.");
const std::uint32_t RaidFailsToOperate =
    RegisterResult(kRaidCategory, 121, "RAID config fails to operate.");
const std::uint32_t RaidIniFileError =
    RegisterResult(kRaidCategory, 122, "RAID config ini file error.");
const std::uint32_t RaidNoPolicyToSave =
    RegisterResult(kRaidCategory, 123, "There is no raid config policy to save.");
const std::uint32_t RaidTargetNotExist =
    RegisterResult(kRaidCategory, 124, "The target device does not exist.");
// "lastest" is the product's established wording; hosts match the text as it stands.
const std::uint32_t RaidNeedLatestFirmware = RegisterResult(
    kRaidCategory, 125,
    "Please make sure the command of RAID config run on the Halden with lastest Vantor firmware "
    "version.");

} // namespace result
