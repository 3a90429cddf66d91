// The checker's tables, its entry operations, the duplicate test and the failure's line. The
// scope checks and value tests stand in raid_config_checker_scope.cpp.
#include "service/misc_raid_service/detail/raid_config_checker.hpp"

#include <algorithm>
#include <utility>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"

namespace service {
namespace detail {
namespace {

const char* const kDuplicated = "the values of disks or hot_spares are duplicated.";

} // namespace

RaidConfigChecker::RaidConfigChecker()
    : out_of_scope(" is out of scope"),
      raid_levels({"0", "1", "5", "1E", "6", "10", "50", "60", "00", "1triple", "10triple"}),
      vroc_raid_levels({"0", "1", "5", "10"}),
      m2_strip_sizes({"32K", "64K", "128K", "256K", "512K"}),
      vroc_strip_sizes({"4K", "8K", "16K", "32K", "64K", "128K"}), policy_codes({"0", "1", "2"}),
      oob_write_policy_codes({"1", "2", "3"}), io_policy_codes({"0", "1"}),
      access_policy_codes({"0", "2", "3"}), write_hole_policies({"Off", "Distributed"}),
      sw_strip_sizes({"4K", "8K", "16K", "32K", "64K"}),
      sw_cache_modes({"wt", "wo", "wb", "wa", "pt"}), sw_consistency_policies({"resync", "ppl"}) {}

bool RaidConfigChecker::CheckLsiCtrlSection(const CtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckLsiCtrlSection");
    if (!LsiScopeCheck(section)) {
        return false;
    }
    for (const CtrlVolSection& volume : section.volumes) {
        if (!DisksDupCheck(volume.disks, volume.hot_spares)) {
            return false;
        }
    }
    return true;
}

bool RaidConfigChecker::CheckOobCtrlSection(const CtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckOobCtrlSection");
    if (!OobLsiScopeCheck(section)) {
        return false;
    }
    for (const CtrlVolSection& volume : section.volumes) {
        // "REST" names the disks left over, so there are no ids to compare.
        if (volume.disks == "REST" || volume.disks == "rest") {
            continue;
        }
        if (!DisksDupCheck(volume.disks, volume.hot_spares)) {
            return false;
        }
    }
    return true;
}

bool RaidConfigChecker::CheckCtrlSectionCFC(const CtrlSection& section,
                                            const std::vector<std::string>& supported_levels,
                                            const std::string& vendor) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckCtrlSectionCFC");
    supported_raid_levels = supported_levels;
    if (!OobLsiScopeCheckCFC(section, vendor)) {
        return false;
    }
    for (const CtrlVolSection& volume : section.volumes) {
        // Intended: this family's hot spares stay out of the duplicate test, so a disk that is
        // both member and hot spare is not caught here; the backend is left to refuse it.
        if (!DisksDupCheck(volume.disks, "")) {
            return false;
        }
    }
    return true;
}

// Intended: no duplicate test, since an M.2 section names no disks.
bool RaidConfigChecker::CheckM2Section(const M2Section& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckM2Section");
    if (section.raid_level != "0" && section.raid_level != "1") {
        return OutOfScope("raid_level -> ", section.raid_level);
    }
    if (!IsVolNameValid(section.vol_name)) {
        return OutOfScope("vol_name -> ", section.vol_name);
    }
    // Intended: compared exactly, so "128k" and the empty text are refused here although the
    // other families take a lower-case "k"; the M.2 backend takes only these sizes.
    if (std::find(m2_strip_sizes.begin(), m2_strip_sizes.end(), section.strip_size) ==
        m2_strip_sizes.end()) {
        return OutOfScope("strip_size -> ", section.strip_size);
    }
    return true;
}

bool RaidConfigChecker::CheckMicroSection(const MicroCtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckMicroSection");
    if (!MicroScopeCheck(section)) {
        return false;
    }
    for (const MicroVolSection& volume : section.volumes) {
        if (!DisksDupCheck(volume.disks, volume.hot_spares)) {
            return false;
        }
    }
    return true;
}

bool RaidConfigChecker::CheckOobMicroSection(const OobMicroCtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckOobMicroSection");
    if (!OobMicroScopeCheck(section)) {
        return false;
    }
    for (const OobMicroVolSection& volume : section.volumes) {
        if (!DisksDupCheck(volume.disks, volume.hot_spares)) {
            return false;
        }
    }
    return true;
}

bool RaidConfigChecker::CheckOobVrocSection(const OobVrocCtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckOobVrocSection");
    if (!OobVrocScopeCheck(section)) {
        return false;
    }
    for (const OobVrocVolSection& volume : section.volumes) {
        if (!DisksDupCheck(volume.disks, "")) {
            return false;
        }
    }
    return true;
}

// Intended: no duplicate test here, and global_hot_spares is compared with nothing; the
// backend refuses what it cannot do.
bool RaidConfigChecker::CheckVroc_winSection(const VrocWinCtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::CheckVroc_winSection");
    if (!CheckGlobalHotSpares(section.global_hot_spares)) {
        return false;
    }
    for (const VrocWinVolSection& volume : section.volumes) {
        if (!IsVrocDiskList(volume.disks)) {
            return OutOfScope("disks -> ", volume.disks);
        }
        if (!IsVolNameValid(volume.vol_name)) {
            return OutOfScope("vol_name -> ", volume.vol_name);
        }
        // The level was read as a number; its decimal text is what the lists and lines use.
        const std::string level = std::to_string(volume.raid_level);
        if (!IsVrocRaidLevelValid(level)) {
            return OutOfScope("raid_level -> ", level);
        }
        if (!IsVrocSupportVolCapacity(volume.vol_capacity)) {
            return OutOfScope("vol_capacity -> ", volume.vol_capacity);
        }
        // A mirror has no strips: level 1 ignores vol_strip_size, whatever it holds.
        if (volume.raid_level != 1 && !volume.vol_strip_size.empty() &&
            !IsVrocStripSize(volume.vol_strip_size)) {
            return OutOfScope("vol_strip_size -> ", volume.vol_strip_size);
        }
        if (volume.raid_level == 5 &&
            std::find(write_hole_policies.begin(), write_hole_policies.end(),
                      volume.RAID_write_hole) == write_hole_policies.end()) {
            return OutOfScope("RAID_write_hole -> ", volume.RAID_write_hole);
        }
        std::string message;
        if (!IsVrocSupportedDisknum(level, volume.disks, message)) {
            error_text = message;
            RAIDCFG_LOG(1) << message;
            return false;
        }
    }
    return true;
}

std::string RaidConfigChecker::TakeErrorText() {
    return std::exchange(error_text, std::string());
}

bool RaidConfigChecker::DisksDupCheck(const std::string& disks, const std::string& hot_spares) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::DisksDupCheck");
    std::vector<std::string> ids;
    std::vector<std::string> spans;
    boost::algorithm::split(spans, disks, boost::algorithm::is_any_of(":"));
    for (const std::string& span : spans) {
        std::vector<std::string> pieces;
        boost::algorithm::split(pieces, span, boost::algorithm::is_any_of(","));
        ids.insert(ids.end(), pieces.begin(), pieces.end());
    }
    if (!hot_spares.empty()) {
        std::vector<std::string> pieces;
        boost::algorithm::split(pieces, hot_spares, boost::algorithm::is_any_of(","));
        ids.insert(ids.end(), pieces.begin(), pieces.end());
    }
    // Intended: ids compare as text, so "01" and "1" count as two disks here; what an id
    // means is the backend's to judge.
    std::sort(ids.begin(), ids.end());
    if (std::adjacent_find(ids.begin(), ids.end()) == ids.end()) {
        return true;
    }
    error_text = kDuplicated;
    return false;
}

bool RaidConfigChecker::OutOfScope(const char* label, const std::string& value) {
    error_text = label + value + out_of_scope;
    return false;
}

bool RaidConfigChecker::CheckGlobalHotSpares(const std::string& global_hot_spares) {
    if (!global_hot_spares.empty() && !IsDigitList(global_hot_spares)) {
        return OutOfScope("global_hot_spares -> ", global_hot_spares);
    }
    return true;
}

} // namespace detail
} // namespace service
