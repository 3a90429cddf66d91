#pragma once

#include <string>
#include <vector>

#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"
#include "collaborators/connection_info.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of LSI (Broadcom) controllers reached through the BMC.
class HWRaidStorage : public Raid {
public:
    explicit HWRaidStorage(const QuillonConnection::ConnectionInfo& connection);
    ~HWRaidStorage() override;

    RaidErrorCode GetController(int controller, Controller& record);
    RaidErrorCode GetConfig(int controller, std::vector<VolumeObject>& volumes,
                            std::vector<int>& hot_spares);
    RaidErrorCode Add(const VolumeObject& request);
    void SetBmcType(int type);
};

} // namespace RaidConfig
} // namespace Quillon
