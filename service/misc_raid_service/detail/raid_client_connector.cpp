// The changemode action: connectors of a Microchip controller set to the mode the user names,
// on the named-target road (the LSI/Microchip numbers) or on the flat-number road.
#include <string>
#include <vector>

#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

} // namespace

std::uint32_t RaidClient::ChangeConnectorMode() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ChangeConnectorMode";
    if (option_.console_output) {
        Tell("\nraidconfig change connector mode:");
    }
    // Intended: the prompt comes before every check, so a refused controller is only told after
    // the user's yes.
    if (!option_.assume_yes && !ConfirmOperation(change_connector_mode_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ChangeConnectorMode";
        return result::Success;
    }
    if (option_.target.empty()) {
        const std::uint32_t value = ChangeConnectorModeIndex();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ChangeConnectorMode";
        return value;
    }
    const RaidOptionProcessor processor;
    const int number = processor.StringToInt(option_.target);
    const auto found = lsi_microchip_index_map_.find(number);
    if (found == lsi_microchip_index_map_.end()) {
        const std::string device = "ctrl[" + std::to_string(number) + "]";
        AddRow(device, "The target " + device + " does not exist.", RAID_TARGET_NOT_FOUND);
        PrintResultTable(change_connector_mode_title_);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ChangeConnectorMode";
        return SummaryResults();
    }
    // The map holds LSI and Microchip controllers; only Microchip ones have connector modes.
    if (found->second.type == RaidTarget::LSI) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ChangeConnectorMode";
        return result::FunctionNotSupported;
    }
    const RaidIndex& record = found->second;
    for (const int connector : processor.ParseIdList(option_.connector_ids)) {
        const std::string device = "Connector ID " + std::to_string(connector);
        // The mode goes as written; the backend tells a word it does not know.
        const RaidErrorCode code = record.backend->RaidChangeConnectorMode(
            record.id, std::to_string(connector), option_.mode_value);
        std::string text;
        if (code == RAID_OK) {
            text = success_text_;
        } else if (code == RAID_TARGET_NOT_FOUND) {
            text = "The target " + device + " does not exist.";
        } else {
            text = TakeError(*record.backend);
        }
        AddRow(device, text, code);
    }
    PrintResultTable(change_connector_mode_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ChangeConnectorMode";
    return SummaryResults();
}

std::uint32_t RaidClient::ChangeConnectorModeIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ChangeConnectorModeIndex";
    const auto found = index_map_.find(target_index_);
    if (found == index_map_.end()) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
    } else if (found->second.type != RaidTarget::MICROCHIP) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ChangeConnectorModeIndex";
        return result::FunctionNotSupported;
    } else {
        const RaidIndex& record = found->second;
        for (const int connector : RaidOptionProcessor().ParseIdList(option_.connector_ids)) {
            const RaidErrorCode code = record.backend->RaidChangeConnectorMode(
                record.id, std::to_string(connector), option_.mode_value);
            std::string text;
            if (code == RAID_OK) {
                text = success_text_;
            } else if (code == RAID_TARGET_NOT_FOUND) {
                text = NoConnectorText(connector);
            } else {
                text = TakeError(*record.backend);
            }
            AddRow(ConnectorLabel(target_index_, connector), text, code);
        }
    }
    PrintResultTable(change_connector_mode_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ChangeConnectorModeIndex";
    return SummaryResults();
}

} // namespace detail
} // namespace service
