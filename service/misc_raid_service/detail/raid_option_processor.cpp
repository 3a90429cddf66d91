#include "service/misc_raid_service/detail/raid_option_processor.hpp"

#include <algorithm>
#include <sstream>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/regex.hpp>

#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"

namespace service {
namespace detail {
namespace {

using RaidTarget = Quillon::RaidConfig::RaidTarget;

// One M.2 controller: "m2-1", "m.2-1"; the number is the text behind the first "-".
const boost::regex& M2NumberPattern() {
    static const boost::regex pattern("m.?2\\-\\d+");
    return pattern;
}

// One software RAID controller: "vroc1".
const boost::regex& VrocPattern() {
    static const boost::regex pattern("vroc\\d+");
    return pattern;
}

// One software RAID container: "md2".
const boost::regex& MdPattern() {
    static const boost::regex pattern("md\\d+");
    return pattern;
}

bool Matches(const std::string& token, const boost::regex& pattern) {
    return boost::regex_match(token, pattern);
}

// True when text has no character but '0' to '9'. The empty text passes, intended: a caller
// that needs one controller and gets no target text works on controller 0, and an empty token
// of a list (",," or a trailing comma) reads as controller 0 the same way.
bool IsAllDigits(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool Contains(const std::vector<std::string>& tokens, const char* word) {
    return std::find(tokens.begin(), tokens.end(), word) != tokens.end();
}

std::string Lowered(const std::string& text) {
    std::string lowered = text;
    boost::algorithm::to_lower(lowered);
    return lowered;
}

// The comma-separated tokens of text in their order, empty ones included.
std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> tokens;
    boost::algorithm::split(tokens, text, boost::algorithm::is_any_of(","));
    return tokens;
}

// The tokens sorted ascending as text, each one once.
std::vector<std::string> SplitUnique(const std::string& text) {
    std::vector<std::string> tokens = Split(text);
    std::sort(tokens.begin(), tokens.end());
    tokens.erase(std::unique(tokens.begin(), tokens.end()), tokens.end());
    return tokens;
}

void Append(std::vector<RaidTarget>& targets, const std::vector<RaidTarget>& more) {
    targets.insert(targets.end(), more.begin(), more.end());
}

RaidTarget EmptyTarget(RaidTarget::Type type) {
    RaidTarget target;
    target.type = type;
    return target;
}

} // namespace

RaidTarget RaidOptionProcessor::CreateRaidTarget(RaidTarget::Type type,
                                                 const std::vector<int>& ids) const {
    RaidTarget target;
    target.type = type;
    target.ids = ids;
    RAIDCFG_LOG(3) << "raid_target.type: " << static_cast<int>(type);
    for (const int id : ids) {
        RAIDCFG_LOG(3) << "raid_target id: " << id;
    }
    return target;
}

RaidTarget RaidOptionProcessor::CreateRaidContainerTarget(RaidTarget::Type type,
                                                          const std::vector<int>& ids) const {
    RaidTarget target;
    target.type = type;
    target.container_ids = ids;
    RAIDCFG_LOG(3) << "raid_target.type: " << static_cast<int>(type);
    for (const int id : ids) {
        RAIDCFG_LOG(3) << "raid_target container_ids: " << id;
    }
    return target;
}

std::vector<RaidTarget> RaidOptionProcessor::CreateAllRaidTarget() const {
    return {EmptyTarget(RaidTarget::LSI), EmptyTarget(RaidTarget::M2),
            EmptyTarget(RaidTarget::VROC_WIN)};
}

std::vector<RaidTarget> RaidOptionProcessor::CreateHWRaidTarget() const {
    return {EmptyTarget(RaidTarget::LSI), EmptyTarget(RaidTarget::M2)};
}

std::vector<RaidTarget> RaidOptionProcessor::CreateOObRaidTarget() const {
    return {EmptyTarget(RaidTarget::OOB_LSI), EmptyTarget(RaidTarget::OOB_M2)};
}

std::vector<RaidTarget> RaidOptionProcessor::ParseInbandTargets(const std::string& text) const {
    RAIDCFG_TRACE("service::detail::RaidOptionProcessor::ParseInbandTargets");
    if (text.empty()) {
        return CreateAllRaidTarget();
    }
    const std::string lowered = Lowered(text);
    if (lowered == "all") {
        return CreateAllRaidTarget();
    }
    const std::vector<std::string> tokens = SplitUnique(lowered);
    if (Contains(tokens, "all")) {
        return CreateAllRaidTarget();
    }
    std::vector<RaidTarget> targets = ParseHwTargets(tokens);
    Append(targets, ParseSwTargets(tokens));
    return targets;
}

std::vector<RaidTarget> RaidOptionProcessor::ParseOobTargets(const std::string& text) const {
    RAIDCFG_TRACE("service::detail::RaidOptionProcessor::ParseOobTargets");
    if (text.empty()) {
        return CreateOObRaidTarget();
    }
    const std::string lowered = Lowered(text);
    if (lowered == "all") {
        return CreateOObRaidTarget();
    }
    const std::vector<std::string> tokens = SplitUnique(lowered);
    if (Contains(tokens, "all")) {
        return CreateOObRaidTarget();
    }
    return ParseOobHwTargets(tokens);
}

std::vector<RaidTarget>
RaidOptionProcessor::ParseHwTargets(const std::vector<std::string>& tokens) const {
    RAIDCFG_TRACE("service::detail::RaidOptionProcessor::ParseHwTargets");
    if (Contains(tokens, "hw")) {
        return CreateHWRaidTarget();
    }
    return HardwareTargets(tokens, RaidTarget::LSI, RaidTarget::M2);
}

std::vector<RaidTarget>
RaidOptionProcessor::ParseOobHwTargets(const std::vector<std::string>& tokens) const {
    RAIDCFG_TRACE("service::detail::RaidOptionProcessor::ParseOobHwTargets");
    if (Contains(tokens, "hw")) {
        return CreateOObRaidTarget();
    }
    return HardwareTargets(tokens, RaidTarget::OOB_LSI, RaidTarget::OOB_M2);
}

std::vector<RaidTarget> RaidOptionProcessor::HardwareTargets(const std::vector<std::string>& tokens,
                                                             RaidTarget::Type controller_type,
                                                             RaidTarget::Type m2_type) const {
    std::vector<RaidTarget> targets;
    std::vector<int> controllers;
    for (const std::string& token : tokens) {
        if (IsAllDigits(token)) {
            controllers.push_back(StringToInt(token));
        }
    }
    if (!controllers.empty()) {
        std::sort(controllers.begin(), controllers.end());
        targets.push_back(CreateRaidTarget(controller_type, controllers));
    }
    // The word names every M.2 controller, so single M.2 numbers next to it add nothing.
    if (Contains(tokens, "m2") || Contains(tokens, "m.2")) {
        targets.push_back(CreateRaidTarget(m2_type, {}));
        return targets;
    }
    std::vector<int> m2_controllers;
    for (const std::string& token : tokens) {
        if (Matches(token, M2NumberPattern())) {
            m2_controllers.push_back(StringToInt(token.substr(token.find('-') + 1)));
        }
    }
    if (!m2_controllers.empty()) {
        std::sort(m2_controllers.begin(), m2_controllers.end());
        targets.push_back(CreateRaidTarget(m2_type, m2_controllers));
    }
    return targets;
}

std::vector<RaidTarget>
RaidOptionProcessor::ParseSwTargets(const std::vector<std::string>& tokens) const {
    RAIDCFG_TRACE("service::detail::RaidOptionProcessor::ParseSwTargets");
    if (Contains(tokens, "sw")) {
        return {CreateRaidTarget(RaidTarget::VROC_WIN, {})};
    }
    std::vector<int> controllers;
    std::vector<int> containers;
    for (const std::string& token : tokens) {
        if (Matches(token, VrocPattern())) {
            controllers.push_back(StringToInt(token.substr(4)));
        }
        if (Matches(token, MdPattern())) {
            containers.push_back(StringToInt(token.substr(2)));
        }
    }
    std::vector<RaidTarget> targets;
    if (!controllers.empty()) {
        std::sort(controllers.begin(), controllers.end());
        targets.push_back(CreateRaidTarget(RaidTarget::VROC_WIN, controllers));
    }
    if (!containers.empty()) {
        std::sort(containers.begin(), containers.end());
        targets.push_back(CreateRaidContainerTarget(RaidTarget::VROC_WIN, containers));
    }
    return targets;
}

RaidTarget::Type RaidOptionProcessor::ClassifyTarget(const std::string& text, bool in_band) const {
    RAIDCFG_TRACE("service::detail::RaidOptionProcessor::ClassifyTarget");
    const std::string lowered = Lowered(text);
    if (IsAllDigits(lowered)) {
        return in_band ? RaidTarget::LSI : RaidTarget::OOB_LSI;
    }
    if (in_band) {
        if (Matches(lowered, M2NumberPattern())) {
            return RaidTarget::M2;
        }
        if (Matches(lowered, VrocPattern()) || Matches(lowered, MdPattern())) {
            return RaidTarget::VROC_WIN;
        }
        return RaidTarget::INVALID;
    }
    if (Matches(lowered, M2NumberPattern())) {
        return RaidTarget::OOB_M2;
    }
    return RaidTarget::INVALID;
}

std::vector<int> RaidOptionProcessor::ParseIdList(const std::string& text) const {
    RAIDCFG_TRACE("service::detail::RaidOptionProcessor::ParseIdList");
    const std::string lowered = Lowered(text);
    if (lowered.empty() || lowered == "all") {
        return {};
    }
    // Tokens are made unique as text, as target lists are, and only then read as numbers: "01"
    // and "1" both stay and give 1 twice, and a word in the list reads as 0. Intended.
    std::vector<int> ids;
    for (const std::string& token : SplitUnique(lowered)) {
        ids.push_back(StringToInt(token));
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

std::vector<std::string> RaidOptionProcessor::ParseDiskList(const std::string& text) const {
    const std::string lowered = Lowered(text);
    if (lowered.empty() || lowered == "all") {
        return {};
    }
    return Split(lowered);
}

std::vector<std::string> RaidOptionProcessor::ParseStringList(const std::string& text) const {
    const std::string lowered = Lowered(text);
    if (lowered.empty()) {
        return {};
    }
    return Split(lowered);
}

bool RaidOptionProcessor::GetPolicyFile(const std::string& option, std::string& file) const {
    if (option.empty()) {
        return false;
    }
    file = option;
    return true;
}

int RaidOptionProcessor::StringToInt(const std::string& text) const {
    // Whatever the stream leaves is the answer, intended: no failure is reported. A text with no
    // number at its start gives 0; with libstdc++ a number beyond int gives INT_MAX (INT_MIN when
    // negative) with failbit set, and reading stops at the first character that is no digit.
    std::istringstream stream(text);
    int value = 0;
    stream >> value;
    return value;
}

} // namespace detail
} // namespace service
