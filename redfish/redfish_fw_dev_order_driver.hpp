#pragma once

#include <string>

#include "backend/fw_dev_order_driver.hpp"
#include "redfish/bmc_access.hpp"

namespace redfish {

class RedfishConnection;

// The out-of-band firmware device order of the BMC's OOB_LSI controllers, kept in our Oem
// section of the StorageController (the standard has no such property).
class RedfishFwDevOrderDriver : public Quillon::RaidConfig::FwDevOrderDriver {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    explicit RedfishFwDevOrderDriver(const RedfishConnection& connection);

    Code GetController(int controller, Quillon::RaidConfig::FWDevOrderController& record,
                       std::string& message) override;
    Code TurnFirmwareDeviceOrder(int controller, const std::string& mode,
                                 std::string& message) override;

private:
    BmcAccess access_;
};

} // namespace redfish
