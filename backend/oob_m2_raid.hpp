#pragma once

#include <string>
#include <vector>

#include "backend/raid.hpp"
#include "backend/raid_driver.hpp"
#include "collaborators/connection_info.hpp"

namespace Quillon {
namespace RaidConfig {

// The backend class of M.2 (Marvell) controllers reached through the BMC.
class OOBM2Raid : public Raid {
public:
    explicit OOBM2Raid(const QuillonConnection::ConnectionInfo& connection);
    ~OOBM2Raid() override;

    RaidErrorCode GetController(int controller, M2CtrlInfo& record);
    RaidErrorCode GetConfig(int controller, M2VolumeInfo& volume);
    RaidErrorCode Add(const M2ControllerObject& request);
};

} // namespace RaidConfig
} // namespace Quillon
