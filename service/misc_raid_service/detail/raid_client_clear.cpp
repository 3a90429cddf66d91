// The clear action: whole controllers wiped, or named volumes taken away. There is no policy file
// and no checker; the user's values go straight to the backends, and each controller or volume
// touched leaves one row.
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <memory>
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

// A controller named by its own id: "ctrl[3]", or "M2-3" for an M.2 controller.
std::string TargetControllerLabel(RaidTarget::Type type, int id) {
    if (type == RaidTarget::OOB_M2) {
        return "M2-" + std::to_string(id);
    }
    return "ctrl[" + std::to_string(id) + "]";
}

// A volume named by its controller's own id: "vol[3-1]", or "M2-vol[6-0]" on an M.2 controller.
std::string TargetVolumeLabel(RaidTarget::Type type, int controller, int volume) {
    const std::string pair =
        "vol[" + std::to_string(controller) + "-" + std::to_string(volume) + "]";
    return type == RaidTarget::OOB_M2 ? "M2-" + pair : pair;
}

} // namespace

std::string RaidClient::TargetRowText(RaidErrorCode code, const std::string& device,
                                      Raid& backend) const {
    if (code == RAID_OK) {
        return success_text_;
    }
    if (code == RAID_TARGET_NOT_FOUND) {
        return "The target " + device + " does not exist.";
    }
    return TakeError(backend);
}

std::uint32_t RaidClient::Clear() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::Clear";
    if (option_.console_output) {
        Tell("\nraidconfig clear:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig Clear");
    }
    if (option_.target.empty()) {
        const std::uint32_t value = ClearIndex();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Clear";
        return value;
    }
    const RaidOptionProcessor processor;
    // Volumes belong to one controller: a list of targets, or "all", cannot name them.
    if (!option_.volume_ids.empty() &&
        processor.ClassifyTarget(option_.target, local_) == RaidTarget::INVALID) {
        const char* refusal =
            "target must be specified by only one target when volume is specified.";
        if (option_.console_output) {
            Tell(refusal);
        } else {
            RAIDCFG_LOG(3) << refusal;
        }
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Clear";
        return result::InvalidParameter;
    }
    if (!option_.assume_yes && !ConfirmOperation(clear_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Clear";
        return result::Success;
    }
    // "all", like an empty option, names no volume: the whole controller is cleared.
    const std::uint32_t value =
        processor.ParseIdList(option_.volume_ids).empty() ? ClearConfig() : RemoveVolume();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Clear";
    return value;
}

std::uint32_t RaidClient::ClearConfig() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ClearConfig";
    for (const RaidTarget& target : targets_) {
        const std::shared_ptr<Raid> backend = GetRaidBackend(target.type);
        std::vector<int> ids = target.ids;
        if (ids.empty()) {
            backend->GetControllerIds(ids);
        }
        for (const int id : ids) {
            const std::string device = TargetControllerLabel(target.type, id);
            const RaidErrorCode code = backend->ClearConfig(id);
            AddRow(device, TargetRowText(code, device, *backend), code);
        }
    }
    if (rows_.empty()) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ClearConfig";
        return result::RaidNoControllers;
    }
    PrintResultTable(clear_title_);
    const std::uint32_t value = SummaryResults();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ClearConfig";
    return value;
}

std::uint32_t RaidClient::RemoveVolume() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::RemoveVolume";
    // Clear lets volumes through with a single target only, so the first id is the controller.
    const RaidTarget& target = targets_.front();
    const int controller = target.ids.front();
    const std::vector<int> volumes = RaidOptionProcessor().ParseIdList(option_.volume_ids);
    const std::shared_ptr<Raid> backend = GetRaidBackend(target.type);
    for (const int volume : volumes) {
        const std::string device = TargetVolumeLabel(target.type, controller, volume);
        const RaidErrorCode code = backend->RemoveVolume(controller, volume);
        AddRow(device, TargetRowText(code, device, *backend), code);
    }
    PrintResultTable(clear_title_);
    const std::uint32_t value = SummaryResults();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveVolume";
    return value;
}

std::uint32_t RaidClient::ClearIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ClearIndex";
    // An empty ctrl_index leaves -1, which names no controller: there is no road that clears
    // every controller by number, so that case ends in the row of a missing "ctrl-1".
    const auto found = index_map_.find(target_index_);
    if (found == index_map_.end()) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
        PrintResultTable(clear_title_);
        const std::uint32_t value = SummaryResults();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ClearIndex";
        return value;
    }
    if (!option_.assume_yes && !ConfirmOperation(clear_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ClearIndex";
        return result::Success;
    }
    const RaidIndex& record = found->second;
    Raid& backend = *record.backend;
    std::vector<int> volumes = RaidOptionProcessor().ParseIdList(option_.volume_ids);
    if (!volumes.empty()) {
        // Intended: the out-of-band Microchip and VROC controllers take their volumes from the
        // highest number down; every other family goes up.
        if (record.type == RaidTarget::OOB_MICROCHIP || record.type == RaidTarget::OOB_VROC) {
            std::reverse(volumes.begin(), volumes.end());
        }
        for (const int volume : volumes) {
            const RaidErrorCode code = backend.RemoveVolume(record.id, volume);
            std::string text;
            if (code == RAID_OK) {
                text = success_text_;
            } else if (code == RAID_TARGET_NOT_FOUND) {
                text = NoVolumeText(volume);
            } else {
                // Intended: a volume's failure text keeps the controller's own id; only a whole
                // clear below speaks of the flat number.
                text = TakeError(backend);
            }
            AddRow(VolLabel(target_index_, volume), text, code);
        }
    } else {
        const RaidErrorCode code = backend.ClearConfig(record.id);
        std::string text;
        if (code == RAID_OK) {
            text = success_text_;
        } else if (code == RAID_TARGET_NOT_FOUND) {
            text = NoControllerText(target_index_);
        } else {
            text = ReplaceControllerId(TakeError(backend), record.id, target_index_);
        }
        AddRow(CtrlLabel(target_index_), text, code);
    }
    PrintResultTable(clear_title_);
    const std::uint32_t value = SummaryResults();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ClearIndex";
    return value;
}

} // namespace detail
} // namespace service
