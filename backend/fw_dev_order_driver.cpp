#include "backend/fw_dev_order_driver.hpp"

namespace Quillon {
namespace RaidConfig {

namespace {

RaidErrorCode NoController(int controller, std::string& message) {
    message = "controller " + std::to_string(controller) + " does not exist";
    return RAID_TARGET_NOT_FOUND;
}

} // namespace

// The defaults describe a BMC without controllers.
RaidErrorCode FwDevOrderDriver::GetController(int controller, FWDevOrderController& /*record*/,
                                              std::string& message) {
    return NoController(controller, message);
}
RaidErrorCode FwDevOrderDriver::TurnFirmwareDeviceOrder(int controller, const std::string& /*mode*/,
                                                        std::string& message) {
    return NoController(controller, message);
}

} // namespace RaidConfig
} // namespace Quillon
