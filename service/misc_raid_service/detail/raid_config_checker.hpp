#pragma once

#include <string>
#include <vector>

#include "service/misc_raid_service/detail/raid_config_sections.hpp"

namespace service {
namespace detail {

// Judges the parsed sections of a policy file before anything reaches a backend: one entry
// operation per controller family answers whether a section may be applied. A check stops at
// the first value it dislikes and keeps one line saying what, which TakeErrorText hands out.
// It never throws and never calls a backend; one checker serves one action on one thread.
class RaidConfigChecker {
public:
    RaidConfigChecker();

    // Entry operations: the family's scope check, then the duplicate test on each volume.
    // False leaves the failure's line for TakeErrorText. A section without volumes passes.
    bool CheckLsiCtrlSection(const CtrlSection& section);
    // A volume whose disks is "REST" or "rest" is left out of the duplicate test.
    bool CheckOobCtrlSection(const CtrlSection& section);
    // Keeps supported_levels for OobLsiScopeCheckCFC. The duplicate test is given no hot spares.
    bool CheckCtrlSectionCFC(const CtrlSection& section,
                             const std::vector<std::string>& supported_levels,
                             const std::string& vendor);
    // raid_level "0" or "1", vol_name, and strip_size from m2_strip_sizes; no duplicate test.
    bool CheckM2Section(const M2Section& section);
    bool CheckMicroSection(const MicroCtrlSection& section);
    bool CheckOobMicroSection(const OobMicroCtrlSection& section);
    // The duplicate test is given no hot spares: the family has none per volume.
    bool CheckOobVrocSection(const OobVrocCtrlSection& section);
    // Values and the number of disks per level; no duplicate test.
    bool CheckVroc_winSection(const VrocWinCtrlSection& section);

    // The last failure's line; the checker keeps it no longer, so a second call gives "".
    std::string TakeErrorText();

    // Scope checks: every value of one family's section against what that family may be
    // given, in the family's order. The first value out of scope sets the line and ends it.
    bool LsiScopeCheck(const CtrlSection& section);
    bool OobLsiScopeCheck(const CtrlSection& section);
    // raid_level must be one of supported_raid_levels; policies are looked at for "Broadcom"
    // controllers alone.
    bool OobLsiScopeCheckCFC(const CtrlSection& section, const std::string& vendor);
    bool MicroScopeCheck(const MicroCtrlSection& section);
    bool OobMicroScopeCheck(const OobMicroCtrlSection& section);
    bool OobVrocScopeCheck(const OobVrocCtrlSection& section);

    // False, with the duplicate sentence as the line, when one disk id appears twice among
    // the disks (all spans) and hot_spares of one volume. Ids compare as text.
    bool DisksDupCheck(const std::string& disks, const std::string& hot_spares);

    // Refuses too few or too many disks for a VROC_WIN level and puts the reason into message.
    bool IsVrocSupportedDisknum(const std::string& level, const std::string& disks,
                                std::string& message) const;

    // Value tests: true when the value is accepted. None of them touches the line.
    bool IsDigitList(const std::string& value) const;
    bool IsRaidLevelValid(const std::string& value) const;
    bool IsVrocRaidLevelValid(const std::string& value) const;
    bool IsDisksValid(const std::string& value) const;
    bool IsVolNameValid(const std::string& value) const;
    bool IsOptionalVolNameValid(const std::string& value) const;
    bool IsVolumeSizeValid(const std::string& value) const;
    bool IsOobVolumeSizeValid(const std::string& value) const;
    bool IsStripSizeValid(const std::string& value) const;
    bool IsCfcStripSizeValid(const std::string& value) const;
    bool IsPolicyValid(const std::string& value) const;
    bool IsOobWritePolicyValid(const std::string& value) const;
    bool IsIoPolicyValid(const std::string& value) const;
    bool IsAccessPolicyValid(const std::string& value) const;
    bool IsVrocDiskList(const std::string& value) const;
    bool IsVrocSupportVolCapacity(const std::string& value) const;
    bool IsVrocStripSize(const std::string& value) const;

private:
    // Sets the line "<label>-> <value> is out of scope" and returns false.
    bool OutOfScope(const char* label, const std::string& value);
    // global_hot_spares of the families that look at it: empty, or a digit list.
    bool CheckGlobalHotSpares(const std::string& global_hot_spares);

    const std::string out_of_scope;
    const std::vector<std::string> raid_levels;
    const std::vector<std::string> vroc_raid_levels;
    const std::vector<std::string> m2_strip_sizes;
    const std::vector<std::string> vroc_strip_sizes;
    const std::vector<std::string> policy_codes;
    const std::vector<std::string> oob_write_policy_codes;
    const std::vector<std::string> io_policy_codes;
    const std::vector<std::string> access_policy_codes;
    const std::vector<std::string> write_hole_policies;
    // The software RAID vocabulary of chunk sizes, cache modes and consistency policies.
    // No check consults them.
    const std::vector<std::string> sw_strip_sizes;
    const std::vector<std::string> sw_cache_modes;
    const std::vector<std::string> sw_consistency_policies;
    std::string error_text;
    std::vector<std::string> supported_raid_levels; // set by CheckCtrlSectionCFC alone
};

} // namespace detail
} // namespace service
