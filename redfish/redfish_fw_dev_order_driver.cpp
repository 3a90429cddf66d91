#include "redfish/redfish_fw_dev_order_driver.hpp"

#include "backend/fw_dev_order_controller.hpp"
#include "model/controller_reader.hpp"
#include "redfish/redfish_connection.hpp"

namespace redfish {

using namespace Quillon::RaidConfig;
using nlohmann::json;

RedfishFwDevOrderDriver::RedfishFwDevOrderDriver(const RedfishConnection& connection)
    : access_(connection.shared_tree(), "OOB_LSI") {}

RedfishFwDevOrderDriver::Code RedfishFwDevOrderDriver::GetController(int controller,
                                                                     FWDevOrderController& record,
                                                                     std::string& message) {
    return access_.Read("FirmwareDeviceOrder", "GetController", controller, message,
                        [&](const model::Controller& c, const StorageTree&, std::string& text) {
                            return model::ControllerReader::FirmwareOrder(c, record, text);
                        });
}

RedfishFwDevOrderDriver::Code
RedfishFwDevOrderDriver::TurnFirmwareDeviceOrder(int controller, const std::string& mode,
                                                 std::string& message) {
    return access_.Write(
        controller, message,
        [&mode](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
                std::string& text) {
            if (!links.ours) {
                // Only our Oem section carries the order: a BMC without it has none to set.
                return model::ControllerReader::NoFirmwareOrder(text);
            }
            const json body = {{"Oem", {{"Raidcfg", {{"FirmwareDeviceOrder", mode}}}}}};
            return BmcAccess::PatchMode(client, BmcAccess::ControllerPath(links), body,
                                        model.fw_device_order, model.fw_device_order_modes, mode,
                                        "the firmware device order", text);
        });
}

} // namespace redfish
