#pragma once

#include <string>
#include <vector>

#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"
#include "collaborators/connection_info.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of Microchip controllers reached through the BMC.
class OobMicrochipRaid : public Raid {
public:
    explicit OobMicrochipRaid(const QuillonConnection::ConnectionInfo& connection);
    ~OobMicrochipRaid() override;

    RaidErrorCode GetController(int controller, protocol::MicrochipCtrl& record);
    RaidErrorCode GetConfig(int controller, std::vector<protocol::OobMicroConfig>& volumes);
    RaidErrorCode Add(const protocol::OobMicroConfig& request);
};

} // namespace RaidConfig
} // namespace Quillon
