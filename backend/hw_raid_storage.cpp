#include "backend/hw_raid_storage.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

HWRaidStorage::HWRaidStorage(const QuillonConnection::ConnectionInfo& connection)
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::OOB_LSI, connection)) {}

HWRaidStorage::~HWRaidStorage() = default;

RaidErrorCode HWRaidStorage::GetController(int controller, Controller& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode HWRaidStorage::GetConfig(int controller, std::vector<VolumeObject>& volumes,
                                       std::vector<int>& hot_spares) {
    return driver().GetConfig(controller, volumes, hot_spares, error_text);
}

RaidErrorCode HWRaidStorage::Add(const VolumeObject& request) {
    return driver().Add(request, error_text);
}

void HWRaidStorage::SetBmcType(int type) {
    driver().SetBmcType(type);
}

} // namespace RaidConfig
} // namespace Quillon
