#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace redfish {

// The few translations between the machine model's words and Redfish values, and safe reads of
// JSON from a BMC (a missing or mistyped property gives the default, never an exception).
class RedfishWords {
public:
    // "1" -> "RAID1", "10" -> "RAID10", "1triple" -> "RAID1Triple", "10triple" -> "RAID10Triple".
    static std::string RaidType(const std::string& level);
    // The reverse: "RAID6" -> "6", "RAID10Triple" -> "10triple"; "None" and "" give "".
    static std::string Level(const std::string& raid_type);

    static std::string Text(const nlohmann::json& object, const char* key);
    static long long Number(const nlohmann::json& object, const char* key, long long fallback);
    static bool Flag(const nlohmann::json& object, const char* key, bool fallback);
    // object["Oem"]["Raidcfg"], or an empty object.
    static const nlohmann::json& Oem(const nlohmann::json& object);
    // The @odata.id of a link object, or "".
    static std::string Link(const nlohmann::json& link);
};

} // namespace redfish
