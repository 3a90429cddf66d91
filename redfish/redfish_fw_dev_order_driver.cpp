#include "redfish/redfish_fw_dev_order_driver.hpp"

#include <string>
#include <utility>

#include "backend/fw_dev_order_controller.hpp"
#include "model/controller_reader.hpp"
#include "model/mode_setting.hpp"
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
            json answer;
            const Code code = BmcAccess::Outcome(
                client.Patch(BmcAccess::ControllerPath(links), body, &answer), text);
            if (std::string detail = BmcAccess::SuccessText(answer);
                code == RAID_OK && !detail.empty()) {
                text = std::move(detail);
            }
            // A PATCH to the value the controller has is accepted and changes nothing: 34.
            std::string current = model.fw_device_order.value_or("");
            std::string already;
            if (code == RAID_OK && model.fw_device_order &&
                model::ModeSetting::Change(current, model.fw_device_order_modes, mode,
                                           "the firmware device order",
                                           already) == RAID_OK_UNCHANGED) {
                text = already;
                return RAID_OK_UNCHANGED;
            }
            return code;
        });
}

} // namespace redfish
