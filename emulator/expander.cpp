#include "emulator/expander.hpp"

#include <algorithm>
#include <cctype>

namespace emulator {

using nlohmann::json;

namespace {

bool IsReference(const json& node) {
    return node.is_object() && node.size() == 1 && node.contains("@odata.id") &&
           node["@odata.id"].is_string();
}

bool Wanted(Expander::Mode mode, bool in_links) {
    switch (mode) {
    case Expander::Mode::NoLinks:
        return !in_links;
    case Expander::Mode::LinksOnly:
        return in_links;
    case Expander::Mode::All:
        return true;
    }
    return false;
}

} // namespace

bool Expander::Parse(const std::string& text, Mode& mode, int& levels) {
    if (text.empty()) {
        return false;
    }
    switch (text.front()) {
    case '.':
        mode = Mode::NoLinks;
        break;
    case '*':
        mode = Mode::All;
        break;
    case '~':
        mode = Mode::LinksOnly;
        break;
    default:
        return false;
    }
    levels = 1;
    const std::string rest = text.substr(1);
    if (rest.empty()) {
        return true;
    }
    const std::string prefix = "($levels=";
    if (rest.size() <= prefix.size() + 1 || rest.compare(0, prefix.size(), prefix) != 0 ||
        rest.back() != ')') {
        return false;
    }
    const std::string number = rest.substr(prefix.size(), rest.size() - prefix.size() - 1);
    if (number.empty() || number.size() > 3 ||
        !std::all_of(number.begin(), number.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; })) {
        return false;
    }
    levels = std::stoi(number);
    if (levels < 1) {
        return false;
    }
    levels = std::min(levels, kMaxLevels);
    return true;
}

json Expander::Expand(const json& resource, Mode mode, int levels, const Resolver& resolve) {
    json expanded = resource;
    Walk(expanded, false, mode, levels, resolve);
    return expanded;
}

void Expander::Walk(json& node, bool in_links, Mode mode, int levels, const Resolver& resolve) {
    if (node.is_array()) {
        for (json& element : node) {
            Walk(element, in_links, mode, levels, resolve);
        }
        return;
    }
    if (!node.is_object()) {
        return;
    }
    for (auto item = node.begin(); item != node.end(); ++item) {
        const std::string& key = item.key();
        // Messages, actions and our own section hold no navigation to follow.
        if (key == "Actions" || key == "Oem" || key.rfind('@', 0) == 0) {
            continue;
        }
        const bool links = in_links || key == "Links";
        json& value = item.value();
        auto expand_one = [&](json& reference) {
            if (!IsReference(reference) || !Wanted(mode, links)) {
                Walk(reference, links, mode, levels, resolve);
                return;
            }
            std::optional<json> target = resolve(reference["@odata.id"].get<std::string>());
            if (!target) {
                return;
            }
            // The expanded resource starts afresh: its own Links are not the parent's.
            if (levels > 1) {
                Walk(*target, false, mode, levels - 1, resolve);
            }
            reference = std::move(*target);
        };
        if (value.is_array()) {
            for (json& element : value) {
                expand_one(element);
            }
        } else {
            expand_one(value);
        }
    }
}

} // namespace emulator
