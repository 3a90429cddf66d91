#include "backend/oob_microchip_raid.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

OobMicrochipRaid::OobMicrochipRaid(const QuillonConnection::ConnectionInfo& connection)
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::OOB_MICROCHIP, connection)) {}

OobMicrochipRaid::~OobMicrochipRaid() = default;

RaidErrorCode OobMicrochipRaid::GetController(int controller, protocol::MicrochipCtrl& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode OobMicrochipRaid::GetConfig(int controller,
                                          std::vector<protocol::OobMicroConfig>& volumes) {
    return driver().GetConfig(controller, volumes, error_text);
}

RaidErrorCode OobMicrochipRaid::Add(const protocol::OobMicroConfig& request) {
    return driver().Add(request, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
