#include "backend/base_raid.hpp"

namespace Quillon {
namespace RaidConfig {

BaseRaid::~BaseRaid() = default;

RaidErrorCode BaseRaid::GetRaidTableInfo(std::vector<std::vector<Table>>& /*tables*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode BaseRaid::RaidAdd() {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode BaseRaid::ParsePolicyFile(const std::string& /*path*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode BaseRaid::GetConfigString(std::string& /*text*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode BaseRaid::RaidClear() {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode BaseRaid::RaidRemoveVol(const std::vector<int>& /*volumes*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode BaseRaid::RaidAddHotSpare(const std::vector<std::string>& /*disks*/,
                                        const std::vector<std::string>& /*volumes*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode BaseRaid::RaidRemoveHotSpare(const std::vector<std::string>& /*disks*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}

} // namespace RaidConfig
} // namespace Quillon
