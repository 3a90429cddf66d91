// The actions of the in-band road with targets: each checks the options in its own order, asks
// for a confirmation unless `assume_yes`, lets the in-band driver do the work and reports its
// rows.
#include "service/misc_raid_service/detail/inband_raid.hpp"

#include <fstream>
#include <iostream>

#include "backend/raid_configuration.hpp"
#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/action_outcome.hpp"
#include "service/misc_raid_service/detail/inband_policy.hpp"
#include "service/misc_raid_service/detail/raid_config_parser.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::RaidConfig::RAID_BAD_PARAMETER;
using Quillon::RaidConfig::RAID_FUNCTION_UNSUPPORTED;
using Quillon::RaidConfig::RaidConfiguration;
using Quillon::RaidConfig::RaidTarget;

// A message for the user: standard output and the log at level 3.
void Tell(const std::string& text) {
    std::cout << text << std::endl;
    RAIDCFG_LOG(3) << text;
}

} // namespace

InbandRaid::InbandRaid(const RaidConfig::RaidConfigOption& option)
    : option_(option), input_(&std::cin) {}

std::uint32_t InbandRaid::Show() {
    RAIDCFG_TRACE("service::detail::InbandRaid::Show");
    // The heading is printed whatever console_output says: this road has always shown it.
    Tell("\nraidconfig show:");
    RaidConfiguration configuration(RaidOptionProcessor().ParseInbandTargets(option_.target));
    Tables tables;
    configuration.GetRaidTableInfo(tables);
    configuration.GetRaidResults(results_);
    if (results_.empty()) {
        return result::RaidNoControllers;
    }
    PrintTable(tables);
    PrintResults(results_, "Show Configuration Result");
    // Intended: a file that cannot be written costs the file only; the summary stands.
    SaveInbandRaidToXML(tables);
    return SummaryResults(results_);
}

std::uint32_t InbandRaid::Add() {
    RAIDCFG_TRACE("service::detail::InbandRaid::Add");
    Tell("\nraidconfig add:");
    const RaidOptionProcessor processor;
    std::string path;
    if (!processor.GetPolicyFile(option_.policy_file, path)) {
        return result::InvalidParameter;
    }
    const std::uint32_t shown = ShowPolicyFile(path);
    if (shown != result::Success) {
        return shown;
    }
    RaidConfigParser parser;
    if (!parser.ReadIniFile(path)) {
        return result::RaidIniFileError;
    }
    // Intended: no full stop, unlike the prompt of the road without targets; scripts that answer
    // this road's prompt match its text as it stands.
    if (!option_.assume_yes &&
        !ConfirmOperation("Are you sure you want to continue creating the config")) {
        return result::Success;
    }
    RaidConfiguration configuration(processor.ParseInbandTargets(option_.target));
    // The rows tell what happened; the driver's value adds nothing to them.
    configuration.RaidAdd(InbandPolicy(parser));
    configuration.GetRaidResults(results_);
    if (results_.empty()) {
        return result::RaidIniFileError;
    }
    PrintResults(results_, "Add Configuration Result");
    return SummaryResults(results_);
}

std::uint32_t InbandRaid::Save() {
    RAIDCFG_TRACE("service::detail::InbandRaid::Save");
    Tell("\nraidconfig save:");
    const RaidOptionProcessor processor;
    std::string path;
    if (!processor.GetPolicyFile(option_.policy_file, path)) {
        return result::InvalidParameter;
    }
    // save_to_output_dir has no effect on this road: the path is taken as given.
    RAIDCFG_LOG(3) << "the file path is: " << path;
    RaidConfiguration configuration(processor.ParseInbandTargets(option_.target));
    std::string text;
    configuration.GetConfigString(text);
    configuration.GetRaidResults(results_);
    if (results_.empty()) {
        return result::RaidNoPolicyToSave;
    }
    if (!text.empty()) {
        std::ofstream file(path, std::ios::out | std::ios::trunc | std::ios::binary);
        if (!file.is_open()) {
            RAIDCFG_LOG(1) << "The file '" << path << "' can't be opened.";
            return result::FailedOpenFile;
        }
        file << text;
    }
    PrintResults(results_, "Save Configuration Result");
    return SummaryResults(results_);
}

std::uint32_t InbandRaid::Clear() {
    RAIDCFG_TRACE("service::detail::InbandRaid::Clear");
    Tell("\nraidconfig clear:");
    const RaidOptionProcessor processor;
    RaidTarget::Type type = RaidTarget::INVALID;
    if (!option_.volume_ids.empty()) {
        // Volumes belong to one controller: a list of targets or a word cannot name them.
        type = processor.ClassifyTarget(option_.target, true);
        if (type == RaidTarget::INVALID) {
            const std::string text =
                "target must be specified by only one target when volume is specified.";
            std::cout << text << std::endl;
            RAIDCFG_LOG(1) << text;
            return result::InvalidParameter;
        }
    }
    if (!option_.assume_yes &&
        !ConfirmOperation("This operation will remove all the data on your disk(s), are you sure "
                          "you want to continue clearing the RAID.")) {
        return result::Success;
    }
    RaidConfiguration configuration(processor.ParseInbandTargets(option_.target));
    // "all", like an empty option, names no volume: the whole configuration is cleared.
    const std::vector<int> ids = processor.ParseIdList(option_.volume_ids);
    if (!ids.empty()) {
        configuration.RaidRemoveVol(type, ids);
        configuration.GetRaidResults(results_);
    } else {
        configuration.RaidClear();
        configuration.GetRaidResults(results_);
        if (results_.empty()) {
            return result::RaidNoControllers;
        }
    }
    PrintResults(results_, "Clear Configuration Result");
    return SummaryResults(results_);
}

std::uint32_t InbandRaid::AddHotSpare() {
    RAIDCFG_TRACE("service::detail::InbandRaid::AddHotSpare");
    Tell("\nraidconfig add hot spare:");
    // Intended: the prompt comes before the target is judged, unlike clear; answering "no" to a
    // wrong target is no failure.
    if (!option_.assume_yes &&
        !ConfirmOperation("Are you sure you want to continue doing add hot spare operation.")) {
        return result::Success;
    }
    const RaidOptionProcessor processor;
    const RaidTarget::Type type = processor.ClassifyTarget(option_.target, true);
    if (type == RaidTarget::INVALID) {
        RAIDCFG_LOG(4) << "the target must name one controller: " << option_.target;
        return result::InvalidParameter;
    }
    const std::vector<RaidTarget> targets = processor.ParseInbandTargets(option_.target);
    const std::vector<std::string> disks = processor.ParseDiskList(option_.disk_ids);
    const std::vector<std::string> groups = processor.ParseStringList(option_.disk_group_ids);
    RaidConfiguration configuration(targets);
    const int code = configuration.RaidAddHotSpare(type, disks, groups);
    if (code == RAID_BAD_PARAMETER) {
        return result::InvalidParameter;
    }
    if (code == RAID_FUNCTION_UNSUPPORTED) {
        return result::RaidBadDgOption;
    }
    configuration.GetRaidResults(results_);
    PrintResults(results_, "Add Hot Spare Result");
    return SummaryResults(results_);
}

std::uint32_t InbandRaid::RemoveHotSpare() {
    RAIDCFG_TRACE("service::detail::InbandRaid::RemoveHotSpare");
    Tell("\nraidconfig remove hot spare:");
    if (!option_.assume_yes &&
        !ConfirmOperation("Are you sure you want to continue doing remove hot spare operation.")) {
        return result::Success;
    }
    const RaidOptionProcessor processor;
    const RaidTarget::Type type = processor.ClassifyTarget(option_.target, true);
    if (type == RaidTarget::INVALID) {
        RAIDCFG_LOG(4) << "the target must name one controller: " << option_.target;
        return result::InvalidParameter;
    }
    const std::vector<RaidTarget> targets = processor.ParseInbandTargets(option_.target);
    const std::vector<std::string> disks = processor.ParseDiskList(option_.disk_ids);
    RaidConfiguration configuration(targets);
    if (configuration.RaidRemoveHotSpare(type, disks) == RAID_BAD_PARAMETER) {
        return result::InvalidParameter;
    }
    configuration.GetRaidResults(results_);
    PrintResults(results_, "Remove Hot Spare Result");
    return SummaryResults(results_);
}

void InbandRaid::TakeResults(std::map<std::string, std::string>& results) const {
    RAIDCFG_TRACE("service::detail::InbandRaid::TakeResults");
    for (const RaidResult& row : results_) {
        results[row.device] = row.result;
    }
}

bool InbandRaid::ConfirmOperation(const std::string& prompt) {
    RAIDCFG_TRACE("service::detail::InbandRaid::ConfirmOperation");
    return ActionOutcome::Confirm(*input_, prompt);
}

} // namespace detail
} // namespace service
