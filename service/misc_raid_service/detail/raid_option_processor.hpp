#pragma once

#include <string>
#include <vector>

#include "backend/raid_target.hpp"

namespace service {
namespace detail {

// Turns the text fields of the option record into typed data: the target text into RaidTarget
// records and the list-valued fields into vectors. It holds no state, so callers build one on
// their stack whenever they need it and any two instances behave the same.
//
// Target words ("all", "hw", "sw", "m2", "m.2") and the forms "m.?2-<n>", "vroc<n>", "md<n>" are
// recognised after the text was lower-cased; a token of no known form is dropped without error.
class RaidOptionProcessor {
public:
    using RaidTarget = Quillon::RaidConfig::RaidTarget;

    // A target of the type with these controller ids; logs the type and each id at level 3.
    RaidTarget CreateRaidTarget(RaidTarget::Type type, const std::vector<int>& ids) const;
    // A target of the type with these software RAID containers; logs like CreateRaidTarget.
    RaidTarget CreateRaidContainerTarget(RaidTarget::Type type, const std::vector<int>& ids) const;

    // Every in-band family, each without ids: LSI, M2 and VROC_WIN, in that order.
    std::vector<RaidTarget> CreateAllRaidTarget() const;
    // Every in-band hardware family: LSI and M2.
    std::vector<RaidTarget> CreateHWRaidTarget() const;
    // Every out-of-band family: OOB_LSI and OOB_M2.
    std::vector<RaidTarget> CreateOObRaidTarget() const;

    // The targets a target text names on the in-band road; empty text or "all" names everything.
    std::vector<RaidTarget> ParseInbandTargets(const std::string& text) const;
    // The same for the out-of-band road, where software RAID does not exist.
    std::vector<RaidTarget> ParseOobTargets(const std::string& text) const;

    // The hardware targets among lower-cased tokens, in-band and out-of-band.
    std::vector<RaidTarget> ParseHwTargets(const std::vector<std::string>& tokens) const;
    std::vector<RaidTarget> ParseOobHwTargets(const std::vector<std::string>& tokens) const;
    // The software RAID targets among lower-cased tokens: controllers first, then containers.
    std::vector<RaidTarget> ParseSwTargets(const std::vector<std::string>& tokens) const;

    // The type one single target text stands for on the given road; INVALID for anything else,
    // including lists and the words, so callers that need exactly one target can refuse it.
    RaidTarget::Type ClassifyTarget(const std::string& text, bool in_band) const;

    // Numbers of a comma list, ascending; empty text or "all" gives an empty vector (all of them).
    std::vector<int> ParseIdList(const std::string& text) const;
    // Lower-cased tokens of a comma list as given; empty text or "all" gives an empty vector.
    std::vector<std::string> ParseDiskList(const std::string& text) const;
    // Lower-cased tokens of a comma list as given; only empty text gives an empty vector.
    std::vector<std::string> ParseStringList(const std::string& text) const;

    // Copies a non-empty policy file option into file and returns true; false when it is empty.
    bool GetPolicyFile(const std::string& option, std::string& file) const;

    // The number at the start of text, read through a stream; 0 when there is none.
    int StringToInt(const std::string& text) const;

private:
    // Controller numbers, then the M.2 word or M.2 numbers, as the two hardware parsers share.
    std::vector<RaidTarget> HardwareTargets(const std::vector<std::string>& tokens,
                                            RaidTarget::Type controller_type,
                                            RaidTarget::Type m2_type) const;
};

} // namespace detail
} // namespace service
