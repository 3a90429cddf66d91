#pragma once

#include <string>
#include <vector>

#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"
#include "collaborators/connection_info.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of the LSI, Microchip and M.2 controllers of a CFC system, behind one BMC
// interface.
class CFCHWRaidStorage : public Raid {
public:
    explicit CFCHWRaidStorage(const QuillonConnection::ConnectionInfo& connection);
    ~CFCHWRaidStorage() override;

    RaidErrorCode GetController(int controller, Controller& record);
    RaidErrorCode GetConfig(int controller, std::vector<VolumeObject>& volumes,
                            std::vector<int>& hot_spares);
    RaidErrorCode Add(const VolumeObject& request);
    void SetBmcType(int type);
    RaidErrorCode GetSupportedRaidLevels(int controller, std::vector<std::string>& levels);
};

} // namespace RaidConfig
} // namespace Quillon
