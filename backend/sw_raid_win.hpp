#pragma once

#include <string>
#include <vector>

#include "backend/base_raid.hpp"
#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of in-band software RAID (VROC).
class SWRaidWin : public Raid, public BaseRaid {
public:
    SWRaidWin();
    ~SWRaidWin() override;

    // True when no controller of the family holds an array.
    virtual bool ConfigEmpty();
    RaidErrorCode GetController(int controller, SWWinController& record);
    RaidErrorCode GetConfig(int controller, std::vector<SWWinArray>& arrays,
                            std::vector<int>& hot_spares);
    RaidErrorCode Add(VolRaidConfig& request);
};

} // namespace RaidConfig
} // namespace Quillon
