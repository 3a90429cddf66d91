#pragma once

#include <string>
#include <vector>

#include "backend/protocol_disk.hpp"

namespace Quillon {
namespace protocol {

// One volume of an out-of-band VROC pool.
struct VolManDevVolume {
    int id = 0;
    std::string reserved_text;
    std::string name;
    std::string status;
    std::string stripe_size;
    std::string bootable;
    std::string capacity;
};

// One pool of an out-of-band VROC controller.
struct VolManDevPool {
    int id = 0;
    std::string reserved_text;
    std::string raid_state;
    std::string raid_capacity;
    std::string holes;
    std::vector<ProtocolDisk> disks; // not read by the service
    std::vector<VolManDevVolume> volumes;
};

// One out-of-band VROC controller with its disks and pools.
struct VolManDevCtrl {
    int id = 0; // the controller's slot
    std::string reserved_text;
    std::string product_name;
    std::string version;
    std::string manufacturer;
    std::string model;
    std::string max_stripe_size;
    std::string min_stripe_size;
    std::vector<std::string> support_raid_levels;
    std::vector<ProtocolDisk> disks;
    std::vector<VolManDevPool> pools;
};

} // namespace protocol
} // namespace Quillon
