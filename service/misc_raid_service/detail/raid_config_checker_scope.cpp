// The per-family scope checks of the checker and the value tests they apply.
#include <algorithm>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/regex.hpp>

#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"
#include "service/misc_raid_service/detail/raid_config_checker.hpp"

namespace service {
namespace detail {
namespace {

// True when text has no character but '0' to '9'. The empty text passes, intended: an empty
// piece of a list ("1,,2" or a trailing ",") is let through to the backend.
bool IsAllDigits(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool IsOneOf(const std::vector<std::string>& list, const std::string& value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

// The pieces of text between any of separators; two separators in a row give an empty piece.
std::vector<std::string> SplitKept(const std::string& text, const char* separators) {
    std::vector<std::string> pieces;
    boost::algorithm::split(pieces, text, boost::algorithm::is_any_of(separators));
    return pieces;
}

bool AllDigitPieces(const std::vector<std::string>& pieces) {
    return std::all_of(pieces.begin(), pieces.end(), IsAllDigits);
}

// Whole-value match of a pattern in the default (Perl) syntax, built anew for each test.
bool MatchesWhole(const std::string& value, const char* pattern) {
    return boost::regex_match(value, boost::regex(pattern));
}

// The bar inside "[M|G]" and "[k|K]" below is one more member of the character class, so
// "100|B" and "128|" pass. Intended: policy files written against these tests keep passing.
const char* const kVolumeSizePattern = R"((\d+(\.\d+)?)[M|G]B)";
const char* const kPercentPattern = R"(\d+(\.\d+)?%)";
const char* const kStripSizePattern = R"(\d+[k|K])";
const char* const kCfcStripSizePattern = R"(\d+(k|K|mb|MB))";
const char* const kVolCapacityPattern = R"(\d+(\.\d+)?GB)";
const char* const kVolNameCharPattern = R"(\w|-|\.)";

} // namespace

bool RaidConfigChecker::LsiScopeCheck(const CtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::LsiScopeCheck");
    if (!CheckGlobalHotSpares(section.global_hot_spares)) {
        return false;
    }
    for (const CtrlVolSection& volume : section.volumes) {
        if (!IsDisksValid(volume.disks)) {
            return OutOfScope("disks -> ", volume.disks);
        }
        if (!volume.hot_spares.empty() && !IsDigitList(volume.hot_spares)) {
            return OutOfScope("hot_spares -> ", volume.hot_spares);
        }
        if (!IsRaidLevelValid(volume.raid_level)) {
            return OutOfScope("raid_level -> ", volume.raid_level);
        }
        if (!IsVolNameValid(volume.vol_name)) {
            return OutOfScope("vol_name -> ", volume.vol_name);
        }
        if (!volume.write_policy.empty() && !IsPolicyValid(volume.write_policy)) {
            return OutOfScope("write_policy -> ", volume.write_policy);
        }
        if (!volume.read_policy.empty() && !IsPolicyValid(volume.read_policy)) {
            return OutOfScope("read_policy -> ", volume.read_policy);
        }
        if (!volume.io_policy.empty() && !IsIoPolicyValid(volume.io_policy)) {
            return OutOfScope("io_policy -> ", volume.io_policy);
        }
        if (!volume.access_policy.empty() && !IsAccessPolicyValid(volume.access_policy)) {
            return OutOfScope("access_policy -> ", volume.access_policy);
        }
        if (!volume.cache_policy.empty() && !IsPolicyValid(volume.cache_policy)) {
            return OutOfScope("cache_policy -> ", volume.cache_policy);
        }
        if (!IsVolumeSizeValid(volume.volume_size)) {
            return OutOfScope("volume_size -> ", volume.volume_size);
        }
        if (!IsStripSizeValid(volume.strip_size)) {
            return OutOfScope("strip_size -> ", volume.strip_size);
        }
        // initialization is not looked at on this family: it goes to the cast as it stands.
    }
    return true;
}

bool RaidConfigChecker::OobLsiScopeCheck(const CtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::OobLsiScopeCheck");
    if (!CheckGlobalHotSpares(section.global_hot_spares)) {
        return false;
    }
    for (const CtrlVolSection& volume : section.volumes) {
        // "REST" or "rest" asks for all the disks left over; it has no ids to test.
        const bool rest = volume.disks == "REST" || volume.disks == "rest";
        if (!rest && !IsDisksValid(volume.disks)) {
            return OutOfScope("disks -> ", volume.disks);
        }
        if (!volume.hot_spares.empty() && !IsDigitList(volume.hot_spares)) {
            return OutOfScope("hot_spares -> ", volume.hot_spares);
        }
        if (!IsRaidLevelValid(volume.raid_level)) {
            return OutOfScope("raid_level -> ", volume.raid_level);
        }
        if (!IsVolNameValid(volume.vol_name)) {
            return OutOfScope("vol_name -> ", volume.vol_name);
        }
        if (!volume.write_policy.empty() && !IsPolicyValid(volume.write_policy)) {
            return OutOfScope("write_policy -> ", volume.write_policy);
        }
        if (!volume.read_policy.empty() && !IsPolicyValid(volume.read_policy)) {
            return OutOfScope("read_policy -> ", volume.read_policy);
        }
        if (!volume.io_policy.empty() && !IsIoPolicyValid(volume.io_policy)) {
            return OutOfScope("io_policy -> ", volume.io_policy);
        }
        if (!volume.access_policy.empty() && !IsAccessPolicyValid(volume.access_policy)) {
            return OutOfScope("access_policy -> ", volume.access_policy);
        }
        if (!volume.cache_policy.empty() && !IsPolicyValid(volume.cache_policy)) {
            return OutOfScope("cache_policy -> ", volume.cache_policy);
        }
        if (!IsOobVolumeSizeValid(volume.volume_size)) {
            return OutOfScope("volume_size -> ", volume.volume_size);
        }
        if (!IsStripSizeValid(volume.strip_size)) {
            return OutOfScope("strip_size -> ", volume.strip_size);
        }
        if (!volume.initialization.empty() && !IsPolicyValid(volume.initialization)) {
            return OutOfScope("initialization -> ", volume.initialization);
        }
    }
    return true;
}

// Intended: global_hot_spares, hot_spares and io_policy are not looked at on this family, and
// the policies only for a "Broadcom" controller; the others' backends take what they can.
bool RaidConfigChecker::OobLsiScopeCheckCFC(const CtrlSection& section, const std::string& vendor) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::OobLsiScopeCheckCFC");
    for (const CtrlVolSection& volume : section.volumes) {
        if (!IsDisksValid(volume.disks)) {
            return OutOfScope("disks -> ", volume.disks);
        }
        if (volume.raid_level.empty() || !IsOneOf(supported_raid_levels, volume.raid_level)) {
            return OutOfScope("raid_level -> ", volume.raid_level);
        }
        if (!IsOptionalVolNameValid(volume.vol_name)) {
            return OutOfScope("vol_name -> ", volume.vol_name);
        }
        if (!IsVolumeSizeValid(volume.volume_size)) {
            return OutOfScope("volume_size -> ", volume.volume_size);
        }
        if (!IsCfcStripSizeValid(volume.strip_size)) {
            return OutOfScope("strip_size -> ", volume.strip_size);
        }
        if (vendor != "Broadcom") {
            continue;
        }
        if (!volume.write_policy.empty() && !IsPolicyValid(volume.write_policy)) {
            return OutOfScope("write_policy -> ", volume.write_policy);
        }
        if (!volume.read_policy.empty() && !IsPolicyValid(volume.read_policy)) {
            return OutOfScope("read_policy -> ", volume.read_policy);
        }
        if (!volume.access_policy.empty() && !IsAccessPolicyValid(volume.access_policy)) {
            return OutOfScope("access_policy -> ", volume.access_policy);
        }
        if (!volume.cache_policy.empty() && !IsPolicyValid(volume.cache_policy)) {
            return OutOfScope("cache_policy -> ", volume.cache_policy);
        }
        if (!volume.initialization.empty() && !IsPolicyValid(volume.initialization)) {
            return OutOfScope("initialization -> ", volume.initialization);
        }
    }
    return true;
}

// Intended: disks is a plain digit list here (empty passes, spans are refused), and io_policy
// takes three codes where LSI takes two; each family's backend reads its own codes.
bool RaidConfigChecker::MicroScopeCheck(const MicroCtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::MicroScopeCheck");
    if (!CheckGlobalHotSpares(section.global_hot_spares)) {
        return false;
    }
    for (const MicroVolSection& volume : section.volumes) {
        if (!IsDigitList(volume.disks)) {
            return OutOfScope("disks -> ", volume.disks);
        }
        if (!volume.hot_spares.empty() && !IsDigitList(volume.hot_spares)) {
            return OutOfScope("hot_spares -> ", volume.hot_spares);
        }
        if (!IsRaidLevelValid(volume.raid_level)) {
            return OutOfScope("raid_level -> ", volume.raid_level);
        }
        if (!IsVolNameValid(volume.vol_name)) {
            return OutOfScope("vol_name -> ", volume.vol_name);
        }
        if (!volume.io_policy.empty() && !IsPolicyValid(volume.io_policy)) {
            return OutOfScope("io_policy -> ", volume.io_policy);
        }
        if (!IsVolumeSizeValid(volume.volume_size)) {
            return OutOfScope("volume_size -> ", volume.volume_size);
        }
        if (!IsStripSizeValid(volume.strip_size)) {
            return OutOfScope("strip_size -> ", volume.strip_size);
        }
    }
    return true;
}

// Intended: write_policy counts from 1 on this family, and read_policy takes "0" or "1".
bool RaidConfigChecker::OobMicroScopeCheck(const OobMicroCtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::OobMicroScopeCheck");
    for (const OobMicroVolSection& volume : section.volumes) {
        if (!IsDisksValid(volume.disks)) {
            return OutOfScope("disks -> ", volume.disks);
        }
        if (!volume.hot_spares.empty() && !IsDigitList(volume.hot_spares)) {
            return OutOfScope("hot_spares -> ", volume.hot_spares);
        }
        if (!IsRaidLevelValid(volume.raid_level)) {
            return OutOfScope("raid_level -> ", volume.raid_level);
        }
        if (!IsVolNameValid(volume.vol_name)) {
            return OutOfScope("vol_name -> ", volume.vol_name);
        }
        if (!IsVolumeSizeValid(volume.volume_size)) {
            return OutOfScope("volume_size -> ", volume.volume_size);
        }
        if (!IsStripSizeValid(volume.strip_size)) {
            return OutOfScope("strip_size -> ", volume.strip_size);
        }
        if (!volume.write_policy.empty() && !IsOobWritePolicyValid(volume.write_policy)) {
            return OutOfScope("write_policy -> ", volume.write_policy);
        }
        if (!volume.read_policy.empty() && !IsIoPolicyValid(volume.read_policy)) {
            return OutOfScope("read_policy -> ", volume.read_policy);
        }
    }
    return true;
}

bool RaidConfigChecker::OobVrocScopeCheck(const OobVrocCtrlSection& section) {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::OobVrocScopeCheck");
    if (!CheckGlobalHotSpares(section.global_hot_spares)) {
        return false;
    }
    for (const OobVrocVolSection& volume : section.volumes) {
        if (!IsDisksValid(volume.disks)) {
            return OutOfScope("disks -> ", volume.disks);
        }
        if (!IsVrocRaidLevelValid(volume.raid_level)) {
            return OutOfScope("raid_level -> ", volume.raid_level);
        }
        if (!IsVolNameValid(volume.vol_name)) {
            return OutOfScope("vol_name -> ", volume.vol_name);
        }
        if (!IsVolumeSizeValid(volume.volume_size)) {
            return OutOfScope("volume_size -> ", volume.volume_size);
        }
        // A mirror has no strips: level "1" leaves strip_size unlooked at, whatever it holds.
        if (volume.raid_level != "1" && !IsStripSizeValid(volume.strip_size)) {
            return OutOfScope("strip_size -> ", volume.strip_size);
        }
    }
    return true;
}

bool RaidConfigChecker::IsVrocSupportedDisknum(const std::string& level, const std::string& disks,
                                               std::string& message) const {
    RAIDCFG_TRACE("service::detail::RaidConfigChecker::IsVrocSupportedDisknum");
    std::size_t count = 0;
    if (!disks.empty()) {
        std::vector<std::string> pieces;
        boost::algorithm::split(pieces, disks, boost::algorithm::is_any_of(", "),
                                boost::algorithm::token_compress_on);
        count = pieces.size();
    }
    if (level == "0" && count < 2) {
        message = "The RAID 0 must contain at least 2 disks.";
        return false;
    }
    if (level == "1" && count != 2) {
        message = "The RAID 1 only supports 2 disks.";
        return false;
    }
    if (level == "5" && count < 3) {
        message = "The RAID 5 must contain at least 3 disks.";
        return false;
    }
    if (level == "10" && count != 4) {
        message = "The RAID 10 only supports 4 disks.";
        return false;
    }
    return true;
}

bool RaidConfigChecker::IsDigitList(const std::string& value) const {
    return AllDigitPieces(SplitKept(value, ","));
}

bool RaidConfigChecker::IsRaidLevelValid(const std::string& value) const {
    return IsOneOf(raid_levels, value);
}

bool RaidConfigChecker::IsVrocRaidLevelValid(const std::string& value) const {
    return IsOneOf(vroc_raid_levels, value);
}

// Spans are ":"-separated comma lists. Intended: a span only has to divide the running count
// of disks, which is weaker than equal spans ("1,2:3" passes, "1:2,3" fails); policy files
// that pass it are in use, and the backend refuses the spans it cannot build.
bool RaidConfigChecker::IsDisksValid(const std::string& value) const {
    if (value.empty()) {
        return false;
    }
    std::size_t total = 0;
    for (const std::string& span : SplitKept(value, ":")) {
        const std::vector<std::string> ids = SplitKept(span, ",");
        if (!AllDigitPieces(ids)) {
            return false;
        }
        total += ids.size();
        if (total % ids.size() != 0) {
            return false;
        }
    }
    return true;
}

// Each character is matched by itself; what "\w" takes beyond ASCII follows the regular
// expression library's locale.
bool RaidConfigChecker::IsVolNameValid(const std::string& value) const {
    if (value.empty()) {
        return false;
    }
    const boost::regex pattern(kVolNameCharPattern);
    return std::all_of(value.begin(), value.end(), [&pattern](char c) {
        return boost::regex_match(std::string(1, c), pattern);
    });
}

bool RaidConfigChecker::IsOptionalVolNameValid(const std::string& value) const {
    return value.empty() || IsVolNameValid(value);
}

bool RaidConfigChecker::IsVolumeSizeValid(const std::string& value) const {
    return MatchesWhole(value, kVolumeSizePattern);
}

bool RaidConfigChecker::IsOobVolumeSizeValid(const std::string& value) const {
    return MatchesWhole(value, kVolumeSizePattern) || MatchesWhole(value, kPercentPattern);
}

bool RaidConfigChecker::IsStripSizeValid(const std::string& value) const {
    return MatchesWhole(value, kStripSizePattern);
}

bool RaidConfigChecker::IsCfcStripSizeValid(const std::string& value) const {
    return MatchesWhole(value, kCfcStripSizePattern);
}

bool RaidConfigChecker::IsPolicyValid(const std::string& value) const {
    return IsOneOf(policy_codes, value);
}

bool RaidConfigChecker::IsOobWritePolicyValid(const std::string& value) const {
    return IsOneOf(oob_write_policy_codes, value);
}

bool RaidConfigChecker::IsIoPolicyValid(const std::string& value) const {
    return IsOneOf(io_policy_codes, value);
}

bool RaidConfigChecker::IsAccessPolicyValid(const std::string& value) const {
    return IsOneOf(access_policy_codes, value);
}

// "," and blank both separate ids; an empty piece between them passes, so "1, 2" is accepted.
bool RaidConfigChecker::IsVrocDiskList(const std::string& value) const {
    return !value.empty() && AllDigitPieces(SplitKept(value, ", "));
}

bool RaidConfigChecker::IsVrocSupportVolCapacity(const std::string& value) const {
    return value.empty() ||
           MatchesWhole(boost::algorithm::to_upper_copy(value), kVolCapacityPattern);
}

bool RaidConfigChecker::IsVrocStripSize(const std::string& value) const {
    return MatchesWhole(value, kStripSizePattern) &&
           IsOneOf(vroc_strip_sizes, boost::algorithm::to_upper_copy(value));
}

} // namespace detail
} // namespace service
