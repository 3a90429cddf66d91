#pragma once

#include <string>
#include <vector>

#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"
#include "collaborators/connection_info.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of software RAID (VROC) reached through the BMC.
class OobVrocRaid : public Raid {
public:
    explicit OobVrocRaid(const QuillonConnection::ConnectionInfo& connection);
    ~OobVrocRaid() override;

    RaidErrorCode GetController(int controller, protocol::VolManDevCtrl& record);
    RaidErrorCode GetConfig(int controller, std::vector<protocol::VolManDevConfig>& volumes,
                            std::vector<int>& hot_spares);
    RaidErrorCode Add(const protocol::VolManDevConfig& request);
};

} // namespace RaidConfig
} // namespace Quillon
