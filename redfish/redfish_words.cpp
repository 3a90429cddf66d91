#include "redfish/redfish_words.hpp"

#include <cctype>
#include <limits>

namespace redfish {

namespace {

const nlohmann::json& Empty() {
    static const nlohmann::json empty = nlohmann::json::object();
    return empty;
}

} // namespace

std::string RedfishWords::RaidType(const std::string& level) {
    const std::string triple = "triple";
    if (level.size() > triple.size() &&
        level.compare(level.size() - triple.size(), triple.size(), triple) == 0) {
        return "RAID" + level.substr(0, level.size() - triple.size()) + "Triple";
    }
    return "RAID" + level;
}

std::string RedfishWords::Level(const std::string& raid_type) {
    if (raid_type.rfind("RAID", 0) != 0) {
        return {};
    }
    std::string level = raid_type.substr(4);
    const std::string triple = "Triple";
    if (level.size() > triple.size() &&
        level.compare(level.size() - triple.size(), triple.size(), triple) == 0) {
        level = level.substr(0, level.size() - triple.size()) + "triple";
    }
    return level;
}

std::string RedfishWords::Text(const nlohmann::json& object, const char* key) {
    if (!object.is_object()) {
        return {};
    }
    const auto found = object.find(key);
    if (found == object.end()) {
        return {};
    }
    if (found->is_string()) {
        return found->get<std::string>();
    }
    if (found->is_number_integer()) {
        return std::to_string(found->get<long long>());
    }
    return {};
}

long long RedfishWords::Number(const nlohmann::json& object, const char* key, long long fallback) {
    if (!object.is_object()) {
        return fallback;
    }
    const auto found = object.find(key);
    if (found == object.end() || !found->is_number()) {
        return fallback;
    }
    // A BMC may send sizes beyond what a signed 64-bit number holds (as unsigned or as a
    // floating-point number); they are held at the largest value rather than wrapped.
    constexpr long long kLargest = std::numeric_limits<long long>::max();
    if (found->is_number_float()) {
        const double value = found->get<double>();
        if (!(value == value)) {
            return fallback;
        }
        if (value >= 9.2e18) {
            return kLargest;
        }
        if (value <= -9.2e18) {
            return std::numeric_limits<long long>::min();
        }
        return static_cast<long long>(value);
    }
    if (found->is_number_unsigned()) {
        const auto value = found->get<unsigned long long>();
        return value > static_cast<unsigned long long>(kLargest) ? kLargest
                                                                 : static_cast<long long>(value);
    }
    return found->get<long long>();
}

bool RedfishWords::Flag(const nlohmann::json& object, const char* key, bool fallback) {
    if (!object.is_object()) {
        return fallback;
    }
    const auto found = object.find(key);
    return found != object.end() && found->is_boolean() ? found->get<bool>() : fallback;
}

const nlohmann::json& RedfishWords::Oem(const nlohmann::json& object) {
    if (!object.is_object()) {
        return Empty();
    }
    const auto oem = object.find("Oem");
    if (oem == object.end() || !oem->is_object()) {
        return Empty();
    }
    const auto ours = oem->find("Raidcfg");
    return ours != oem->end() && ours->is_object() ? *ours : Empty();
}

std::string RedfishWords::Link(const nlohmann::json& link) {
    return Text(link, "@odata.id");
}

} // namespace redfish
