#include "sim/sim_fw_dev_order_driver.hpp"

#include <algorithm>
#include <utility>

#include "backend/fw_dev_order_controller.hpp"
#include "model/controller_reader.hpp"
#include "model/mode_setting.hpp"

namespace sim {

using namespace Quillon::RaidConfig;

namespace {

RaidErrorCode NoOrder(std::string& message) {
    return model::ControllerReader::NoFirmwareOrder(message);
}

} // namespace

SimFwDevOrderDriver::SimFwDevOrderDriver(std::shared_ptr<MachineStore> store)
    : access_(std::move(store), "OOB_LSI") {}

SimFwDevOrderDriver::Code SimFwDevOrderDriver::GetController(int controller,
                                                             FWDevOrderController& record,
                                                             std::string& message) {
    return access_.Act("GetController", controller, std::nullopt, false, message,
                       [&record](Controller& c, std::string& error) {
                           return model::ControllerReader::FirmwareOrder(c, record, error);
                       });
}

SimFwDevOrderDriver::Code SimFwDevOrderDriver::TurnFirmwareDeviceOrder(int controller,
                                                                       const std::string& mode,
                                                                       std::string& message) {
    return access_.Act("TurnFirmwareDeviceOrder", controller, std::nullopt, true, message,
                       [&mode](Controller& c, std::string& error) {
                           if (!c.fw_device_order) {
                               return NoOrder(error);
                           }
                           return model::ModeSetting::Change(*c.fw_device_order,
                                                             c.fw_device_order_modes, mode,
                                                             "the firmware device order", error);
                       });
}

} // namespace sim
