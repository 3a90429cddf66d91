// The fast initialisation action: volumes of out-of-band LSI controllers start a fast
// initialisation, one row per volume. Every other road refuses the action before it gets here.
#include <cstdint>
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

} // namespace

std::uint32_t RaidClient::FastInit() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::FastInit";
    if (option_.console_output) {
        Tell("\nraidconfig fast init:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig Init");
    }
    if (option_.target.empty()) {
        const std::uint32_t value = FastInitIndex();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInit";
        return value;
    }
    const RaidOptionProcessor processor;
    // Only one out-of-band LSI controller can be named; the target is judged as an out-of-band
    // text whatever the client is, and before the user is asked.
    if (processor.ClassifyTarget(option_.target, false) != RaidTarget::OOB_LSI) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInit";
        return result::FunctionNotSupported;
    }
    if (!option_.assume_yes && !ConfirmOperation(fast_init_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInit";
        return result::Success;
    }
    const int controller = processor.StringToInt(option_.target);
    std::vector<int> volumes = processor.ParseIdList(option_.volume_ids);
    const std::shared_ptr<Raid> backend = GetRaidBackend(RaidTarget::OOB_LSI);
    if (volumes.empty()) {
        // Intended: the listing's own failure is not reported; an empty list is all that counts.
        static_cast<void>(backend->GetAllVolumes(controller, volumes));
        if (volumes.empty()) {
            RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInit";
            return result::RaidNoVolumes;
        }
    }
    for (const int volume : volumes) {
        const std::string device =
            "vol[" + std::to_string(controller) + "-" + std::to_string(volume) + "]";
        const RaidErrorCode code = backend->FastInit(controller, volume);
        AddRow(device, TargetRowText(code, device, *backend), code);
    }
    PrintResultTable(fast_init_title_);
    const std::uint32_t value = SummaryResults();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInit";
    return value;
}

std::uint32_t RaidClient::FastInitIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::FastInitIndex";
    const auto found = index_map_.find(target_index_);
    if (found == index_map_.end()) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
        PrintResultTable(fast_init_title_);
        const std::uint32_t value = SummaryResults();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInitIndex";
        return value;
    }
    const RaidIndex& record = found->second;
    if (record.type != RaidTarget::OOB_LSI) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInitIndex";
        return result::FunctionNotSupported;
    }
    if (!option_.assume_yes && !ConfirmOperation(fast_init_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInitIndex";
        return result::Success;
    }
    Raid& backend = *record.backend;
    std::vector<int> volumes = RaidOptionProcessor().ParseIdList(option_.volume_ids);
    if (volumes.empty()) {
        // Intended, as on the named road: only the list counts, not the listing's code.
        static_cast<void>(backend.GetAllVolumes(record.id, volumes));
        if (volumes.empty()) {
            RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInitIndex";
            return result::RaidNoVolumes;
        }
    }
    for (const int volume : volumes) {
        const RaidErrorCode code = backend.FastInit(record.id, volume);
        std::string text;
        if (code == RAID_OK) {
            text = success_text_;
        } else if (code == RAID_TARGET_NOT_FOUND) {
            text = NoVolumeText(volume);
        } else {
            text = TakeError(backend);
        }
        AddRow(VolLabel(target_index_, volume), text, code);
    }
    PrintResultTable(fast_init_title_);
    const std::uint32_t value = SummaryResults();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::FastInitIndex";
    return value;
}

} // namespace detail
} // namespace service
