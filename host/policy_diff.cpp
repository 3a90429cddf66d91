#include "host/policy_diff.hpp"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>
#include <utility>

namespace host {

namespace {

using Section = PolicySections::Section;

// The policies a volume section may state, compared only where the policy file states them.
const std::vector<std::string>& PolicyKeys() {
    static const std::vector<std::string> keys{"write_policy",  "read_policy",  "io_policy",
                                               "access_policy", "cache_policy", "RAID_write_hole"};
    return keys;
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool IsRest(const std::string& disks) {
    return Lower(disks) == "rest";
}

// Every disk id of a disk list ("0,1:2,3"), as a set.
std::set<std::string> DiskSet(const std::string& disks) {
    std::set<std::string> ids;
    std::string piece;
    for (const char c : disks + ",") {
        if (c == ',' || c == ':') {
            if (!piece.empty()) {
                ids.insert(piece);
            }
            piece.clear();
        } else if (c != ' ') {
            piece.push_back(c);
        }
    }
    return ids;
}

std::string Joined(const std::set<std::string>& ids) {
    std::string text;
    for (const std::string& id : ids) {
        text += (text.empty() ? "" : ",") + id;
    }
    return text.empty() ? std::string("none") : text;
}

// A size in whole megabytes ("100GB", "1.5GB", "953869MB", "2TB"), with how far the figure as
// written may be from what the controller made of it: half of its last digit, and at least the
// megabyte save rounds to. None for a share ("50%"), the empty text or anything else.
struct Size {
    long long megabytes = 0;
    double tolerance = 1;
};

std::optional<Size> Megabytes(const std::string& size) {
    const std::string text = Lower(size);
    std::size_t unit = 0;
    int decimals = -1;
    while (unit < text.size() &&
           (std::isdigit(static_cast<unsigned char>(text[unit])) != 0 || text[unit] == '.')) {
        if (text[unit] == '.') {
            decimals = 0;
        } else if (decimals >= 0) {
            ++decimals;
        }
        ++unit;
    }
    if (unit == 0) {
        return std::nullopt;
    }
    double number = 0;
    std::istringstream(text.substr(0, unit)) >> number;
    const std::string word = text.substr(unit);
    double factor = 0;
    if (word == "mb" || word == "m") {
        factor = 1;
    } else if (word == "gb" || word == "g") {
        factor = 1024;
    } else if (word == "tb" || word == "t") {
        factor = 1024.0 * 1024;
    } else {
        return std::nullopt;
    }
    const double digit = factor * std::pow(10.0, -std::max(decimals, 0));
    return Size{static_cast<long long>(std::trunc(number * factor)), std::max(1.0, digit / 2)};
}

// A strip size in kilobytes ("256K", "1MB", "64"); none when it is not one.
std::optional<long long> Kilobytes(const std::string& strip) {
    const std::string text = Lower(strip);
    std::size_t unit = 0;
    while (unit < text.size() && std::isdigit(static_cast<unsigned char>(text[unit])) != 0) {
        ++unit;
    }
    if (unit == 0 || unit > 9) {
        return std::nullopt;
    }
    const long long number = std::stoll(text.substr(0, unit));
    const std::string word = text.substr(unit);
    if (word.empty() || word == "k" || word == "kb") {
        return number;
    }
    if (word == "m" || word == "mb") {
        return number * 1024;
    }
    return std::nullopt;
}

std::string Describe(const Section& volume) {
    std::string text = "RAID " + volume.Value("raid_level");
    const std::string disks = volume.Value("disks");
    if (IsRest(disks)) {
        text += " on the remaining disks";
    } else if (!disks.empty()) {
        text += " on disks " + disks;
    }
    if (!volume.Value("volume_size").empty()) {
        text += ", " + volume.Value("volume_size");
    }
    if (!volume.Value("vol_name").empty()) {
        text += ", \"" + volume.Value("vol_name") + "\"";
    }
    return text;
}

std::string Quoted(const std::string& value) {
    return "\"" + value + "\"";
}

// The fields of a matched volume that differ from what the policy states.
std::vector<std::string> FieldDifferences(const Section& want, const Section& have) {
    std::vector<std::string> out;
    const auto differ = [&out](const std::string& key, const std::string& live,
                               const std::string& wanted) {
        out.push_back(key + " is " + Quoted(live) + ", the policy says " + Quoted(wanted));
    };
    if (want.Has("raid_level") &&
        Lower(want.Value("raid_level")) != Lower(have.Value("raid_level"))) {
        differ("raid_level", have.Value("raid_level"), want.Value("raid_level"));
    }
    if (!want.Value("vol_name").empty() && want.Value("vol_name") != have.Value("vol_name")) {
        differ("vol_name", have.Value("vol_name"), want.Value("vol_name"));
    }
    if (!want.Value("volume_size").empty()) {
        const std::optional<Size> wanted = Megabytes(want.Value("volume_size"));
        const std::optional<Size> live = Megabytes(have.Value("volume_size"));
        // A share ("50%") cannot be compared with what the controller made of it.
        if (wanted && (!live || static_cast<double>(std::llabs(
                                    wanted->megabytes - live->megabytes)) > wanted->tolerance)) {
            differ("volume_size", have.Value("volume_size"), want.Value("volume_size"));
        }
    }
    if (!want.Value("strip_size").empty()) {
        const std::optional<long long> wanted = Kilobytes(want.Value("strip_size"));
        const std::optional<long long> live = Kilobytes(have.Value("strip_size"));
        if (wanted != live) {
            differ("strip_size", have.Value("strip_size"), want.Value("strip_size"));
        }
    }
    for (const std::string& key : PolicyKeys()) {
        if (!want.Value(key).empty() && want.Value(key) != have.Value(key)) {
            differ(key, have.Value(key), want.Value(key));
        }
    }
    if (want.Has("hot_spares") &&
        DiskSet(want.Value("hot_spares")) != DiskSet(have.Value("hot_spares"))) {
        out.push_back("dedicated hot spares are " + Joined(DiskSet(have.Value("hot_spares"))) +
                      ", the policy says " + Joined(DiskSet(want.Value("hot_spares"))));
    }
    return out;
}

PolicyDiff::Difference Make(PolicyDiff::Kind kind, const std::string& controller,
                            const std::string& section, std::vector<std::string> details) {
    PolicyDiff::Difference difference;
    difference.kind = kind;
    difference.controller = controller;
    difference.section = section;
    difference.details = std::move(details);
    return difference;
}

} // namespace

std::vector<PolicyDiff::Difference> PolicyDiff::Compare(const std::vector<Section>& wanted,
                                                        const std::vector<Section>& live) {
    std::vector<Difference> differences;
    std::vector<std::string> controllers;
    for (const Section& section : wanted) {
        if (std::find(controllers.begin(), controllers.end(), section.Controller()) ==
            controllers.end()) {
            controllers.push_back(section.Controller());
        }
    }
    for (const std::string& controller : controllers) {
        std::vector<const Section*> unmatched;
        const Section* live_settings = nullptr;
        for (const Section& section : live) {
            if (section.Controller() != controller) {
                continue;
            }
            if (section.IsVolume()) {
                unmatched.push_back(&section);
            } else {
                live_settings = &section;
            }
        }
        for (const Section& want : wanted) {
            if (want.Controller() != controller) {
                continue;
            }
            if (!want.IsVolume()) {
                if (!want.Has("global_hot_spares")) {
                    continue;
                }
                const std::set<std::string> have =
                    live_settings != nullptr ? DiskSet(live_settings->Value("global_hot_spares"))
                                             : std::set<std::string>();
                const std::set<std::string> need = DiskSet(want.Value("global_hot_spares"));
                if (have != need) {
                    Difference spares = Make(Kind::HotSpares, controller, want.name,
                                             {"global hot spares are " + Joined(have) +
                                              ", the policy says " + Joined(need)});
                    std::set_difference(need.begin(), need.end(), have.begin(), have.end(),
                                        std::back_inserter(spares.missing));
                    std::set_difference(have.begin(), have.end(), need.begin(), need.end(),
                                        std::back_inserter(spares.extra));
                    differences.push_back(spares);
                }
                continue;
            }
            const std::string disks = want.Value("disks");
            auto match = unmatched.end();
            if (disks.empty()) {
                match = unmatched.begin(); // one volume per M.2 controller
            } else if (IsRest(disks)) {
                match = std::find_if(unmatched.begin(), unmatched.end(), [&](const Section* s) {
                    return Lower(s->Value("raid_level")) == Lower(want.Value("raid_level"));
                });
            } else {
                match = std::find_if(unmatched.begin(), unmatched.end(), [&](const Section* s) {
                    return DiskSet(s->Value("disks")) == DiskSet(disks);
                });
                // A live M.2 volume names no disks either: its controller is the match.
                if (match == unmatched.end()) {
                    match = std::find_if(unmatched.begin(), unmatched.end(),
                                         [](const Section* s) { return !s->Has("disks"); });
                }
            }
            if (match == unmatched.end()) {
                differences.push_back(Make(Kind::Create, controller, want.name, {Describe(want)}));
                continue;
            }
            std::vector<std::string> fields = FieldDifferences(want, **match);
            if (!fields.empty()) {
                differences.push_back(Make(Kind::Differs, controller, want.name, fields));
            }
            unmatched.erase(match);
        }
        for (const Section* extra : unmatched) {
            differences.push_back(
                Make(Kind::NotInPolicy, controller, extra->name, {Describe(*extra)}));
        }
    }
    return differences;
}

std::string PolicyDiff::KindWord(Kind kind) {
    switch (kind) {
    case Kind::Create:
        return "create";
    case Kind::Differs:
        return "differs";
    case Kind::NotInPolicy:
        return "not in the policy";
    case Kind::HotSpares:
        return "hot spares differ";
    }
    return "";
}

std::string PolicyDiff::Text(const std::vector<Difference>& differences) {
    std::size_t width = 0;
    for (const Difference& difference : differences) {
        width = std::max(width, difference.section.size());
    }
    std::string text;
    for (const Difference& difference : differences) {
        std::string section = difference.section;
        section.resize(width + 4, ' ');
        std::string details;
        for (const std::string& detail : difference.details) {
            details += (details.empty() ? "" : "; ") + detail;
        }
        text += section;
        text += KindWord(difference.kind);
        text += ": ";
        text += details;
        text += "\n";
    }
    if (differences.empty()) {
        text += "The server matches the policy.\n";
    } else {
        text += std::to_string(differences.size()) +
                (differences.size() == 1 ? " difference" : " differences") + " from the policy.\n";
    }
    return text;
}

namespace {

// The kind as a program reads it.
std::string KindKey(PolicyDiff::Kind kind) {
    switch (kind) {
    case PolicyDiff::Kind::Create:
        return "create";
    case PolicyDiff::Kind::Differs:
        return "differs";
    case PolicyDiff::Kind::NotInPolicy:
        return "not_in_policy";
    case PolicyDiff::Kind::HotSpares:
        return "hot_spares";
    }
    return "";
}

} // namespace

nlohmann::json PolicyDiff::Json(const std::vector<Difference>& differences) {
    nlohmann::json out = {{"matches", differences.empty()},
                          {"differences", nlohmann::json::array()}};
    for (const Difference& difference : differences) {
        nlohmann::json entry = {{"kind", KindKey(difference.kind)},
                                {"controller", difference.controller},
                                {"section", difference.section},
                                {"details", difference.details}};
        if (difference.kind == Kind::HotSpares) {
            entry["missing"] = difference.missing;
            entry["extra"] = difference.extra;
        }
        out["differences"].push_back(entry);
    }
    return out;
}

} // namespace host
