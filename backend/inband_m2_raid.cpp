#include "backend/inband_m2_raid.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

InbandM2Raid::InbandM2Raid()
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::M2,
                                                   QuillonConnection::ConnectionInfo())) {}

InbandM2Raid::~InbandM2Raid() = default;

RaidErrorCode InbandM2Raid::GetController(int controller, M2CtrlInfo& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode InbandM2Raid::GetConfig(int controller, M2VolumeInfo& volume) {
    return driver().GetConfig(controller, volume, error_text);
}

RaidErrorCode InbandM2Raid::AddRaidIndex(M2ControllerObject& request) {
    return driver().Add(request, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
