#pragma once

#include <string>
#include <vector>

#include "backend/hw_base_raid.hpp"
#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of in-band LSI (Broadcom) controllers.
class HWRaidStorcli : public Raid, public HWBaseRaid {
public:
    HWRaidStorcli();
    ~HWRaidStorcli() override;

    // Both bases name it; one answer serves both.
    void GetControllerIds(std::vector<int>& ids) const override;
    RaidErrorCode GetController(int controller, protocol::StorcliCtrl& record);
    RaidErrorCode GetConfig(int controller, std::vector<VolumeObject>& volumes,
                            std::vector<int>& hot_spares);
    RaidErrorCode Add(const VolumeObject& request);
    RaidErrorCode GetFirmwareDeviceOrderCtrl(int controller, protocol::FWDevOrderCtrl& record);
    RaidErrorCode SetFirmwareDeviceOrderCtrl(int controller, std::string mode);

    // The reason of the last failed GetFirmwareDeviceOrderCtrl, kept apart from error_text.
    std::string protocol_error_text;
};

} // namespace RaidConfig
} // namespace Quillon
