#pragma once

#include <optional>
#include <string>

#include "sim/machine.hpp"

namespace emulator {

// The words of the Redfish mapping: how model values are named in standard Redfish properties,
// and back. docs/redfish.md holds the same tables for client writers.
class RedfishNames {
public:
    // "1" -> "RAID1", "1triple" -> "RAID1Triple"; empty when the level has no standard name.
    static std::string RaidType(const std::string& level);
    // "RAID1Triple" -> "1triple", "RAID50" -> "50"; empty when the text is not a RAID type.
    static std::string LevelOfRaidType(const std::string& raid_type);

    // Write policy code -> WriteCachePolicy, counted from 1 on OOB_MICROCHIP; empty if unnamed.
    static std::string WriteCachePolicy(const std::string& family, int code);
    static std::optional<int> WritePolicyCode(const std::string& family, const std::string& name);
    static std::string ReadCachePolicy(int code);
    static std::optional<int> ReadPolicyCode(const std::string& name);

    // ekm_mode word -> EncryptionMode ("local" -> "UseLocalKey"); empty if the word has none.
    static std::string EncryptionMode(const std::string& ekm_mode);
    // EncryptionMode -> the ekm word ("UseLocalKey" -> "local"); empty if unknown.
    static std::string EkmWord(const std::string& encryption_mode);

    // The StorageController Manufacturer and Model that lead back to the controller's family.
    static std::string Manufacturer(const sim::Controller& controller);
    static std::string Model(const sim::Controller& controller);

    // "OOB_LSI-0": the Storage id of a controller (the record field raid_url uses the same form).
    static std::string StorageId(const sim::Controller& controller);
    static bool IsServedFamily(const std::string& family);
};

} // namespace emulator
