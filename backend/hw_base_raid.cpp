#include "backend/hw_base_raid.hpp"

namespace Quillon {
namespace RaidConfig {

HWBaseRaid::~HWBaseRaid() = default;

RaidErrorCode HWBaseRaid::GetRaidTableInfo(int /*controller*/, int /*volume*/,
                                           std::vector<std::vector<Table>>& /*tables*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode HWBaseRaid::AddVolume(int /*controller*/, const ConfigVol& /*volume*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode HWBaseRaid::GetConfigString(int /*controller*/, int /*volume*/,
                                          std::string& /*text*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode HWBaseRaid::RaidClear(int /*controller*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode HWBaseRaid::RaidRemoveVol(int /*controller*/, int /*volume*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode HWBaseRaid::RaidAddHotSpare(int /*controller*/, int /*disk*/,
                                          const std::vector<int>& /*volumes*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}
RaidErrorCode HWBaseRaid::RaidRemoveHotSpare(int /*controller*/, int /*disk*/) {
    return RAID_FUNCTION_UNSUPPORTED;
}

} // namespace RaidConfig
} // namespace Quillon
