#pragma once

#include <string>
#include <vector>

#include "backend/base_raid.hpp"
#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of in-band M.2 (Marvell) controllers.
class InbandM2Raid : public Raid, public BaseRaid {
public:
    InbandM2Raid();
    ~InbandM2Raid() override;

    RaidErrorCode GetController(int controller, M2CtrlInfo& record);
    RaidErrorCode GetConfig(int controller, M2VolumeInfo& volume);
    RaidErrorCode AddRaidIndex(M2ControllerObject& request);
};

} // namespace RaidConfig
} // namespace Quillon
