// The addhsp and rmhsp actions: disks made global or dedicated hot spares and taken back, on the
// named-target road (one LSI controller reached out-of-band) or on the flat-number road.
#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::RaidConfig::Raid;
using Quillon::RaidConfig::RAID_ADDHSP_REFUSED;
using Quillon::RaidConfig::RAID_FUNCTION_UNSUPPORTED;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_RMHSP_REFUSED;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

// A disk of a named target: "disk[<controller>-<disk>]".
std::string TargetDiskLabel(int controller, const std::string& disk) {
    return "disk[" + std::to_string(controller) + "-" + disk + "]";
}

// Only digits, or nothing at all.
bool IsDigits(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char letter) { return std::isdigit(letter) != 0; });
}

// The row text of an add on the named-target road.
std::string TargetAddText(RaidErrorCode code, const std::string& device, Raid& backend,
                          const std::string& success) {
    switch (code) {
    case RAID_OK:
        return success;
    case RAID_TARGET_NOT_FOUND:
        return "The target " + device + " does not exist.";
    case RAID_ADDHSP_REFUSED:
        return "The target " + device + " can't do addhsp operation";
    default:
        return RaidClient::TakeError(backend);
    }
}

// The row text of a removal on the named-target road. Intended: unlike an add, the refusal names
// the bare disk and not the device.
std::string TargetRemoveText(RaidErrorCode code, const std::string& device, const std::string& disk,
                             Raid& backend, const std::string& success) {
    switch (code) {
    case RAID_OK:
        return success;
    case RAID_TARGET_NOT_FOUND:
        return "The target " + device + " does not exist.";
    case RAID_RMHSP_REFUSED:
        return "The disk " + disk + " can't do rmhsp operation";
    default:
        return RaidClient::TakeError(backend);
    }
}

// The row text on the flat-number road; refused is the code that is the action's own refusal.
std::string IndexText(RaidErrorCode code, RaidErrorCode refused, const std::string& disk,
                      Raid& backend, const std::string& success) {
    if (code == RAID_OK) {
        return success;
    }
    if (code == RAID_TARGET_NOT_FOUND) {
        return RaidClient::NoDiskText(disk);
    }
    if (code == refused) {
        return "The disk " + disk +
               (refused == RAID_ADDHSP_REFUSED ? " can't do addhsp operation"
                                               : " can't do rmhsp operation");
    }
    if (code == RAID_FUNCTION_UNSUPPORTED) {
        return "The controller does not support.";
    }
    return RaidClient::TakeError(backend);
}

bool IsM2(RaidTarget::Type type) {
    return type == RaidTarget::M2 || type == RaidTarget::OOB_M2;
}

bool IsVroc(RaidTarget::Type type) {
    return type == RaidTarget::VROC_WIN || type == RaidTarget::OOB_VROC;
}

} // namespace

std::uint32_t RaidClient::AddHotSpare() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddHotSpare";
    if (option_.console_output) {
        Tell("\nraidconfig add hot spare:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig AddHotSpare");
    }
    std::uint32_t value = result::Success;
    if (!option_.assume_yes && !ConfirmOperation(add_hot_spare_prompt_)) {
        value = result::Success;
    } else if (option_.target.empty()) {
        value = AddHotSpareIndex();
    } else if (!option_.disk_group_ids.empty()) {
        value = AddDedicatedHotSpare();
    } else {
        value = AddGlobalHotSpare();
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddHotSpare";
    return value;
}

std::uint32_t RaidClient::AddGlobalHotSpare() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddGlobalHotSpare";
    const RaidOptionProcessor processor;
    // A local client, lists, "all" and M.2 names all fall here: one LSI number only.
    if (processor.ClassifyTarget(option_.target, local_) != RaidTarget::OOB_LSI) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddGlobalHotSpare";
        return result::FunctionNotSupported;
    }
    const int controller = processor.StringToInt(option_.target);
    // The number list is ascending and without duplicates.
    const std::vector<int> disks = processor.ParseIdList(option_.disk_ids);
    const std::shared_ptr<Raid> backend = GetRaidBackend(RaidTarget::OOB_LSI);
    for (const int number : disks) {
        const std::string disk = std::to_string(number);
        const std::string device = TargetDiskLabel(controller, disk);
        const RaidErrorCode code = backend->AddGlobalHotSpare(controller, disk);
        AddRow(device, TargetAddText(code, device, *backend, success_text_), code);
    }
    PrintResultTable(add_hot_spare_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddGlobalHotSpare";
    return SummaryResults();
}

std::uint32_t RaidClient::AddDedicatedHotSpare() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddDedicatedHotSpare";
    const RaidOptionProcessor processor;
    if (processor.ClassifyTarget(option_.target, local_) != RaidTarget::OOB_LSI) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddDedicatedHotSpare";
        return result::FunctionNotSupported;
    }
    const int controller = processor.StringToInt(option_.target);
    // Intended: the disks keep their order and duplicates here, so a disk named twice is asked
    // for twice.
    const std::vector<std::string> disks = processor.ParseDiskList(option_.disk_ids);
    const std::vector<std::string> groups = processor.ParseStringList(option_.disk_group_ids);
    const std::shared_ptr<Raid> backend = GetRaidBackend(RaidTarget::OOB_LSI);
    for (const std::string& disk : disks) {
        const std::string device = TargetDiskLabel(controller, disk);
        const RaidErrorCode code = backend->AddDedicatedHotSpare(controller, disk, groups);
        AddRow(device, TargetAddText(code, device, *backend, success_text_), code);
    }
    PrintResultTable(add_hot_spare_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddDedicatedHotSpare";
    return SummaryResults();
}

std::uint32_t RaidClient::AddHotSpareIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddHotSpareIndex";
    std::uint32_t value = result::Success;
    const auto found = index_map_.find(target_index_);
    if (found == index_map_.end()) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
        PrintResultTable(add_hot_spare_title_);
        value = SummaryResults();
    } else if (IsM2(found->second.type)) {
        value = result::FunctionNotSupported;
    } else if (IsVroc(found->second.type)) {
        // Software RAID has no dedicated hot spares.
        value = option_.disk_group_ids.empty() ? AddGlobalHotSpareIndex() : result::RaidBadDgOption;
    } else {
        value =
            option_.disk_group_ids.empty() ? AddGlobalHotSpareIndex() : AddDedicatedHotSpareIndex();
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddHotSpareIndex";
    return value;
}

std::uint32_t RaidClient::AddGlobalHotSpareIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddGlobalHotSpareIndex";
    const RaidIndex record = GetRaidIndex(target_index_);
    // Intended: the disk texts go to the backend as written, without the digit check of the
    // dedicated form; the backend judges them.
    const std::vector<std::string> disks = RaidOptionProcessor().ParseDiskList(option_.disk_ids);
    for (const std::string& disk : disks) {
        const RaidErrorCode code = record.backend->AddGlobalHotSpare(record.id, disk);
        AddRow(DiskLabel(target_index_, disk),
               IndexText(code, RAID_ADDHSP_REFUSED, disk, *record.backend, success_text_), code);
    }
    PrintResultTable(add_hot_spare_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddGlobalHotSpareIndex";
    return SummaryResults();
}

std::uint32_t RaidClient::AddDedicatedHotSpareIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddDedicatedHotSpareIndex";
    const RaidIndex record = GetRaidIndex(target_index_);
    const RaidOptionProcessor processor;
    const std::vector<std::string> disks = processor.ParseDiskList(option_.disk_ids);
    const std::vector<std::string> groups = processor.ParseStringList(option_.disk_group_ids);
    if (!std::all_of(disks.begin(), disks.end(), IsDigits) ||
        !std::all_of(groups.begin(), groups.end(), IsDigits)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddDedicatedHotSpareIndex";
        return result::InvalidParameter;
    }
    for (const std::string& disk : disks) {
        const RaidErrorCode code = record.backend->AddDedicatedHotSpare(record.id, disk, groups);
        AddRow(DiskLabel(target_index_, disk),
               IndexText(code, RAID_ADDHSP_REFUSED, disk, *record.backend, success_text_), code);
    }
    PrintResultTable(add_hot_spare_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddDedicatedHotSpareIndex";
    return SummaryResults();
}

std::uint32_t RaidClient::RemoveHotSpare() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::RemoveHotSpare";
    if (option_.console_output) {
        Tell("\nraidconfig remove hot spare:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig RemoveHotSpare");
    }
    if (!option_.assume_yes && !ConfirmOperation(remove_hot_spare_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpare";
        return result::Success;
    }
    if (option_.target.empty()) {
        const std::uint32_t value = RemoveHotSpareIndex();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpare";
        return value;
    }
    const RaidOptionProcessor processor;
    if (processor.ClassifyTarget(option_.target, local_) != RaidTarget::OOB_LSI) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpare";
        return result::FunctionNotSupported;
    }
    const int controller = processor.StringToInt(option_.target);
    const std::vector<std::string> disks = processor.ParseDiskList(option_.disk_ids);
    const std::shared_ptr<Raid> backend = GetRaidBackend(RaidTarget::OOB_LSI);
    for (const std::string& disk : disks) {
        const std::string device = TargetDiskLabel(controller, disk);
        const RaidErrorCode code = backend->RemoveHotSpare(controller, disk);
        AddRow(device, TargetRemoveText(code, device, disk, *backend, success_text_), code);
    }
    PrintResultTable(remove_hot_spare_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpare";
    return SummaryResults();
}

std::uint32_t RaidClient::RemoveHotSpareIndex() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::RemoveHotSpareIndex";
    const auto found = index_map_.find(target_index_);
    if (found == index_map_.end()) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
        PrintResultTable(remove_hot_spare_title_);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpareIndex";
        return SummaryResults();
    }
    if (IsM2(found->second.type)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpareIndex";
        return result::FunctionNotSupported;
    }
    const RaidIndex& record = found->second;
    const std::vector<std::string> disks = RaidOptionProcessor().ParseDiskList(option_.disk_ids);
    if (!std::all_of(disks.begin(), disks.end(), IsDigits)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpareIndex";
        return result::InvalidParameter;
    }
    for (const std::string& disk : disks) {
        const RaidErrorCode code = record.backend->RemoveHotSpare(record.id, disk);
        AddRow(DiskLabel(target_index_, disk),
               IndexText(code, RAID_RMHSP_REFUSED, disk, *record.backend, success_text_), code);
    }
    PrintResultTable(remove_hot_spare_title_);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RemoveHotSpareIndex";
    return SummaryResults();
}

} // namespace detail
} // namespace service
