#pragma once

#include <string>
#include <vector>

#include "backend/hw_base_raid.hpp"
#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of in-band Microchip controllers.
class HWRaidArcconf : public Raid, public HWBaseRaid {
public:
    HWRaidArcconf();
    ~HWRaidArcconf() override;

    // Both bases name it; one answer serves both.
    void GetControllerIds(std::vector<int>& ids) const override;
    RaidErrorCode GetController(int controller, ARCCONF::ControllerInfo& record);
    RaidErrorCode GetConfig(int controller, std::vector<ARCCONF::VolumeCfg>& volumes,
                            std::vector<std::string>& hot_spares);
    RaidErrorCode Add(const protocol::MicrochipConfig& request);
};

} // namespace RaidConfig
} // namespace Quillon
