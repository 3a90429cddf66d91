#include "backend/hw_raid_storcli.hpp"

#include "backend/backend_platform.hpp"
#include "backend/records.hpp"

namespace Quillon {
namespace RaidConfig {

HWRaidStorcli::HWRaidStorcli()
    : Raid(CurrentBackendPlatform().MakeRaidDriver(RaidTarget::LSI,
                                                   QuillonConnection::ConnectionInfo())) {}

HWRaidStorcli::~HWRaidStorcli() = default;

void HWRaidStorcli::GetControllerIds(std::vector<int>& ids) const {
    Raid::GetControllerIds(ids);
}

RaidErrorCode HWRaidStorcli::GetController(int controller, protocol::StorcliCtrl& record) {
    return driver().GetController(controller, record, error_text);
}

RaidErrorCode HWRaidStorcli::GetConfig(int controller, std::vector<VolumeObject>& volumes,
                                       std::vector<int>& hot_spares) {
    return driver().GetConfig(controller, volumes, hot_spares, error_text);
}

RaidErrorCode HWRaidStorcli::Add(const VolumeObject& request) {
    return driver().Add(request, error_text);
}

RaidErrorCode HWRaidStorcli::GetFirmwareDeviceOrderCtrl(int controller,
                                                        protocol::FWDevOrderCtrl& record) {
    return driver().GetFirmwareDeviceOrderCtrl(controller, record, protocol_error_text);
}

// mode comes by value: the signature is the backend contract's.
RaidErrorCode HWRaidStorcli::SetFirmwareDeviceOrderCtrl(
    int controller, std::string mode) { // NOLINT(performance-unnecessary-value-param)
    return driver().SetFirmwareDeviceOrderCtrl(controller, mode, error_text);
}

} // namespace RaidConfig
} // namespace Quillon
