#include "redfish/redfish_words.hpp"

#include <cctype>

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
    if (found->is_number_float()) {
        return static_cast<long long>(found->get<double>());
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
