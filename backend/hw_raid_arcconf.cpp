#include "backend/hw_raid_arcconf.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

HWRaidArcconf::HWRaidArcconf()
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::MICROCHIP,
                                                   QuillonConnection::ConnectionInfo())) {}

HWRaidArcconf::~HWRaidArcconf() = default;

void HWRaidArcconf::GetControllerIds(std::vector<int>& ids) const {
    Raid::GetControllerIds(ids);
}

RaidErrorCode HWRaidArcconf::GetController(int controller, ARCCONF::ControllerInfo& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode HWRaidArcconf::GetConfig(int controller, std::vector<ARCCONF::VolumeCfg>& volumes,
                                       std::vector<std::string>& hot_spares) {
    return driver().GetConfig(controller, volumes, hot_spares, error_text);
}

RaidErrorCode HWRaidArcconf::Add(const protocol::MicrochipConfig& request) {
    return driver().Add(request, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
