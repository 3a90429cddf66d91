#include "backend/oob_m2_raid.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

OOBM2Raid::OOBM2Raid(const QuillonConnection::ConnectionInfo& connection)
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::OOB_M2, connection)) {}

OOBM2Raid::~OOBM2Raid() = default;

RaidErrorCode OOBM2Raid::GetController(int controller, M2CtrlInfo& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode OOBM2Raid::GetConfig(int controller, M2VolumeInfo& volume) {
    return driver().GetConfig(controller, volume, error_text);
}

RaidErrorCode OOBM2Raid::Add(const M2ControllerObject& request) {
    return driver().Add(request, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
