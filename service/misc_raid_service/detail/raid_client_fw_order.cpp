// The fwdeviceorder action: show or change the firmware device order of LSI controllers, on the
// local road through the in-band LSI backend and out-of-band through the BMC. A change takes
// effect at the next boot, and the row says so.
#include <memory>
#include <string>
#include <vector>

#include "backend/fw_dev_order.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/records.hpp"
#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::protocol::FWDevOrderCtrl;
using Quillon::RaidConfig::FWDevOrder;
using Quillon::RaidConfig::FWDevOrderController;
using Quillon::RaidConfig::HWRaidStorcli;
using Quillon::RaidConfig::RAID_DEVICE_UNSUPPORTED;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_OK_UNCHANGED;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RAID_UNKNOWN_ERROR;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

constexpr const char* kScope = "service::detail::RaidClient::";
constexpr const char* kNotSupportedText = "Function isn't supported on the target device.";

// The second error text of the in-band LSI backend, moved out so each is told once.
std::string TakeProtocolError(HWRaidStorcli& backend) {
    std::string text = std::move(backend.protocol_error_text);
    backend.protocol_error_text.clear();
    return text;
}

} // namespace

std::uint32_t RaidClient::ShowWithFirmwareDeviceOrder() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "ShowWithFirmwareDeviceOrder";
    // The heading is printed whatever console_output says: this action exists to show.
    Tell("\nraidconfig firmware device order:");
    std::vector<int> numbers;
    for (int number = 1; number <= static_cast<int>(index_map_.size()); ++number) {
        const auto found = index_map_.find(number);
        if (found != index_map_.end() && found->second.type == RaidTarget::LSI) {
            numbers.push_back(number);
        }
    }
    std::vector<int> ids;
    std::vector<FWDevOrderCtrl> records;
    if (target_index_ == -1) {
        for (const int number : numbers) {
            const RaidIndex record = GetRaidIndex(number);
            const auto backend = std::dynamic_pointer_cast<HWRaidStorcli>(record.backend);
            if (!backend) {
                continue;
            }
            FWDevOrderCtrl found;
            const RaidErrorCode code = backend->GetFirmwareDeviceOrderCtrl(record.id, found);
            if (code == RAID_DEVICE_UNSUPPORTED) {
                // The controller lacks the function: left out without a row.
                continue;
            }
            if (code == RAID_OK) {
                ids.push_back(number);
                records.push_back(found);
            }
            AddQueryRow(number, code, TakeProtocolError(*backend));
        }
        utils_.PrintFwDeviceOrder(ids, records);
        if (rows_.empty()) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowWithFirmwareDeviceOrder";
            return result::RaidNoFwDeviceOrderController;
        }
    } else {
        const RaidIndex record = GetRaidIndex(target_index_);
        if (record.index == -1) {
            AddRow(CtrlLabel(target_index_), NoControllerText(target_index_),
                   RAID_TARGET_NOT_FOUND);
        } else if (record.type != RaidTarget::LSI) {
            AddRow(CtrlLabel(target_index_), kNotSupportedText, RAID_DEVICE_UNSUPPORTED);
        } else if (const auto backend = std::dynamic_pointer_cast<HWRaidStorcli>(record.backend)) {
            FWDevOrderCtrl found;
            const RaidErrorCode code = backend->GetFirmwareDeviceOrderCtrl(record.id, found);
            if (code == RAID_OK) {
                utils_.PrintFwDeviceOrder({target_index_}, {found});
            }
            AddQueryRow(target_index_, code, TakeProtocolError(*backend));
        }
    }
    PrintResultTable(show_fw_device_order_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowWithFirmwareDeviceOrder";
    return SummaryResults();
}

std::uint32_t RaidClient::TurnFirmwareDeviceOrder() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "TurnFirmwareDeviceOrder";
    Tell("\nraidconfig change firmware device order mode:");
    const RaidIndex record = GetRaidIndex(target_index_);
    const auto backend = std::dynamic_pointer_cast<HWRaidStorcli>(record.backend);
    // Without --ctrl the number is -1, and the row says that controller does not exist.
    if (record.index == -1) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
    } else if (record.type != RaidTarget::LSI) {
        AddRow(CtrlLabel(target_index_), kNotSupportedText, RAID_DEVICE_UNSUPPORTED);
    } else if (backend) {
        const RaidErrorCode code =
            backend->SetFirmwareDeviceOrderCtrl(record.id, option_.mode_value);
        if (code == RAID_OK) {
            AddRow(CtrlLabel(target_index_), OrderChangedText(target_index_), RAID_OK);
        } else if (code == RAID_OK_UNCHANGED) {
            AddRow(CtrlLabel(target_index_), OrderUnchangedText(target_index_), RAID_OK_UNCHANGED);
        } else if (code == RAID_TARGET_NOT_FOUND) {
            AddRow(CtrlLabel(target_index_), NoControllerText(target_index_),
                   RAID_TARGET_NOT_FOUND);
        } else {
            // Intended: the backend's own text is not shown on this road, only a generic one.
            AddRow(CtrlLabel(target_index_), "Unknown error.", RAID_UNKNOWN_ERROR);
        }
    }
    PrintResultTable(change_fw_device_order_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "TurnFirmwareDeviceOrder";
    return SummaryResults();
}

std::uint32_t RaidClient::ShowOobWithFirmwareDeviceOrder(
    const std::vector<QuillonConnection::ConnectionInfo>& connections) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "ShowOobWithFirmwareDeviceOrder";
    Tell("\nraidconfig firmware device order:");
    if (result_page_) {
        // "Frimware" is the page's title as readers of earlier pages know it: intended.
        result_page_->SetPageTitle("RaidConfig Frimware Device Order");
    }
    const auto fw_order = std::make_shared<FWDevOrder>(
        connections.empty() ? QuillonConnection::ConnectionInfo() : connections.front());
    std::vector<int> ids;
    std::vector<FWDevOrderController> records;
    if (target_index_ == -1) {
        for (const auto& entry : index_map_) {
            if (entry.second.type != RaidTarget::OOB_LSI) {
                continue;
            }
            FWDevOrderController found;
            const RaidErrorCode code = fw_order->GetController(entry.second.id, found);
            if (code == RAID_DEVICE_UNSUPPORTED) {
                continue;
            }
            if (code == RAID_OK) {
                ids.push_back(entry.first);
                records.push_back(found);
            }
            AddQueryRow(entry.first, code, fw_order->GetErrorMsg());
        }
        utils_.PrintOobFwDeviceOrder(ids, records, result_page_);
        if (rows_.empty()) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowOobWithFirmwareDeviceOrder";
            return result::RaidNoFwDeviceOrderController;
        }
    } else {
        const RaidIndex record = GetRaidIndex(target_index_);
        if (record.index == -1) {
            AddRow(CtrlLabel(target_index_), NoControllerText(target_index_),
                   RAID_TARGET_NOT_FOUND);
        } else {
            // No family test on this road: the BMC tells a controller without the function.
            FWDevOrderController found;
            const RaidErrorCode code = fw_order->GetController(record.id, found);
            if (code == RAID_OK) {
                utils_.PrintOobFwDeviceOrder({target_index_}, {found}, result_page_);
            }
            AddQueryRow(target_index_, code, fw_order->GetErrorMsg());
        }
    }
    PrintResultTable(show_fw_device_order_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowOobWithFirmwareDeviceOrder";
    return SummaryResults();
}

std::uint32_t RaidClient::TurnOobFirmwareDeviceOrder(
    const std::vector<QuillonConnection::ConnectionInfo>& connections) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "TurnOobFirmwareDeviceOrder";
    Tell("\nraidconfig change firmware device order mode:");
    if (result_page_) {
        // "Frimware" is the page's title as readers of earlier pages know it: intended.
        result_page_->SetPageTitle("RaidConfig Change Frimware Device Order Mode");
    }
    const auto fw_order = std::make_shared<FWDevOrder>(
        connections.empty() ? QuillonConnection::ConnectionInfo() : connections.front());
    const RaidIndex record = GetRaidIndex(target_index_);
    if (record.index == -1) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
    } else {
        const RaidErrorCode code = fw_order->TurnFirmwareDeviceOrder(record.id, option_.mode_value);
        std::string text;
        if (code == RAID_OK) {
            text = OrderChangedText(target_index_);
        } else if (code == RAID_OK_UNCHANGED) {
            text = OrderUnchangedText(target_index_);
        } else if (code == RAID_TARGET_NOT_FOUND) {
            text = NoControllerText(target_index_);
        } else {
            text = fw_order->GetErrorMsg();
        }
        AddRow(CtrlLabel(target_index_), text, code);
    }
    PrintResultTable(change_fw_device_order_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "TurnOobFirmwareDeviceOrder";
    return SummaryResults();
}

} // namespace detail
} // namespace service
