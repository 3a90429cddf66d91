#pragma once

#include <memory>

#include "backend/fw_dev_order_driver.hpp"
#include "sim/machine_access.hpp"

namespace sim {

// The firmware device order of the simulated machine's out-of-band LSI controllers.
class SimFwDevOrderDriver : public Quillon::RaidConfig::FwDevOrderDriver {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    explicit SimFwDevOrderDriver(std::shared_ptr<MachineStore> store);

    Code GetController(int controller, Quillon::RaidConfig::FWDevOrderController& record,
                       std::string& message) override;
    Code TurnFirmwareDeviceOrder(int controller, const std::string& mode,
                                 std::string& message) override;

private:
    MachineAccess access_;
};

} // namespace sim
