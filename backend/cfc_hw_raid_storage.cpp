#include "backend/cfc_hw_raid_storage.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

CFCHWRaidStorage::CFCHWRaidStorage(const QuillonConnection::ConnectionInfo& connection)
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::OOB_CFC, connection)) {}

CFCHWRaidStorage::~CFCHWRaidStorage() = default;

RaidErrorCode CFCHWRaidStorage::GetController(int controller, Controller& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode CFCHWRaidStorage::GetConfig(int controller, std::vector<VolumeObject>& volumes,
                                          std::vector<int>& hot_spares) {
    return driver().GetConfig(controller, volumes, hot_spares, error_text);
}

RaidErrorCode CFCHWRaidStorage::Add(const VolumeObject& request) {
    return driver().Add(request, error_text);
}

void CFCHWRaidStorage::SetBmcType(int type) {
    driver().SetBmcType(type);
}

RaidErrorCode CFCHWRaidStorage::GetSupportedRaidLevels(int controller,
                                                       std::vector<std::string>& levels) {
    return driver().GetSupportedRaidLevels(controller, levels, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
