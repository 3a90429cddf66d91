#include "backend/oob_vroc_raid.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

OobVrocRaid::OobVrocRaid(const QuillonConnection::ConnectionInfo& connection)
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::OOB_VROC, connection)) {}

OobVrocRaid::~OobVrocRaid() = default;

RaidErrorCode OobVrocRaid::GetController(int controller, protocol::VolManDevCtrl& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode OobVrocRaid::GetConfig(int controller,
                                     std::vector<protocol::VolManDevConfig>& volumes,
                                     std::vector<int>& hot_spares) {
    return driver().GetConfig(controller, volumes, hot_spares, error_text);
}

RaidErrorCode OobVrocRaid::Add(const protocol::VolManDevConfig& request) {
    return driver().Add(request, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
