#pragma once

#include <optional>
#include <string>

#include "sim/machine.hpp"

namespace emulator {

// Where the service's drives live: under the one Chassis, as current BMCs lay them out, each
// with an id that stays unique across controllers ("OOB_LSI-0-6": the Storage id and the disk
// id). The URIs below each Storage (.../Storage/OOB_LSI-0/Drives/6) stay as aliases.
class DriveUris {
public:
    static constexpr const char* kChassis = "/redfish/v1/Chassis/1";
    static constexpr const char* kDrives = "/redfish/v1/Chassis/1/Drives";

    // "OOB_LSI-0-6"
    static std::string Id(const sim::Controller& controller, int disk);
    // "/redfish/v1/Chassis/1/Drives/OOB_LSI-0-6"
    static std::string Uri(const sim::Controller& controller, int disk);

    // A drive id split into the Storage id and the disk part, which is handed on as it stands.
    struct Parts {
        std::string sid;
        std::string disk;
    };
    // The parts of a drive id among the machine's served controllers; empty when the id names
    // none of them.
    static std::optional<Parts> Split(const sim::Machine& machine, const std::string& id);
    // The disk part of a drive id of the Storage sid: ("OOB_LSI-0", "OOB_LSI-0-6") -> "6"; the
    // id itself when it is not one of that Storage's (an alias's disk number, say).
    static std::string DiskOf(const std::string& sid, const std::string& id);
};

} // namespace emulator
